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

[[noreturn]] void refuse(int number);

/// Changes whenever this connection or another program changes the file.
struct FileState {
    quint64 ownChanges = 0;
    quint32 version = 0;

    friend bool operator==(const FileState&, const FileState&) = default;
};

/// Consecutive records of a set, read whole and at one state of the file.
struct Block {
    FileState state;
    qsizetype start = 0; ///< the place of the first in the set
    Rows rows;

    [[nodiscard]] bool has(qsizetype place) const { return place >= start && place < start + rows.size(); }
};

/// Reads the records of these numbers; only the first ones if all would take too much memory.
[[nodiscard]] std::shared_ptr<const Block> readBlock(Connection& connection, const Source& source,
                                                     std::span<const qint64> numbers, qsizetype start = 0);

/// A record as read, by its row in a block.
struct Record {
    std::shared_ptr<const Block> block;
    qsizetype row = 0;

    [[nodiscard]] explicit operator bool() const { return block != nullptr; }
    /// True if it had been removed by then.
    [[nodiscard]] bool isGone() const { return block->rows.isGone(row); }
    /// True if the stored fields are equal; computed ones don't count.
    [[nodiscard]] bool same(const Record& other, const Source& source) const;
};

/// What a set knows of its current or new record. It is updated by this program's own changes, so any other difference
/// from the file is another program's change.
struct KnownRecord {
    enum class Change : quint8 { None, Written, Removed };

    std::shared_ptr<const Source> source;
    qint64 number = 0;
    Record record = {};                             ///< none if it wasn't read
    bool removed = false;                           ///< by this program; a row of that number is a new one
    bool changedByAnother = false;                  ///< even if this program wrote it afterwards
    Change pending = Change::None;                  ///< in the open transaction
    Record written = {};                            ///< the record after that
    std::shared_ptr<const KnownRecord> before = {}; ///< at its start, if a nested one was committed
};

/// The known records of a connection's sets.
class KnownRecords
{
public:
    explicit KnownRecords(Connection& connection) : m_connection(connection) {}

    /// Adds a record, which is tracked as long as somebody holds it.
    [[nodiscard]] std::shared_ptr<KnownRecord> add(std::shared_ptr<const Source> source, qint64 number);

    /// Called when a transaction begins: finds what other programs have changed.
    void begin();
    /// Called when a row was inserted, changed or removed.
    void note(bool removed, const char* table, qint64 number);
    /// Called before the commit: reads the changed records.
    void settle();
    /// Called after a commit, of the whole transaction or a nested one, and after a rollback.
    void accept(bool whole);
    void drop();
    /// The file's version after this connection's last transaction.
    [[nodiscard]] quint32 version() const { return m_version; }

private:
    template <typename Action>
    void forEach(const Action& action);
    [[nodiscard]] Record read(const KnownRecord& known) const;

    Connection& m_connection;
    std::vector<std::weak_ptr<KnownRecord>> m_records;
    quint32 m_version = 0;
    quint32 m_before = 0; // at the start of the transaction
    bool m_wrote = false;
};

} // namespace orlo::store
