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
inline void addRows(const QStringList& columns, const QList<std::pair<QString, QStringList>>& cases)
{
    static QByteArrayList names; // which the rows point to
    for (const QString& column : columns)
        QTest::addColumn<QString>(names.emplaceBack(column.toUtf8()).constData());
    for (const auto& [name, cells] : cases) {
        if (cells.size() != columns.size())
            fail(QString::number(cells.size()) + QStringLiteral(" cells: ") + name);
        QTestData& row = QTest::newRow(name.toUtf8().constData());
        for (const QString& one : cells)
            row << one;
    }
}

/// The cells of a line, parted by bars and trimmed; "\n" in a cell is a line's end.
inline QStringList cellsOf(const QString& line)
{
    QStringList cells;
    for (const QString& one : line.split(u'|'))
        cells += one.trimmed().replace(QLatin1String("\\n"), QLatin1String("\n"));
    return cells;
}

/// The columns and a case for each line of the table, whose first cell names the row, too.
inline void table(const QStringList& columns, const QString& lines)
{
    QList<std::pair<QString, QStringList>> cases;
    for (const QString& line : lines.trimmed().split(u'\n'))
        cases.append({line.section(u'|', 0, 0).trimmed(), cellsOf(line)});
    addRows(columns, cases);
}

/// The same of a text file of the tests, whose first line names the columns. A table too wide for lines has paragraphs
/// instead: "= " and the first cell, and the others, as far as they aren't empty, as "column: cell", some to a line
/// with bars in between.
inline void tableOf(const char* file)
{
    const QString text =
        QString::fromUtf8(contents(QStringLiteral(ORLO_SOURCE_DIR "/tests/") + QString::fromUtf8(file)));
    const QStringList columns = cellsOf(text.section(u'\n', 0, 0));
    const QString lines = text.section(u'\n', 1);
    if (!lines.startsWith(QLatin1String("\n= ")))
        return table(columns, lines);
    QList<std::pair<QString, QStringList>> cases;
    for (const QString& one : lines.trimmed().prepend(u'\n').split(QStringLiteral("\n= ")).mid(1)) {
        QStringList cells(columns.size());
        cells[0] = one.section(u'\n', 0, 0);
        for (const QString& cell : cellsOf(one.section(u'\n', 1).replace(u'\n', u'|'))) {
            const qsizetype at = columns.indexOf(cell.section(u':', 0, 0));
            if (at >= 0)
                cells[at] = cell.section(u':', 1).trimmed();
            else if (!cell.isEmpty())
                fail(QStringLiteral("no such column: ") + cell);
        }
        cases.append({cells[0], cells});
    }
    addRows(columns, cases);
}

/// What the row of data has in a column.
inline QString cell(const char* column)
{
    return *static_cast<const QString*>(QTest::qData(column, qMetaTypeId<QString>()));
}

/// The columns and the cases of a text file of the tests: "= " and a name on a line, the lines of the first cell, and
/// each further cell from a line's "-- " on. Cells keep their lines' ends.
inline void cases(const QStringList& columns, const QString& file)
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
