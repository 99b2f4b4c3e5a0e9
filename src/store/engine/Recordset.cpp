#include "store/engine/Recordset.h"

#include "platform/RuntimeError.h"
#include "platform/Text.h"
#include "store/engine/Connection.h"
#include "store/engine/Conversion.h"
#include "store/engine/Database.h"
#include "store/engine/Source.h"
#include "store/engine/Value.h"

#include <sqlite3.h>

#include <algorithm>

namespace orlo::store
{

namespace
{

constexpr qsizetype MaxRows = 2'000'000; // of a snapshot in memory
constexpr qsizetype RowsBetweenCalls = 2'000;

} // namespace

Recordset::Recordset(std::shared_ptr<Connection> connection, const QString& source,
                     const std::function<void()>& progress)
    : m_connection(std::move(connection)), m_source(m_connection->source(source)), m_shape(m_source->shape)
{
    if (updatable()) {
        openNumbers();
        go(0);
    } else
        openSnapshot(progress);
}

Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;

void Recordset::openSnapshot(const std::function<void()>& progress)
{
    auto statement = m_connection->statement(m_source->rowsSql, Origin::Outside);
    auto shape = std::make_shared<RowShape>();
    shape->fields = resultFields(*m_connection, statement, m_source->fields.get());
    auto block = std::make_shared<Block>(Block{{}, 0, Rows(shape->fields.size())});
    Rows& rows = block->rows;
    while (statement.step()) {
        if (rows.size() == MaxRows)
            refuse(platform::ResourceExceeded);
        rows.append(statement.handle());
        if (progress && rows.size() % RowsBetweenCalls == 0)
            progress();
    }
    m_size = rows.size();
    for (int i = 0; i < static_cast<int>(shape->fields.size()); ++i) {
        FieldType& type = shape->fields[static_cast<std::size_t>(i)].type;
        if (type == FieldType::Text && !sqlite3_column_decltype(statement.handle(), i))
            type = rows.typeOf(i);
    }
    m_shape = std::move(shape);
    m_block = std::move(block);
}

void Recordset::openNumbers()
{
    const FileState state = m_connection->state();
    std::vector<qint64> numbers;
    auto statement = m_connection->statement(m_source->keysSql, Origin::Outside);
    const int last = sqlite3_column_count(statement.handle()) - 1;
    while (statement.step())
        numbers.push_back(statement.integer(last));
    m_numbers = std::move(numbers);
    m_size = std::ssize(m_numbers);
    m_numbersState = state;
    m_block.reset(); // its places are outdated
}

void Recordset::requireOpen() const
{
    if (!m_connection || !m_connection->isOpen())
        refuse(platform::ObjectInvalid);
}

void Recordset::requireRecord() const
{
    if (m_removed)
        refuse(platform::RecordDeleted);
    if (!hasRecord())
        refuse(platform::NoCurrentRecord);
}

void Recordset::requireUpdatable() const
{
    requireOpen();
    if (!m_source->updatable())
        refuse(platform::ReadOnlySet);
}

void Recordset::requireColumn(int column) const
{
    requireOpen();
    if (column < 0 || column >= std::ssize(m_shape->fields))
        refuse(platform::FieldNotFound);
}

bool Recordset::bof() const
{
    requireOpen();
    return !m_removed && (m_size == 0 || m_place < 0);
}

bool Recordset::eof() const
{
    requireOpen();
    return !m_removed && (m_size == 0 || m_place >= m_size);
}

int Recordset::recordCount()
{
    requireOpen();
    if (!m_source->wholeTable || m_numbersState == m_connection->state())
        return static_cast<int>(m_size);
    const bool within = m_place >= 0 && m_place < m_size;
    const qint64 current = within ? m_numbers[static_cast<std::size_t>(m_place)] : 0;
    openNumbers();
    if (within) {
        const auto found = std::ranges::lower_bound(m_numbers, current);
        m_place = found - m_numbers.begin();
        m_removed = m_removed || found == m_numbers.end() || *found != current;
    } else if (m_place > 0)
        m_place = m_size;
    return static_cast<int>(m_size);
}

bool Recordset::updatable() const
{
    requireOpen();
    return m_source->updatable();
}

const std::vector<Field>& Recordset::fields() const
{
    requireOpen();
    return m_shape->fields;
}

Value Recordset::value(QStringView name) const
{
    return value(column(name));
}

Value Recordset::operator[](QStringView name) const
{
    return value(name);
}

void Recordset::moveNext()
{
    cancelUpdate();
    if (eof())
        refuse(platform::NoCurrentRecord);
    step(1);
}

void Recordset::movePrevious()
{
    cancelUpdate();
    if (bof())
        refuse(platform::NoCurrentRecord);
    step(-1);
}

void Recordset::move(int n)
{
    cancelUpdate();
    if (m_size == 0 || (n > 0 && eof()) || (n < 0 && bof()))
        refuse(platform::NoCurrentRecord);
    step(n);
}

void Recordset::moveTo(int place)
{
    cancelUpdate();
    if (place < 0 || place >= m_size)
        refuse(platform::NoCurrentRecord);
    go(place);
}

// A removed record's place is between its neighbours.
void Recordset::step(qsizetype n)
{
    if (n == 0 && m_removed)
        return;
    const qsizetype from = m_removed && n > 0 ? m_place - 1 : m_place;
    go(std::clamp<qsizetype>(from + n, -1, m_size));
}

void Recordset::go(qsizetype place)
{
    m_removed = false;
    m_place = place;
    m_shown = {};
    if (!m_source->updatable())
        return;
    const qint64 number = hasRecord() ? m_numbers[static_cast<std::size_t>(place)] : 0;
    if (m_added && m_added->number == number)
        m_known = std::move(m_added);
    else if (m_known)
        *m_known = {m_source, number};
    else
        m_known = m_connection->knownRecords().add(m_source, number);
}

int Recordset::place() const
{
    requireOpen();
    return hasRecord() ? static_cast<int>(m_place) : -1;
}

// The current record, as read when it is first asked for. A walk reads ahead in growing blocks, random access reads
// single records. Blocks are used until the file changes.
const Record& Recordset::shown() const
{
    if (m_shown)
        return m_shown;
    if (!m_block || !m_block->has(m_place) || m_block->state != m_connection->recentState()) {
        const bool onward = m_block && m_place == m_block->start + m_block->rows.size();
        const bool back = m_block && m_place == m_block->start - 1;
        m_ahead = onward || back ? std::min<qsizetype>(m_ahead * 2, MaxBlock) : 1;
        const qsizetype start = back ? std::max<qsizetype>(m_place - m_ahead + 1, 0) : m_place;
        const qsizetype end = back ? m_place + 1 : std::min(m_place + m_ahead, m_size);
        const auto read = [this](qsizetype from, qsizetype to) {
            const auto numbers =
                std::span(m_numbers).subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
            m_block = readBlock(*m_connection, *m_source, numbers, from);
        };
        read(start, end);
        if (!m_block->has(m_place))
            read(m_place, m_place + 1);
    }
    m_shown = m_known->record = {m_block, m_place - m_block->start};
    m_known->changedByAnother = false;
    return m_shown;
}

Value Recordset::value(int column) const
{
    requireColumn(column);
    const auto at = static_cast<std::size_t>(column);
    if (m_buffer)
        return m_buffer->values[at];
    requireRecord();
    const FieldType type = m_shape->fields[at].type;
    if (!m_source->updatable())
        return m_block->rows.value(m_place, column, type);
    const Record& record = shown();
    if (record.isGone())
        refuse(platform::RecordDeleted);
    return record.block->rows.value(record.row, column, type);
}

int Recordset::column(QStringView name) const
{
    requireOpen();
    // The first match. Most names are spelled as in the table, so sizes are compared first.
    const auto& fields = m_shape->fields;
    for (std::size_t at = 0; at < fields.size(); ++at)
        if (fields[at].name.size() == name.size() && platform::sameName(fields[at].name, name))
            return static_cast<int>(at);
    refuse(platform::FieldNotFound);
}

void Recordset::addNew()
{
    requireUpdatable();
    m_buffer = Buffer{true, {}, std::vector<bool>(m_shape->fields.size())};
    for (const Field& field : m_shape->fields)
        m_buffer->values.push_back(field.defaultValue ? *field.defaultValue : Value());
}

void Recordset::edit()
{
    requireUpdatable();
    cancelUpdate();
    requireRecord();
    confirm();
    Buffer buffer;
    for (int i = 0; i < static_cast<int>(m_shape->fields.size()); ++i)
        buffer.values.push_back(value(i));
    buffer.changed.resize(buffer.values.size());
    m_buffer = std::move(buffer);
}

// Compares the current record in the file with what the set knows.
void Recordset::confirm()
{
    const Record before = m_known->record;
    const bool sure = m_shown && before.block == m_shown.block && !m_known->changedByAnother;
    if (sure && !m_known->removed && !before.isGone() && before.block->state == m_connection->state())
        return; // the file is unchanged
    const Record now{readBlock(*m_connection, *m_source, std::span(&m_known->number, 1))};
    if (now.isGone())
        m_shown = m_known->record = now;
    if (now.isGone() || m_known->removed || (before && before.isGone()))
        refuse(platform::RecordDeleted);
    m_shown = m_known->record = now;
    if (std::exchange(m_known->changedByAnother, false) || (before && !before.same(now, *m_source)))
        refuse(platform::ChangedByAnother);
}

bool Recordset::editing() const
{
    requireOpen();
    return m_buffer.has_value();
}

void Recordset::cancelUpdate()
{
    requireOpen();
    m_buffer.reset();
}

void Recordset::setValue(int column, const Value& value)
{
    requireColumn(column);
    if (!m_buffer)
        refuse(platform::UpdateWithoutEdit);
    const auto at = static_cast<std::size_t>(column);
    if (m_shape->columns[at].isEmpty())
        refuse(platform::ReadOnlySet);
    if (m_shape->fields[at].autoIncrement)
        refuse(platform::FieldNotUpdatable);
    m_buffer->values[at] = converted(value, m_shape->fields[at]);
    m_buffer->changed[at] = true;
}

void Recordset::update()
{
    requireOpen();
    if (!m_buffer)
        refuse(platform::UpdateWithoutEdit);
    const bool given = std::ranges::count(m_buffer->changed, true) > 0;
    if (m_buffer->added)
        change([this] { insertBuffer(); });
    else if (given) {
        change([this] { updateBuffer(); });
        // The written record is known, unless the row got another number.
        m_shown = m_known->record.block == m_shown.block ? Record() : m_known->record;
    }
    const bool first = m_buffer->added && m_size == 0;
    if (m_buffer->added) {
        m_numbers.push_back(m_added->number);
        ++m_size;
    }
    m_buffer.reset();
    // Forms rely on the first record of an empty set becoming the current one.
    if (first)
        go(0);
}

void Recordset::remove()
{
    requireUpdatable();
    cancelUpdate();
    requireRecord();
    m_connection->announce({true, QString::fromUtf8(m_source->tableName)});
    change([this] {
        confirm();
        auto statement =
            m_connection->statement("DELETE FROM " + m_source->table + " WHERE " + m_source->rowKey + "=?1");
        statement.bind(1, m_known->number);
        statement.step();
    });
    m_numbers.erase(m_numbers.begin() + m_place);
    --m_size;
    m_removed = true;
}

// A set's own insert or removal doesn't outdate its list of rows.
void Recordset::change(const std::function<void()>& write)
{
    Transaction transaction(*m_connection);
    const bool current = m_numbersState == m_connection->state();
    write();
    transaction.commit();
    if (current)
        m_numbersState = m_connection->stateLeft();
}

void Recordset::close()
{
    requireOpen();
    m_connection.reset();
}

} // namespace orlo::store
