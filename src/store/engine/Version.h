#pragma once

#include "store/engine/Database.h"
#include "store/engine/TableDef.h"

#include <QHash>

#include <optional>

namespace orlo::store
{

/// A version of the program's files. The engine itself knows no tables; what it can't read from a file it takes from
/// here.
struct Version {
    int number;                             ///< 12 means 1.2
    int stated;                             ///< its SQLite user_version; 0 before 1.2
    std::vector<TableDef> tables;           ///< in the order in which they are created
    std::vector<QueryDef> queries;          ///< a query may refer to one that comes later
    QHash<QString, QStringList> usualTexts; ///< by table: the first field of a new file's rows

    /// The table with a name, ignoring case; null if the version has none.
    [[nodiscard]] const TableDef* findTable(QStringView name) const;
};

/// The number as users know it: "1.2" for 12.
[[nodiscard]] QString versionText(int number);

/// The version stated in a file's header; nothing if it isn't an SQLite file. Doesn't open the database.
[[nodiscard]] std::optional<int> statedIn(const QString& file);

/// True for a version newer than all of these.
[[nodiscard]] bool isLater(int stated, const Versions& versions);
/// Raises 3343 for such a version.
void requireKnown(int stated, const Versions& versions);

/// The names of each table's fields.
using TableFields = QHash<QString, QStringList>;

/// The version of a file. If several state the same number, or it can't be read, the tables decide: those with all
/// fields of a version count for it, those lacking one count against it. The newest one if that decides nothing.
[[nodiscard]] const Version& versionOf(const Versions& versions, std::optional<int> stated, const TableFields& tables);

} // namespace orlo::store
