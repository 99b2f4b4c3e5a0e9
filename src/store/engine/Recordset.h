#pragma once

#include "store/engine/Record.h"
#include "store/engine/Value.h"

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace orlo::store
{

class Connection;
class Statement;
struct RowShape;
struct Source;

/// A set of records with a position, read and written by field name (without regard to case).
///
/// A query on one table gives an updatable set: which rows belong to it is fixed at opening; a record is read, whole,
/// when the set comes to it. Anything else is a read-only snapshot. A set outlives neither its own close() nor its
/// database's: any use after that raises 3420. Every update() and remove() is durable when it returns.
///
/// 3167 and 3197 tell of other programs, and 3167 of a record that this one removed: what another set or an Execute of
/// this program made of a record since the set read it is no failure.
class Recordset
{
public:
    /// As Database::openRecordset().
    Recordset(std::shared_ptr<Connection> connection, const QString& source, const std::function<void()>& readingOn);
    ~Recordset() = default;
    Recordset(Recordset&&) noexcept = default;
    Recordset& operator=(Recordset&&) noexcept = default;
    Recordset(const Recordset&) = delete; // two would share what they know of a record
    Recordset& operator=(const Recordset&) = delete;

    /// Both true on an empty set; bof() before the first record, eof() past the last.
    [[nodiscard]] bool bof() const;
    [[nodiscard]] bool eof() const;
    /// The number of records, exact from the start. A set opened by a table's name then has the table's records of now.
    [[nodiscard]] int recordCount();
    [[nodiscard]] bool updatable() const;
    [[nodiscard]] const std::vector<FieldInfo>& fields() const;

    /// Moves drop an unsaved buffer, those that fail too. All raise 3021 on an empty set; a step past an end, and one
    /// more, too.
    void moveFirst();
    void moveLast();
    void moveNext();
    void movePrevious();
    /// Moves by n records from the current one; past an end it stands before the start or past the end.
    void move(int n);
    /// Moves to the record at the 0-based place in the set. Raises 3021 outside it.
    void moveTo(int place);
    /// The 0-based place of the current record; -1 where there is none.
    [[nodiscard]] int place() const;

    /// Opens a new record's buffer, or the current record's. Raise 3027 on a read-only set; edit() raises 3021 without
    /// a current record, 3167 on a removed one, and 3197 on one that another program changed since the set read or
    /// wrote it; the set then has the new values.
    void addNew();
    void edit();
    /// True between addNew() or edit() and the update or move that ends it.
    [[nodiscard]] bool editing() const;
    /// Drops the open buffer; nothing happens without one.
    void cancelUpdate();
    /// Writes the buffer: a new record goes to the end of the set, and the position stays where it was. Raises 3020
    /// without a buffer, 3022 for a duplicate key, 3058, 3314 and 3315 for what the table refuses, 3167 and 3197 for a
    /// record that was removed or changed since edit(); the buffer then stays open.
    void update();
    /// Removes the current record; it stays the position until the next move. Raises 3021, 3027, 3167, 3197.
    void remove();

    /// A field of the open buffer or of the current record. Raises 3265 for an unknown name, 3021 without a record,
    /// 3167 on a removed one.
    [[nodiscard]] Value value(QStringView name) const;
    [[nodiscard]] Value operator[](QStringView name) const { return value(name); }
    /// The same by 0-based column, for what walks all fields.
    [[nodiscard]] Value value(int column) const;
    /// Gives these fields of all records, in the set's order, read in one go: for lists. The position and an open
    /// buffer stay as they are. Raises 3265, and 3167 at a removed record.
    void readAll(std::initializer_list<QStringView> names,
                 const std::function<void(std::span<const Value>)>& take) const;
    /// Converts to the field's type and puts it into the buffer. Raises 3020 without a buffer, 3421 for what can't be
    /// converted, 6 for a number out of range, 3163 for a text over the size, 3164 for a counter, 3265 for an unknown
    /// name.
    void setValue(QStringView name, const Value& value);
    void setValue(int column, const Value& value);
    /// The 0-based column of a name. Raises 3265.
    [[nodiscard]] int column(QStringView name) const;

    void close();

private:
    struct Buffer {
        bool added = false;
        std::vector<Value> values;
        std::vector<bool> changed;
    };

    void openSnapshot(const std::function<void()>& readingOn);
    void openNumbers();
    void requireOpen() const; // raises 3420 on a dead set
    void requireRecord() const;
    void requireUpdatable() const;
    void requireColumn(int column) const;
    void go(qsizetype place);
    void step(qsizetype n);
    [[nodiscard]] bool hasRecord() const { return !m_removed && m_place >= 0 && m_place < m_size; }
    [[nodiscard]] const Record& shown() const;
    void confirm();
    void change(const std::function<void()>& write);
    void insertBuffer();
    void updateBuffer();
    [[nodiscard]] QByteArray changedColumns(const char* separator, const char* after) const;
    int bindChanged(Statement& statement) const;

    std::shared_ptr<Connection> m_connection; // none once it is closed
    std::shared_ptr<const Source> m_source;
    std::shared_ptr<const RowShape> m_shape;
    std::vector<qint64> m_numbers; // of an updatable set's rows
    FileState m_numbersState;
    qsizetype m_size = 0;
    qsizetype m_place = 0;
    bool m_removed = false; // the record at m_place was removed; the ones after it have moved up
    // What was read last: all of a snapshot's records, or those ahead of an updatable set.
    mutable std::shared_ptr<const Block> m_block;
    mutable qsizetype m_ahead = 1;        // how many records the next block has
    mutable Record m_shown;               // the current one, once it was asked for
    std::shared_ptr<KnownRecord> m_known; // the current one
    std::shared_ptr<KnownRecord> m_added; // the one that was added last
    std::optional<Buffer> m_buffer;
};

} // namespace orlo::store
