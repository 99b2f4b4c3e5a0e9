#pragma once

#include "store/engine/Rows.h"

#include <QByteArray>

#include <memory>
#include <span>
#include <vector>

namespace orlo::store
{

class Connection;
struct Source;

/// Raises a record set's failure.
[[noreturn]] void refuse(int number);

/// A state of the file: another one after every change, this connection's own or another program's.
struct FileState {
    quint64 ownChanges = 0;
    quint32 version = 0;

    friend bool operator==(const FileState&, const FileState&) = default;
};

/// Records that follow each other in a set, each of them whole, read as of one state of the file.
struct Block {
    FileState state;
    qsizetype start = 0; ///< the place of the first in the set
    Rows rows;

    [[nodiscard]] bool has(qsizetype place) const { return place >= start && place < start + rows.size(); }
};

/// Reads the records of these numbers, or the first of them where all would take too much memory.
[[nodiscard]] std::shared_ptr<const Block> readBlock(Connection& connection, const Source& source,
                                                     std::span<const qint64> numbers, qsizetype start = 0);

/// A record as it stood at one moment, by its place in a block; none without one.
struct Record {
    std::shared_ptr<const Block> block;
    qsizetype row = 0;

    [[nodiscard]] explicit operator bool() const { return block != nullptr; }
    /// True for one that somebody had removed by then.
    [[nodiscard]] bool isGone() const { return block->rows.isGone(row); }
    /// True if the other one, of the same source, holds the same, whatever is computed beside it.
    [[nodiscard]] bool same(const Record& other, const Source& source) const;
};

/// What a set knows of a record that it may change. It follows the changes that this program makes elsewhere, so that
/// whatever differs from the file is another program's doing.
struct KnownRecord {
    enum class Change : quint8 { None, Written, Removed };

    std::shared_ptr<const Source> source;
    qint64 number = 0;
    Record record = {};            ///< none where nothing was read of it
    bool removed = false;          ///< by this program; whatever stands under its number is another one
    bool changedByAnother = false; ///< before this program wrote it, too
    Change pending = Change::None; ///< by the transaction that is under way
    Record written = {};           ///< what that makes of it
    std::shared_ptr<const KnownRecord> before = {}; ///< that, once a part of it has ended well
};

/// The records that a connection's sets know.
class KnownRecords
{
public:
    explicit KnownRecords(Connection& connection) : m_connection(connection) {}

    /// One more, of which nothing is known yet; it is followed for as long as somebody has it.
    [[nodiscard]] std::shared_ptr<KnownRecord> add(std::shared_ptr<const Source> source, qint64 number);

    /// A transaction that will write begins: what other programs have changed until now is found out.
    void begin();
    /// A row of a table was inserted, changed or removed.
    void note(bool removed, const char* table, qint64 number);
    /// The transaction is about to end: the records that it wrote are read.
    void settle();
    /// It has ended well, as a whole or as a part of another one, or not.
    void accept(bool whole);
    void drop();
    /// The file's version as this connection's last transaction left it.
    [[nodiscard]] quint32 version() const { return m_version; }

private:
    template <typename Action>
    void forEach(const Action& action);
    [[nodiscard]] Record read(const KnownRecord& known) const;

    Connection& m_connection;
    std::vector<std::weak_ptr<KnownRecord>> m_records;
    quint32 m_version = 0;
    quint32 m_before = 0; // as the transaction found it
    bool m_wrote = false;
};

} // namespace orlo::store
