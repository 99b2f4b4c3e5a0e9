#pragma once

#include "store/engine/Database.h"

#include <QHash>

#include <optional>

namespace orlo::store
{

/// A version of a program's files. The engine knows no table of any program; what it can't read in a file, it takes
/// from here.
struct Version {
    int number;                             ///< 12 is 1.2
    int stated;                             ///< what a file of it has as SQLite's user_version; 0 before 1.2
    std::vector<TableDef> tables;           ///< in the order of their making
    std::vector<QueryDef> queries;          ///< a text may name a query that comes later
    QHash<QString, QStringList> usualTexts; ///< by table: what the first field of a fresh file's rows says

    /// The table of a name, without regard to case; none if the version has no such table.
    [[nodiscard]] const TableDef* findTable(QStringView name) const;
};

/// The number as users know it: "1.2" for 12.
[[nodiscard]] QString versionText(int number);

/// What a file states as its version; nothing for one that doesn't begin as SQLite's do. Opens no database.
[[nodiscard]] std::optional<int> statedIn(const QString& file);

/// True for what only a file of a version after the newest of these states.
[[nodiscard]] bool isLater(int stated, const Versions& versions);
/// Raises 3343 for such a file.
void requireKnown(int stated, const Versions& versions);

/// The tables of a file: the names of each one's fields.
using TableFields = QHash<QString, QStringList>;

/// The version of a file. Where several state the same, or it can't be read what the file states, its tables tell: those
/// that have all fields of a version speak for it, those that lack one against it. The newest, where they tell nothing.
[[nodiscard]] const Version& versionOf(const Versions& versions, std::optional<int> stated, const TableFields& tables);

} // namespace orlo::store
