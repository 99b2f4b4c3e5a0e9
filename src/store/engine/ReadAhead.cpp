#include "store/engine/ReadAhead.h"

#include "platform/RuntimeError.h"
#include "store/engine/Connection.h"
#include "store/engine/Source.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace orlo::store
{

namespace
{

constexpr qsizetype ManyRows = 8; // for fewer, the statement for a whole block costs more than it saves
// A record of so few fields is read whole: each of them asked for by itself costs more.
constexpr std::size_t FewFields = 8;
constexpr qsizetype Gone = -1; // the place of a row that somebody removed
// How often another program's changes are looked for while a set is walked.
constexpr qint64 LookNanoseconds = 1000000;

} // namespace

void refuse(int number)
{
    throw platform::RuntimeError(number, QStringLiteral("Recordset"));
}

ReadAhead::ReadAhead(Connection& connection, const Source& source, const std::vector<qint64>& numbers)
    : m_connection(connection), m_source(source), m_numbers(numbers),
      m_rows(source.shape->fields.size() <= FewFields ? allColumns(source.shape->fields.size()) : std::vector<int>())
{
}

void ReadAhead::readFirst()
{
    if (m_rows.columns() > 0)
        read(0, 1);
}

Value ReadAhead::at(qsizetype place, int column)
{
    if (!m_rows.has(column)) {
        m_rows.addColumn(column);
        if (has(place))
            read(m_start, std::ssize(m_rowOf));
    }
    if (m_arrived || !has(place))
        arriveAt(place);
    const qsizetype row = m_rowOf[static_cast<std::size_t>(place - m_start)];
    if (row == Gone)
        refuse(platform::RecordDeleted);
    return m_rows.value(row, column, m_source.shape->fields[static_cast<std::size_t>(column)].type);
}

// A set that is walked reads more and more ahead; one that is looked at here and there reads what it needs.
void ReadAhead::arriveAt(qsizetype place)
{
    if (!(has(place) && isTrue())) {
        const bool onward = !m_rowOf.empty() && place == m_start + std::ssize(m_rowOf);
        const bool back = !m_rowOf.empty() && place == m_start - 1;
        m_count = onward || back ? std::min<qsizetype>(m_count * 2, MaxBlock) : 1;
        read(back ? place - m_count + 1 : place, m_count);
    }
    m_arrived = false;
}

bool ReadAhead::isTrue()
{
    if (m_ownChanges != m_connection.changeStamp())
        return false;
    if (m_sinceLook.nsecsElapsed() < LookNanoseconds)
        return true;
    m_sinceLook.start();
    return m_version == versionNow();
}

quint32 ReadAhead::versionNow()
{
    (void)m_connection.dataVersion(); // a look at the file
    return m_connection.versionRead();
}

void ReadAhead::confirm(qsizetype place)
{
    const std::size_t all = m_source.shape->fields.size();
    // Where the program itself has written the row since, nobody knows whose the difference is.
    const bool comparable =
        !m_arrived && has(place) &&
        m_connection.ownChange(m_source.table, m_numbers[static_cast<std::size_t>(place)]) <= m_ownChanges;
    const bool unchanged = comparable && m_ownChanges == m_connection.changeStamp() && m_version == versionNow();
    const qsizetype row = comparable ? m_rowOf[static_cast<std::size_t>(place - m_start)] : Gone;
    if (unchanged && row != Gone && m_rows.columns() == all)
        return;
    const Rows before = std::exchange(m_rows, Rows(allColumns(all)));
    read(place, 1);
    m_arrived = false;
    if (m_rowOf.front() == Gone)
        refuse(platform::RecordDeleted);
    if (row != Gone && !unchanged && !before.same(row, m_rows, m_rowOf.front()))
        refuse(platform::ChangedByAnother);
}

void ReadAhead::forget()
{
    m_rows.clear();
    m_rowOf.clear();
    m_arrived = true;
}

void ReadAhead::read(qsizetype start, qsizetype count)
{
    forget(); // a read that fails leaves no block
    m_start = std::max<qsizetype>(start, 0);
    m_ownChanges = m_connection.changeStamp();
    m_sinceLook.start();
    const qsizetype end = std::min(start + count, qsizetype(std::ssize(m_numbers)));
    std::vector<qsizetype> rowOf(static_cast<std::size_t>(end - m_start), Gone);
    std::ssize(rowOf) < ManyRows ? readFew(rowOf) : readMany(rowOf);
    m_rowOf = std::move(rowOf);
}

void ReadAhead::readFew(std::vector<qsizetype>& rowOf)
{
    auto row = m_connection.statement(m_source.rowSql, Origin::Outside);
    for (std::size_t offset = 0; offset < rowOf.size(); ++offset) {
        row.bind(1, m_numbers[static_cast<std::size_t>(m_start) + offset]);
        const bool found = row.step();
        if (offset == 0) // another program's change between two rows is noticed by the next look, not missed
            m_version = m_connection.versionRead();
        if (found) {
            rowOf[offset] = m_rows.size();
            m_rows.append(row.handle());
        }
        row.reset();
    }
}

// One statement for all takes half the time of one for each. It gives them in an order of its own.
void ReadAhead::readMany(std::vector<qsizetype>& rowOf)
{
    std::vector<std::pair<qint64, std::size_t>> offsets; // by number
    auto rows = m_connection.statement(m_source.blockSql, Origin::Outside);
    for (std::size_t offset = 0; offset < rowOf.size(); ++offset) {
        const qint64 number = m_numbers[static_cast<std::size_t>(m_start) + offset];
        offsets.emplace_back(number, offset);
        rows.bind(static_cast<int>(offset) + 1, number);
    }
    std::ranges::sort(offsets);
    while (rows.step()) {
        // Asked of each row, since the first step prepares the statement anew where the table has other columns now.
        const qint64 number = rows.integer(sqlite3_column_count(rows.handle()) - 1);
        const auto found = std::ranges::lower_bound(offsets, std::pair(number, std::size_t{0}));
        if (found != offsets.end() && found->first == number)
            rowOf[found->second] = m_rows.size();
        m_rows.append(rows.handle());
    }
    m_version = m_connection.versionRead();
}

} // namespace orlo::store
