#pragma once

#include "store/engine/Connection.h"
#include "store/engine/Rows.h"
#include "store/engine/Source.h"

#include <QElapsedTimer>

namespace orlo::store
{

/// Fails in the name of a record set.
[[noreturn]] void raise(int number);

/// The state of a record set. A snapshot holds all values. An updatable set holds the keys of its rows; it reads values
/// in blocks, of the columns that were asked for so far, and believes a block for as long as nothing changed the file.
class Recordset::Impl
{
public:
    Impl(std::shared_ptr<Connection> connection, const QString& source);

    [[nodiscard]] Connection& connection() const { return *m_connection; }
    [[nodiscard]] const std::vector<FieldInfo>& fields() const { return m_shape->fields; }
    [[nodiscard]] bool updatable() const { return m_source->updatable(); }
    [[nodiscard]] qsizetype size() const { return m_size; }
    [[nodiscard]] bool atEnd() const { return m_place >= m_size && !m_removed; }
    [[nodiscard]] bool atStart() const { return m_size == 0 ? !m_removed : m_place < 0; }
    [[nodiscard]] qsizetype place() const { return hasRecord() ? m_place : -1; }

    /// Goes to a place from -1 to size(), dropping an open buffer.
    void go(qsizetype place);
    /// Goes n records on from the current one; a removed record has its place between its neighbours.
    void step(qsizetype n);

    void addNew();
    void edit();
    [[nodiscard]] bool editing() const { return m_buffer.has_value(); }
    void dropBuffer() { m_buffer.reset(); }
    void update();
    void remove();

    [[nodiscard]] Value value(int column);
    void setValue(int column, const Value& value);
    [[nodiscard]] int column(QStringView name) const;

private:
    struct Buffer {
        bool added = false;
        std::vector<Value> values;
        std::vector<bool> changed;
    };

    void openSnapshot();
    void openKeys();
    [[nodiscard]] bool hasRecord() const { return !m_removed && m_place >= 0 && m_place < m_size; }
    void requireRecord() const;
    void requireUpdatable() const;
    /// The row of m_block that is the current record with the column, read now where it isn't there; -1 for a record
    /// that somebody removed.
    qsizetype currentRow(int column);
    [[nodiscard]] bool blockIsTrue();
    void readBlock(qsizetype count);
    /// Read the rows from m_blockStart on into m_block, and give by offset which of them is the place's.
    [[nodiscard]] std::vector<qsizetype> readFewRows(std::size_t count);
    [[nodiscard]] std::vector<qsizetype> readManyRows(std::size_t count);
    void insertBuffer();
    void updateBuffer();
    [[nodiscard]] QByteArray changedColumns(const char* separator, const char* behind) const;
    void bindChanged(Statement& statement) const;
    void finishUpdate();

    std::shared_ptr<Connection> m_connection;
    std::shared_ptr<const Source> m_source;
    std::shared_ptr<const RowShape> m_shape;
    std::vector<qint64> m_keys;
    qsizetype m_size = 0;
    qsizetype m_place = 0;
    bool m_removed = false; // the record at m_place was removed; the ones behind it have moved up
    std::optional<Buffer> m_buffer;

    Rows m_block;
    qsizetype m_blockStart = 0;
    std::vector<qsizetype> m_blockRows; // by place, from m_blockStart: the row in m_block
    qsizetype m_nextBlock = 1;
    bool m_arrived = true; // at another record, whose values aren't read yet
    quint64 m_blockStamp = 0;
    qint64 m_blockVersion = 0;
    QElapsedTimer m_sinceCheck;
    mutable int m_hint = 0; // where the search for a field's name begins
};

} // namespace orlo::store
