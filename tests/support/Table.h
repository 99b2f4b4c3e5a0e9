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

/// A case of a table, and the line of the text in which it stands.
struct Case {
    QString name;
    QStringList cells;
    int line;
};

/// Makes columns of texts and a row of data for each case, which stands in a file, the text from a line on. A case with
/// another number of cells fails.
inline void addRows(std::initializer_list<const char*> columns, const QList<Case>& cases, const QByteArray& file,
                    int start)
{
    for (const char* column : columns)
        QTest::addColumn<QString>(column);
    QHash<QByteArray, RowPlace> places;
    for (const auto& [name, cells, line] : cases) {
        if (cells.size() != qsizetype(columns.size()))
            fail(QStringLiteral("%1:%2: %3 cells: ").arg(QString::fromUtf8(file)).arg(start + line).arg(cells.size()) +
                 name);
        QTestData& row = QTest::newRow(name.toUtf8().constData());
        for (const QString& one : cells)
            row << one;
        places.insert(name.toUtf8(), {file, start + line});
    }
    setRowPlaces(std::move(places));
}

/// The cases of a table, one for each line. Cells are parted by bars and trimmed, the first one names the row, too;
/// "\n" in a cell is a line's end.
inline QList<Case> casesOf(const QString& lines)
{
    const QString table = lines.trimmed();
    int line = int(lines.first(lines.indexOf(table)).count(u'\n'));
    QList<Case> cases;
    for (const QString& row : table.split(u'\n')) {
        QStringList cells;
        for (const QString& one : row.split(u'|'))
            cells += one.trimmed().replace(QLatin1String("\\n"), QLatin1String("\n"));
        cases.append({row.section(u'|', 0, 0).trimmed(), cells, line++});
    }
    return cases;
}

/// The columns and the cases of a table that stands in the test.
inline void table(std::initializer_list<const char*> columns, const char* lines,
                  const std::source_location& place = std::source_location::current())
{
    addRows(columns, casesOf(QString::fromUtf8(lines)), place.file_name(), int(place.line()));
}

inline QString fileOfTests(const QString& file)
{
    return QStringLiteral(ORLO_SOURCE_DIR "/tests/") + file;
}

/// The columns and the cases of a table that is a text file of the tests.
inline void tableOf(std::initializer_list<const char*> columns, const char* file)
{
    const QString path = fileOfTests(QString::fromUtf8(file));
    addRows(columns, casesOf(QString::fromUtf8(contents(path))), path.toUtf8(), 1);
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

/// The texts of the row of data in these columns.
template <class... Column>
std::array<QString, sizeof...(Column)> cells(const Column&... columns)
{
    return {cell(columns)...};
}

/// Compares what was seen with the columns of the row of data that have these names. A red one points at the row, where
/// its place is known.
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
