#pragma once

#include "store/engine/Connection.h"
#include "store/engine/ReadAhead.h"
#include "store/engine/Source.h"

#include <functional>

namespace orlo::store
{

/// The state of a record set. A snapshot holds all values; an updatable set holds the numbers of its rows and reads
/// their values when it comes to them.
class Recordset::Impl
{
public:
    /// Calls readingOn, if it is given, now and then while a snapshot is read.
    Impl(std::shared_ptr<Connection> connection, const QString& source, const std::function<void()>& readingOn);

    [[nodiscard]] Connection& connection() const { return *m_connection; }
    [[nodiscard]] const std::vector<FieldInfo>& fields() const { return m_shape->fields; }
    [[nodiscard]] bool updatable() const { return m_source->updatable(); }
    [[nodiscard]] qsizetype size() const { return m_size; }
    /// The number of records; a set on a whole table first takes in what others added and removed.
    [[nodiscard]] qsizetype count();
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

    void openSnapshot(const std::function<void()>& readingOn);
    void openNumbers(bool first);
    [[nodiscard]] bool hasRecord() const { return !m_removed && m_place >= 0 && m_place < m_size; }
    void requireRecord() const;
    void requireUpdatable() const;
    void insertBuffer();
    void updateBuffer();
    [[nodiscard]] QByteArray changedColumns(const char* separator, const char* after) const;
    void bindChanged(Statement& statement) const;
    void finishChange();

    std::shared_ptr<Connection> m_connection;
    std::shared_ptr<const Source> m_source;
    std::shared_ptr<const RowShape> m_shape;
    Rows m_snapshot;
    std::vector<qint64> m_numbers; // of an updatable set's rows
    std::optional<ReadAhead> m_ahead;
    quint64 m_ownChanges = 0; // the file's state for which m_numbers holds
    qint64 m_othersChanges = 0;
    qsizetype m_size = 0;
    qsizetype m_place = 0;
    bool m_removed = false; // the record at m_place was removed; the ones after it have moved up
    std::optional<Buffer> m_buffer;
};

} // namespace orlo::store
