#pragma once

#include "store/engine/Record.h"

#include <QString>

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
class Value;
struct Field;
struct RowShape;
struct Source;

/// Records with a current position, accessed by field name (case-insensitive). A query on one table gives an updatable
/// set: its rows are fixed at opening, and each record is read whole when the set comes to it. Any other query gives a
/// read-only snapshot. After its own close() or the database's, a set raises 3420. update() and remove() are durable
/// when they return. 3197 is raised only for other programs' changes. 3167 is also raised for records that this program
/// removed.
class Recordset
{
public:
    /// As Database::openRecordset().
    Recordset(std::shared_ptr<Connection> connection, const QString& source, const std::function<void()>& progress);
    ~Recordset();
    Recordset(Recordset&&) noexcept;
    Recordset& operator=(Recordset&&) noexcept;
    Recordset(const Recordset&) = delete; // copies would share m_known
    Recordset& operator=(const Recordset&) = delete;

    /// Both are true on an empty set.
    [[nodiscard]] bool bof() const;
    [[nodiscard]] bool eof() const;
    /// The exact number of records. A set opened by a table's name picks up rows added and removed since.
    [[nodiscard]] int recordCount();
    [[nodiscard]] bool updatable() const;
    [[nodiscard]] const std::vector<Field>& fields() const;

    /// Moves drop the buffer, even if they fail. They raise 3021 on an empty set and on a step beyond bof() or eof().
    void moveFirst() { moveTo(0); }
    void moveLast() { moveTo(static_cast<int>(m_size - 1)); }
    void moveNext();
    void movePrevious();
    /// Moves by n records, at most to before the first or past the last one.
    void move(int n);
    /// Moves to a 0-based place. Raises 3021 outside the set.
    void moveTo(int place);
    /// The 0-based place of the current record, or -1.
    [[nodiscard]] int place() const;

    /// Start a new record, or an edit of the current one. Both raise 3027 on a read-only set. edit() raises 3021
    /// without a current record, 3167 for a removed one, and 3197 if another program has changed it since the set read
    /// or wrote it; the set then has the new values.
    void addNew();
    void edit();
    /// True if a buffer is open.
    [[nodiscard]] bool editing() const;
    /// Drops the buffer, if one is open.
    void cancelUpdate();
    /// Writes the buffer. A new record goes to the end of the set; the position stays. Raises 3020 without a buffer,
    /// 3022 for a duplicate key, 3058, 3314 and 3315 for what the table refuses, 3167 and 3197 if the record was
    /// removed or changed since edit(); the buffer then stays open.
    void update();
    /// Removes the current record, which stays the position until the next move. Raises 3021, 3027, 3167, 3197.
    void remove();

    /// A field of the buffer, or of the current record. Raises 3265 for an unknown name, 3021 without a record, 3167
    /// for a removed one.
    [[nodiscard]] Value value(QStringView name) const;
    [[nodiscard]] Value operator[](QStringView name) const;
    /// By 0-based column, for code that walks all fields.
    [[nodiscard]] Value value(int column) const;
    /// Calls back with these fields of every record, in the set's order, read at once: for lists. The position and an
    /// open buffer stay. Raises 3265, and 3167 at a removed record.
    void readAll(std::initializer_list<QStringView> names,
                 const std::function<void(std::span<const Value>)>& take) const;
    /// Converts to the field's type and stores in the buffer. Raises 3020 without a buffer, 3421 for what can't be
    /// converted, 6 for a number out of range, 3163 for a text that is too long, 3164 for a counter, 3265 for an
    /// unknown name.
    void setValue(QStringView name, const Value& value) { setValue(column(name), value); }
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

    void openSnapshot(const std::function<void()>& progress);
    void openNumbers();
    void requireOpen() const; // raises 3420
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

    std::shared_ptr<Connection> m_connection; // null once closed
    std::shared_ptr<const Source> m_source;
    std::shared_ptr<const RowShape> m_shape;
    std::vector<qint64> m_numbers; // of an updatable set's rows
    FileState m_numbersState;
    qsizetype m_size = 0;
    qsizetype m_place = 0;
    bool m_removed = false; // the current one; those after it have moved up
    // A snapshot's rows, or the block that an updatable set read last.
    mutable std::shared_ptr<const Block> m_block;
    mutable qsizetype m_ahead = 1;        // the next block's size
    mutable Record m_shown;               // the current one, if it was read
    std::shared_ptr<KnownRecord> m_known; // the current one
    std::shared_ptr<KnownRecord> m_added; // the newest one
    std::optional<Buffer> m_buffer;
};

} // namespace orlo::store
