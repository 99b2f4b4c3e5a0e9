#pragma once

#include "support/Files.h"
#include "support/System.h"

#include <QStringList>

#include <sqlite3.h>

namespace orlo::test
{

/// Runs a statement on the file as another program would; returns one line per row with bars between the cells, or the
/// error message.
inline QStringList sqlite(const QString& path, const QByteArray& statement)
{
    QStringList lines;
    sqlite3* file = nullptr;
    char* error = nullptr;
    sqlite3_open(path.toUtf8().constData(), &file);
    sqlite3_exec(file, OtherJournal, nullptr, nullptr, nullptr);
    sqlite3_exec(
        file, statement.constData(),
        [](void* to, int columns, char** texts, char**) {
            QStringList cells;
            for (int i = 0; i < columns; ++i)
                cells += texts[i] ? QString::fromUtf8(texts[i]) : "Null";
            *static_cast<QStringList*>(to) += cells.join(u'|');
            return 0;
        },
        &lines, &error);
    if (error)
        lines = {QString::fromUtf8(error)};
    sqlite3_free(error);
    sqlite3_close(file);
    return lines;
}

/// The file's schema: tables, indexes, views, triggers, and the texts of stored queries.
inline QStringList definitions(const QString& path)
{
    return sqlite(path, "Select type, name, tbl_name, sql From sqlite_master Order By type, name;"
                        "Select * From Stored_Queries Order By 1");
}

/// A file's bytes with a table's root page zeroed; "sqlite_master" is the catalogue.
inline QByteArray withoutRootOf(const QString& path, const QString& table)
{
    const QString root =
        QStringLiteral("Select ifnull(max(rootpage), 1) From sqlite_master Where name = '%1'").arg(table);
    constexpr int Page = 4096;
    constexpr int Header = 100;
    const int end = sqlite(path, root.toUtf8()).value(0).toInt() * Page;
    const int start = std::max(end - Page, Header);
    return contents(path).replace(start, end - start, QByteArray(end - start, '\0'));
}

/// True if a journal has something to roll back.
inline bool isHot(const QString& journal)
{
    QFile file(journal);
    return file.open(QIODevice::ReadOnly) && file.read(1) == "\xd9";
}

} // namespace orlo::test
