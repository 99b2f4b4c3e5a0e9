#include "store/engine/RecordsetImpl.h"

#include "platform/RuntimeError.h"
#include "store/engine/Conversion.h"

#include <sqlite3.h>

#include <algorithm>
#include <numeric>

namespace orlo::store
{

using platform::RuntimeError;

void raise(int number)
{
    throw RuntimeError(number, QStringLiteral("Recordset"));
}

namespace
{

constexpr qsizetype ManyRows = 8;         // for fewer, the statement for a whole block costs more than it saves
constexpr qsizetype Gone = -1;            // the place of a row that somebody removed
constexpr qsizetype MostRows = 2'000'000; // of a snapshot, which lies in memory
// How often another program's changes are looked for while a set is walked.
constexpr qint64 CheckNanoseconds = 1000000;

std::vector<int> allColumns(const RowShape& shape)
{
    std::vector<int> columns(shape.fields.size());
    std::iota(columns.begin(), columns.end(), 0);
    return columns;
}

} // namespace

Recordset::Impl::Impl(std::shared_ptr<Connection> connection, const QString& source)
    : m_connection(std::move(connection)), m_source(m_connection->source(source)), m_shape(m_source->shape), m_block({})
{
    if (updatable())
        openKeys();
    else
        openSnapshot();
}

void Recordset::Impl::openSnapshot()
{
    auto statement = m_connection->statement(m_source->rowsSql, Origin::Outside);
    auto shape = std::make_shared<RowShape>();
    shape->fields = resultFields(*m_connection, statement);
    m_block = Rows(allColumns(*shape));
    while (statement.step()) {
        if (m_block.size() == MostRows)
            raise(platform::ResourceExceeded);
        m_block.append(statement.handle());
    }
    m_size = m_block.size();
    for (int i = 0; i < static_cast<int>(shape->fields.size()); ++i)
        if (!sqlite3_column_decltype(statement.handle(), i))
            shape->fields[static_cast<std::size_t>(i)].type = m_block.typeOf(i);
    m_shape = std::move(shape);
}

void Recordset::Impl::openKeys()
{
    auto statement = m_connection->statement(m_source->keysSql, Origin::Outside);
    const int key = sqlite3_column_count(statement.handle()) - 1;
    while (statement.step())
        m_keys.push_back(statement.integer(key));
    m_size = static_cast<qsizetype>(m_keys.size());
}

void Recordset::Impl::go(qsizetype place)
{
    dropBuffer();
    m_removed = false;
    m_arrived = true;
    m_place = place;
}

void Recordset::Impl::step(qsizetype n)
{
    const qsizetype from = m_removed && n > 0 ? m_place - 1 : m_place;
    go(std::clamp<qsizetype>(from + n, -1, m_size));
}

void Recordset::Impl::requireRecord() const
{
    if (m_removed)
        raise(platform::RecordDeleted);
    if (!hasRecord())
        raise(platform::NoCurrentRecord);
}

void Recordset::Impl::requireUpdatable() const
{
    if (!updatable())
        raise(platform::ReadOnlySet);
}

bool Recordset::Impl::blockIsTrue()
{
    if (m_blockStamp != m_connection->changeStamp())
        return false;
    if (m_sinceCheck.nsecsElapsed() < CheckNanoseconds)
        return true;
    m_sinceCheck.start();
    return m_blockVersion == m_connection->dataVersion();
}

qsizetype Recordset::Impl::currentRow(int column)
{
    if (!updatable())
        return m_place;
    if (!m_block.has(column)) {
        m_block.addColumn(column);
        readBlock(m_nextBlock);
    }
    const qsizetype blockEnd = m_blockStart + std::ssize(m_blockRows);
    const bool within = m_place >= m_blockStart && m_place < blockEnd;
    if (m_arrived && !(blockIsTrue() && within)) {
        // A set that is walked reads more and more ahead; one that is looked at here and there reads what it needs.
        const bool walking = !m_blockRows.empty() && m_place == blockEnd;
        m_nextBlock = walking ? std::min<qsizetype>(m_nextBlock * 2, LargestBlock) : 1;
        readBlock(m_nextBlock);
    }
    m_arrived = false;
    return m_blockRows[static_cast<std::size_t>(m_place - m_blockStart)];
}

void Recordset::Impl::readBlock(qsizetype count)
{
    count = std::min(count, m_size - m_place);
    m_block.clear();
    m_blockRows.clear(); // a read that fails leaves no block
    m_arrived = true;
    m_blockStart = m_place;
    // Before the rows: another program's change in between is then noticed by the next look, not missed.
    m_blockStamp = m_connection->changeStamp();
    m_blockVersion = m_connection->dataVersion();
    m_sinceCheck.start();
    const auto rows = static_cast<std::size_t>(count);
    m_blockRows = count < ManyRows ? readFewRows(rows) : readManyRows(rows);
}

std::vector<qsizetype> Recordset::Impl::readFewRows(std::size_t count)
{
    std::vector<qsizetype> places(count, Gone);
    auto row = m_connection->statement(m_source->rowSql, Origin::Outside);
    for (std::size_t offset = 0; offset < count; ++offset) {
        row.bind(1, m_keys[static_cast<std::size_t>(m_blockStart) + offset]);
        if (row.step()) {
            places[offset] = m_block.size();
            m_block.append(row.handle());
        }
        row.reset();
    }
    return places;
}

// One statement for all takes half the time of one for each. It gives them in an order of its own.
std::vector<qsizetype> Recordset::Impl::readManyRows(std::size_t count)
{
    std::vector<qsizetype> places(count, Gone);
    std::vector<std::pair<qint64, std::size_t>> offsets; // by key
    auto rows = m_connection->statement(m_source->blockSql, Origin::Outside);
    for (std::size_t offset = 0; offset < count; ++offset) {
        const qint64 key = m_keys[static_cast<std::size_t>(m_blockStart) + offset];
        offsets.emplace_back(key, offset);
        rows.bind(static_cast<int>(offset) + 1, key);
    }
    std::ranges::sort(offsets);
    while (rows.step()) {
        // Asked of each row, since the first step prepares the statement anew where the table has other columns now.
        const qint64 key = rows.integer(sqlite3_column_count(rows.handle()) - 1);
        // More than one where a new row took over the key of a removed one.
        for (auto found = std::ranges::lower_bound(offsets, std::pair(key, std::size_t{0}));
             found != offsets.end() && found->first == key; ++found)
            places[found->second] = m_block.size();
        m_block.append(rows.handle());
    }
    return places;
}

Value Recordset::Impl::value(int column)
{
    const auto at = static_cast<std::size_t>(column);
    if (m_buffer)
        return m_buffer->values[at];
    requireRecord();
    const qsizetype row = currentRow(column);
    if (row == Gone)
        raise(platform::RecordDeleted);
    return m_block.value(row, column, m_shape->fields[at].type);
}

int Recordset::Impl::column(QStringView name) const
{
    // Forms ask for fields in the order of the table, so the next one is mostly the one that is looked for.
    const auto& fields = m_shape->fields;
    const int count = static_cast<int>(fields.size());
    int at = m_hint;
    for (int tried = 0; tried < count; ++tried, ++at) {
        if (at >= count)
            at = 0;
        const QString& candidate = fields[static_cast<std::size_t>(at)].name;
        if (candidate.size() == name.size() &&
            (candidate == name || name.compare(candidate, Qt::CaseInsensitive) == 0)) {
            m_hint = at + 1;
            return at;
        }
    }
    raise(platform::FieldNotFound);
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
    m_block = Rows(allColumns(*m_shape));
    m_blockRows.clear();
    m_arrived = true; // what is edited is the record as it stands now
    Buffer buffer;
    for (int i = 0; i < static_cast<int>(m_shape->fields.size()); ++i)
        buffer.values.push_back(value(i));
    buffer.changed.resize(buffer.values.size());
    m_buffer = std::move(buffer);
}

void Recordset::Impl::setValue(int column, const Value& value)
{
    if (!m_buffer)
        raise(platform::UpdateWithoutEdit);
    const auto at = static_cast<std::size_t>(column);
    if (m_shape->columns[at].isEmpty())
        raise(platform::ReadOnlySet);
    m_buffer->values[at] = converted(value, m_shape->fields[at]);
    m_buffer->changed[at] = true;
}

void Recordset::Impl::update()
{
    if (!m_buffer)
        raise(platform::UpdateWithoutEdit);
    if (m_buffer->added)
        insertBuffer();
    else
        updateBuffer();
    finishUpdate();
}

QByteArray Recordset::Impl::changedColumns(const char* separator, const char* behind) const
{
    QByteArray list;
    for (std::size_t i = 0; i < m_buffer->changed.size(); ++i)
        if (m_buffer->changed[i])
            list += (list.isEmpty() ? "" : separator) + m_shape->columns[i] + behind;
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
    const QByteArray columns = changedColumns(",", "");
    const auto given = std::ranges::count(m_buffer->changed, true);
    QByteArray sql = "INSERT INTO " + m_source->table;
    if (given == 0)
        sql += " DEFAULT VALUES";
    else
        sql += '(' + columns + ") VALUES(" + QByteArray("?,").repeated(given).chopped(1) + ')';
    auto statement = m_connection->statement(sql);
    bindChanged(statement);
    statement.step();
    m_keys.push_back(sqlite3_last_insert_rowid(m_connection->handle()));
    // The first record of an empty set becomes the current one; forms go on with it.
    if (m_size++ == 0)
        go(0);
}

void Recordset::Impl::updateBuffer()
{
    if (std::ranges::none_of(m_buffer->changed, [](bool changed) { return changed; }))
        return;
    auto statement = m_connection->statement("UPDATE " + m_source->table + " SET " + changedColumns(",", "=?") +
                                             " WHERE " + m_source->rowKey + "=?");
    bindChanged(statement);
    const auto given = static_cast<int>(std::ranges::count(m_buffer->changed, true));
    statement.bind(given + 1, m_keys[static_cast<std::size_t>(m_place)]);
    statement.step();
    if (sqlite3_changes(m_connection->handle()) == 0)
        raise(platform::RecordDeleted);
}

void Recordset::Impl::finishUpdate()
{
    dropBuffer();
    m_arrived = true;
    m_connection->noteChange();
}

void Recordset::Impl::remove()
{
    requireUpdatable();
    dropBuffer();
    requireRecord();
    {
        auto statement =
            m_connection->statement("DELETE FROM " + m_source->table + " WHERE " + m_source->rowKey + "=?1");
        statement.bind(1, m_keys[static_cast<std::size_t>(m_place)]);
        statement.step();
        if (sqlite3_changes(m_connection->handle()) == 0)
            raise(platform::RecordDeleted);
    }
    m_keys.erase(m_keys.begin() + m_place);
    --m_size;
    m_removed = true;
    m_connection->noteChange();
}

} // namespace orlo::store
