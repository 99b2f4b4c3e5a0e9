#pragma once

#include "support/Files.h"
#include "support/Main.h"

#include <QMap>
#include <QRegularExpression>
#include <QTest>

#include <array>
#include <source_location>

namespace orlo::test
{

/// A case of a table, and its line in the table's text.
struct Case {
    QString name;
    QStringList cells;
    int line;
};

/// Makes text columns and a row of data for each case. The table's text starts in this file at this line. A case with a
/// wrong number of cells fails.
inline void addRows(const QStringList& columns, const QList<Case>& cases, const QByteArray& file, int start)
{
    static QByteArrayList names; // the rows point to these
    for (const QString& column : columns)
        QTest::addColumn<QString>(names.emplaceBack(column.toUtf8()).constData());
    QHash<QByteArray, RowPlace> places;
    for (const auto& [name, cells, line] : cases) {
        if (cells.size() != columns.size())
            fail(QStringLiteral("%1:%2: %3 cells: ").arg(QString::fromUtf8(file)).arg(start + line).arg(cells.size()) +
                 name);
        QTestData& row = QTest::newRow(name.toUtf8().constData());
        for (const QString& one : cells)
            row << one;
        places.insert(name.toUtf8(), {file, start + line});
    }
    setRowPlaces(std::move(places));
}

/// The cells of a line, separated by bars and trimmed; "\n" and "\r" in a cell are line breaks.
inline QStringList cellsOf(const QString& line)
{
    QStringList cells;
    for (const QString& one : line.split(u'|'))
        cells += one.trimmed()
                     .replace(QLatin1String("\\n"), QLatin1String("\n"))
                     .replace(QLatin1String("\\r"), QLatin1String("\r"));
    return cells;
}

/// A case for each line of a table; its first cell is also its name.
inline QList<Case> casesOf(const QString& lines)
{
    const QString table = lines.trimmed();
    int line = int(lines.first(lines.indexOf(table)).count(u'\n'));
    QList<Case> cases;
    for (const QString& row : table.split(u'\n'))
        cases.append({row.section(u'|', 0, 0).trimmed(), cellsOf(row), line++});
    return cases;
}

/// A table in the test's own source.
inline void table(const QStringList& columns, const QString& lines,
                  const std::source_location& place = std::source_location::current())
{
    addRows(columns, casesOf(lines), place.file_name(), int(place.line()));
}

inline QString fileOfTests(const QString& file)
{
    return QStringLiteral(ORLO_SOURCE_DIR "/tests/") + file;
}

/// A table in a text file of the tests, whose first line names the columns. A table too wide for lines has paragraphs
/// instead: "= " and the first cell, then the other cells that aren't empty, as "column: cell", several to a line with
/// bars between them.
inline void tableOf(const char* file)
{
    const QString path = fileOfTests(QString::fromUtf8(file));
    const QString text = QString::fromUtf8(contents(path));
    const QStringList columns = cellsOf(text.section(u'\n', 0, 0));
    const QString lines = text.section(u'\n', 1);
    if (!lines.startsWith(QLatin1String("\n= ")))
        return addRows(columns, casesOf(lines), path.toUtf8(), 2);
    QList<Case> cases;
    int line = 2;
    for (const QString& one : lines.split(QStringLiteral("\n= ")).mid(1)) {
        QStringList cells(columns.size());
        cells[0] = one.section(u'\n', 0, 0);
        for (const QString& cell : cellsOf(one.section(u'\n', 1).replace(u'\n', u'|'))) {
            const qsizetype at = columns.indexOf(cell.section(u':', 0, 0));
            if (at >= 0)
                cells[at] = cell.section(u':', 1).trimmed();
            else if (!cell.isEmpty())
                fail(QStringLiteral("no such column: ") + cell);
        }
        cases.append({cells[0], cells, line});
        line += int(one.count(u'\n')) + 1;
    }
    addRows(columns, cases, path.toUtf8(), 1);
}

/// The current row's text in a column.
inline QString cell(const char* column)
{
    return *static_cast<const QString*>(QTest::qData(column, qMetaTypeId<QString>()));
}

/// The cases in a text file of the tests: "= " and a name on a line, the lines of the first cell, then each further
/// cell from a line's "-- " on. Cells keep their line breaks.
inline void cases(const QStringList& columns, const QString& file)
{
    static const QRegularExpression mark(QStringLiteral("^-- "), QRegularExpression::MultilineOption);
    const QString path = fileOfTests(file);
    const QStringList parts = QString::fromUtf8(contents(path)).split(QStringLiteral("\n= "));
    QList<Case> all;
    qsizetype line = parts[0].count(u'\n') + 1;
    for (const QString& one : parts.mid(1)) {
        all.append({one.section(u'\n', 0, 0), one.section(u'\n', 1).split(mark), int(line)});
        line += one.count(u'\n') + 1;
    }
    addRows(columns, all, path.toUtf8(), 1);
}

/// The current row's texts in these columns.
template <class... Column>
std::array<QString, sizeof...(Column)> cells(const Column&... columns)
{
    return {cell(columns)...};
}

/// Compares results with the current row's columns of the same names. A failure names the row's place, if it is known.
inline void compare(const QMap<QString, QString>& seen, std::initializer_list<const char*> columns,
                    const std::source_location& caller = std::source_location::current())
{
    RowPlace place = rowPlace();
    if (place.line == 0)
        place = {caller.file_name(), int(caller.line())};
    for (const char* column : columns)
        if (!QTest::qCompare(seen[column].trimmed(), cell(column), column, "the row's", place.file.constData(),
                             place.line))
            return;
}

} // namespace orlo::test
