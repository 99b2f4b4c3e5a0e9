#include "store/engine/RecordsetImpl.h"

#include "platform/RuntimeError.h"
#include "store/engine/Conversion.h"
#include "store/engine/RowNumbers.h"
#include "store/engine/Text.h"

#include <sqlite3.h>

#include <algorithm>

namespace orlo::store
{

namespace
{

constexpr qsizetype MaxRows = 2'000'000; // of a snapshot, which lies in memory
constexpr qsizetype RowsBetweenCalls = 2'000;

} // namespace

Recordset::Impl::Impl(std::shared_ptr<Connection> connection, const QString& source,
                      const std::function<void()>& readingOn)
    : m_connection(std::move(connection)), m_source(m_connection->source(source)), m_shape(m_source->shape),
      m_snapshot({})
{
    if (updatable()) {
        m_ahead.emplace(*m_connection, *m_source, m_numbers);
        openNumbers(true);
    } else {
        openSnapshot(readingOn);
    }
}

void Recordset::Impl::openSnapshot(const std::function<void()>& readingOn)
{
    auto statement = m_connection->statement(m_source->rowsSql, Origin::Outside);
    auto shape = std::make_shared<RowShape>();
    shape->fields = resultFields(*m_connection, statement, m_source->fields.get());
    m_snapshot = Rows(allColumns(shape->fields.size()));
    while (statement.step()) {
        if (m_snapshot.size() == MaxRows)
            refuse(platform::ResourceExceeded);
        m_snapshot.append(statement.handle());
        if (readingOn && m_snapshot.size() % RowsBetweenCalls == 0)
            readingOn();
    }
    m_size = m_snapshot.size();
    for (int i = 0; i < static_cast<int>(shape->fields.size()); ++i) {
        FieldType& type = shape->fields[static_cast<std::size_t>(i)].type;
        if (type == FieldType::Text && !sqlite3_column_decltype(statement.handle(), i))
            type = m_snapshot.typeOf(i);
    }
    m_shape = std::move(shape);
}

void Recordset::Impl::openNumbers(bool first)
{
    const quint64 ownChanges = m_connection->changeStamp();
    const qint64 othersChanges = m_source->wholeTable ? m_connection->dataVersion() : 0;
    std::vector<qint64> numbers;
    auto statement = m_connection->statement(m_source->keysSql, Origin::Outside);
    const int last = sqlite3_column_count(statement.handle()) - 1;
    while (statement.step()) {
        numbers.push_back(statement.integer(last));
        if (first && numbers.size() == 1) { // the record at which the set begins comes in the same look at the file
            m_numbers = numbers;
            m_ahead->readFirst();
        }
    }
    m_numbers = std::move(numbers);
    m_size = std::ssize(m_numbers);
    m_ownChanges = ownChanges;
    m_othersChanges = othersChanges;
    if (!first)
        m_ahead->forget();
}

qsizetype Recordset::Impl::count()
{
    const bool stale = m_source->wholeTable &&
                       (m_ownChanges != m_connection->changeStamp() || m_othersChanges != m_connection->dataVersion());
    if (!stale)
        return m_size;
    const bool within = m_place >= 0 && m_place < m_size;
    const qint64 current = within ? m_numbers[static_cast<std::size_t>(m_place)] : 0;
    const bool atEnd = m_place > 0 && !within;
    openNumbers(false);
    if (within) {
        const auto found = std::ranges::lower_bound(m_numbers, current);
        m_place = found - m_numbers.begin();
        m_removed = m_removed || found == m_numbers.end() || *found != current;
    } else if (atEnd)
        m_place = m_size;
    return m_size;
}

void Recordset::Impl::go(qsizetype place)
{
    dropBuffer();
    m_removed = false;
    m_place = place;
    if (m_ahead)
        m_ahead->arrive();
}

void Recordset::Impl::step(qsizetype n)
{
    if (n == 0 && m_removed)
        return dropBuffer();
    const qsizetype from = m_removed && n > 0 ? m_place - 1 : m_place;
    go(std::clamp<qsizetype>(from + n, -1, m_size));
}

void Recordset::Impl::requireRecord() const
{
    if (m_removed)
        refuse(platform::RecordDeleted);
    if (!hasRecord())
        refuse(platform::NoCurrentRecord);
}

void Recordset::Impl::requireUpdatable() const
{
    if (!updatable())
        refuse(platform::ReadOnlySet);
}

Value Recordset::Impl::value(int column)
{
    const auto at = static_cast<std::size_t>(column);
    if (m_buffer)
        return m_buffer->values[at];
    requireRecord();
    return m_ahead ? m_ahead->at(m_place, column) : m_snapshot.value(m_place, column, m_shape->fields[at].type);
}

int Recordset::Impl::column(QStringView name) const
{
    // The first of a name, whatever was asked for before; mostly it is spelled as the table spells it.
    const auto& fields = m_shape->fields;
    for (std::size_t at = 0; at < fields.size(); ++at)
        if (fields[at].name.size() == name.size() && sameName(fields[at].name, name))
            return static_cast<int>(at);
    refuse(platform::FieldNotFound);
}

void Recordset::Impl::addNew()
{
    requireUpdatable();
    m_buffer = Buffer{true, m_shape->defaults, std::vector<bool>(m_shape->fields.size())};
}

void Recordset::Impl::edit()
{
    requireUpdatable();
    dropBuffer();
    requireRecord();
    m_ahead->confirm(m_place); // what is edited is the record as it stands now
    Buffer buffer;
    for (int i = 0; i < static_cast<int>(m_shape->fields.size()); ++i)
        buffer.values.push_back(value(i));
    buffer.changed.resize(buffer.values.size());
    m_buffer = std::move(buffer);
}

void Recordset::Impl::setValue(int column, const Value& value)
{
    if (!m_buffer)
        refuse(platform::UpdateWithoutEdit);
    const auto at = static_cast<std::size_t>(column);
    if (m_shape->columns[at].isEmpty())
        refuse(platform::ReadOnlySet);
    if (m_shape->fields[at].counter)
        refuse(platform::FieldNotUpdatable);
    m_buffer->values[at] = converted(value, m_shape->fields[at]);
    m_buffer->changed[at] = true;
}

void Recordset::Impl::update()
{
    if (!m_buffer)
        refuse(platform::UpdateWithoutEdit);
    if (m_buffer->added)
        insertBuffer();
    else
        updateBuffer();
    dropBuffer();
    finishChange();
}

QByteArray Recordset::Impl::changedColumns(const char* separator, const char* after) const
{
    QByteArray list;
    for (std::size_t i = 0; i < m_buffer->changed.size(); ++i)
        if (m_buffer->changed[i])
            list += (list.isEmpty() ? "" : separator) + m_shape->columns[i] + after;
    return list;
}

void Recordset::Impl::bindChanged(Statement& statement) const
{
    int parameter = 0;
    for (std::size_t i = 0; i < m_buffer->changed.size(); ++i)
        if (m_buffer->changed[i])
            statement.bind(++parameter, m_buffer->values[i]);
}

void Recordset::Impl::insertBuffer()
{
    QByteArray columns = changedColumns(",", "");
    const auto given = static_cast<int>(std::ranges::count(m_buffer->changed, true));
    QByteArray values = QByteArray(",?").repeated(given).sliced(given > 0 ? 1 : 0);
    if (m_source->freeNumbers) {
        columns += (given > 0 ? "," : "") + m_source->rowKey;
        values += (given > 0 ? "," : "") + newNumberSql(m_source->table, m_source->rowKey, given + 1);
    }
    auto statement =
        m_connection->statement("INSERT INTO " + m_source->table +
                                (columns.isEmpty() ? " DEFAULT VALUES" : '(' + columns + ") VALUES(" + values + ')'));
    bindChanged(statement);
    if (m_source->freeNumbers)
        statement.bind(given + 1, minNewNumber());
    statement.step();
    m_numbers.push_back(sqlite3_last_insert_rowid(m_connection->handle()));
    if (m_source->freeNumbers)
        noteGivenNumber(m_numbers.back());
    // The first record of an empty set becomes the current one; forms go on with it.
    if (m_size++ == 0)
        go(0);
}

void Recordset::Impl::updateBuffer()
{
    if (std::ranges::none_of(m_buffer->changed, [](bool changed) { return changed; }))
        return;
    requireRecord();
    Transaction transaction(*m_connection);
    m_ahead->confirm(m_place);
    {
        auto statement = m_connection->statement("UPDATE " + m_source->table + " SET " + changedColumns(",", "=?") +
                                                 " WHERE " + m_source->rowKey + "=?");
        bindChanged(statement);
        const auto given = static_cast<int>(std::ranges::count(m_buffer->changed, true));
        statement.bind(given + 1, m_numbers[static_cast<std::size_t>(m_place)]);
        statement.step();
    }
    transaction.commit();
}

// The set's own change to its membership leaves the rest of it as true as it was.
void Recordset::Impl::finishChange()
{
    const bool current = m_ownChanges == m_connection->changeStamp();
    m_connection->noteChange();
    if (current)
        m_ownChanges = m_connection->changeStamp();
    m_ahead->arrive();
}

void Recordset::Impl::remove()
{
    requireUpdatable();
    dropBuffer();
    requireRecord();
    Transaction transaction(*m_connection);
    m_ahead->confirm(m_place);
    {
        auto statement =
            m_connection->statement("DELETE FROM " + m_source->table + " WHERE " + m_source->rowKey + "=?1");
        statement.bind(1, m_numbers[static_cast<std::size_t>(m_place)]);
        statement.step();
    }
    transaction.commit();
    m_numbers.erase(m_numbers.begin() + m_place);
    --m_size;
    m_removed = true;
    finishChange();
}

} // namespace orlo::store
