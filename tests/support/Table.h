#pragma once

#include "support/Main.h"

#include <QMap>
#include <QTest>

namespace orlo::test
{

/// Makes columns of texts and a row of data for each line of the table. Cells are parted by bars and trimmed, the first
/// one names the row, too; "\n" in a cell is a line's end. A line with another number of cells
/// fails.
inline void table(std::initializer_list<const char*> columns, const char* lines)
{
    for (const char* column : columns)
        QTest::addColumn<QString>(column);
    for (const QString& line : QString::fromUtf8(lines).trimmed().split(u'\n')) {
        const QStringList cells = line.split(u'|');
        if (cells.size() != qsizetype(columns.size()))
            fail(QString::number(cells.size()) + QStringLiteral(" cells: ") + line);
        QTestData& row = QTest::newRow(cells[0].trimmed().toUtf8().constData());
        for (const QString& cell : cells)
            row << cell.trimmed().replace(QLatin1String("\\n"), QLatin1String("\n"));
    }
}

/// What the row of data has in a column.
inline QString cell(const char* column)
{
    return *static_cast<const QString*>(QTest::qData(column, qMetaTypeId<QString>()));
}

/// Compares what was seen with the columns of the row of data that have these names.
inline void compare(const QMap<QString, QString>& seen, std::initializer_list<const char*> columns)
{
    for (const char* column : columns)
        if (!QTest::qCompare(seen[column].trimmed(), cell(column), column, "the row's", __FILE__, __LINE__))
            return;
}

} // namespace orlo::test
