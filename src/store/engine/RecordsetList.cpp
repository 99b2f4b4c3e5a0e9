#include "store/engine/Connection.h"
#include "store/engine/Recordset.h"
#include "store/engine/Source.h"

#include "platform/RuntimeError.h"
#include "store/engine/Value.h"

#include <QHash>

namespace orlo::store
{

// The rows come in whatever order costs least, and each goes to its place. One that the set's statement no longer finds
// is read by its number, as a walk would.
void Recordset::readAll(std::initializer_list<QStringView> names,
                        const std::function<void(std::span<const Value>)>& take) const
{
    std::vector<int> columns;
    for (const QStringView name : names)
        columns.push_back(column(name));
    Rows found(columns.size());
    std::vector<qsizetype> foundAt(m_numbers.size(), -1);
    if (updatable() && m_shape->plain) {
        QHash<qint64, std::size_t> places;
        places.reserve(m_size);
        for (std::size_t place = 0; place < m_numbers.size(); ++place)
            places.insert(m_numbers[place], place);
        QByteArray sql = "SELECT ";
        for (const int column : columns)
            sql += m_shape->columns[static_cast<std::size_t>(column)] + ',';
        auto statement = m_connection->statement(sql + m_source->unorderedSql, Origin::Outside);
        while (statement.step())
            if (const auto place = places.constFind(statement.integer(static_cast<int>(columns.size())));
                place != places.cend()) {
                foundAt[*place] = found.size();
                found.append(statement.handle());
            }
    }
    std::vector<Value> values(columns.size());
    const auto give = [&](const Rows& rows, qsizetype row, bool whole) {
        if (rows.isGone(row))
            refuse(platform::RecordDeleted);
        for (std::size_t i = 0; i < columns.size(); ++i)
            values[i] = rows.value(row, whole ? columns[i] : static_cast<int>(i),
                                   m_shape->fields[static_cast<std::size_t>(columns[i])].type);
        take(values);
    };
    for (qsizetype place = 0; place < m_size; ++place)
        if (!updatable())
            give(m_block->rows, place, true);
        else if (const auto at = static_cast<std::size_t>(place); foundAt[at] >= 0)
            give(found, foundAt[at], false);
        else
            give(readBlock(*m_connection, *m_source, std::span(&m_numbers[at], 1))->rows, 0, true);
}

} // namespace orlo::store
