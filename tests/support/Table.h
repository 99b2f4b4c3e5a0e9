#pragma once

#include "support/Files.h"

#include <QMap>
#include <QRegularExpression>
#include <QTest>

#include <array>

namespace orlo::test
{

/// Makes columns of texts and a row of data for each case, its name and cells. A case with another number of cells
/// fails.
inline void addRows(std::initializer_list<const char*> columns, const QList<std::pair<QString, QStringList>>& cases)
{
    for (const char* column : columns)
        QTest::addColumn<QString>(column);
    for (const auto& [name, cells] : cases) {
        if (cells.size() != qsizetype(columns.size()))
            fail(QString::number(cells.size()) + QStringLiteral(" cells: ") + name);
        QTestData& row = QTest::newRow(name.toUtf8().constData());
        for (const QString& one : cells)
            row << one;
    }
}

/// The columns and a case for each line of the table. Cells are parted by bars and trimmed, the first one names the
/// row, too; "\n" in a cell is a line's end.
inline void table(std::initializer_list<const char*> columns, const char* lines)
{
    QList<std::pair<QString, QStringList>> cases;
    for (const QString& line : QString::fromUtf8(lines).trimmed().split(u'\n')) {
        QStringList cells;
        for (const QString& one : line.split(u'|'))
            cells += one.trimmed().replace(QLatin1String("\\n"), QLatin1String("\n"));
        cases.append({line.section(u'|', 0, 0).trimmed(), cells});
    }
    addRows(columns, cases);
}

/// The same of a text file of the tests.
inline void tableOf(std::initializer_list<const char*> columns, const char* file)
{
    table(columns, contents(QStringLiteral(ORLO_SOURCE_DIR "/tests/") + QString::fromUtf8(file)).constData());
}

/// What the row of data has in a column.
inline QString cell(const char* column)
{
    return *static_cast<const QString*>(QTest::qData(column, qMetaTypeId<QString>()));
}

/// The columns and the cases of a text file of the tests: "= " and a name on a line, the lines of the first cell, and
/// each further cell from a line's "-- " on. Cells keep their lines' ends.
inline void cases(std::initializer_list<const char*> columns, const QString& file)
{
    static const QRegularExpression mark(QStringLiteral("^-- "), QRegularExpression::MultilineOption);
    const QString text = QString::fromUtf8(contents(QStringLiteral(ORLO_SOURCE_DIR "/tests/") + file));
    QList<std::pair<QString, QStringList>> all;
    for (const QString& one : text.split(QStringLiteral("\n= ")).mid(1))
        all.append({one.section(u'\n', 0, 0), one.section(u'\n', 1).split(mark)});
    addRows(columns, all);
}

/// The texts of the row of data in these columns.
template <class... Column>
std::array<QString, sizeof...(Column)> cells(const Column&... columns)
{
    return {cell(columns)...};
}

/// Compares what was seen with the columns of the row of data that have these names.
inline void compare(const QMap<QString, QString>& seen, std::initializer_list<const char*> columns)
{
    for (const char* column : columns)
        if (!QTest::qCompare(seen[column].trimmed(), cell(column), column, "the row's", __FILE__, __LINE__))
            return;
}

} // namespace orlo::test
