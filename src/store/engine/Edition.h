#pragma once

#include "store/engine/Database.h"

#include <QHash>

namespace orlo::store
{

/// One of the shapes in which a program's files come. The engine knows no table of any program; what it can't read in
/// a file, it takes from here.
struct Edition {
    std::vector<TableDef> tables;
    std::vector<QueryDef> queries;
    QString telling;                        ///< the table whose number of fields tells this edition from the others
    QHash<QString, QStringList> usualTexts; ///< by table: what the first field of a fresh file's rows says

    /// The table of a name, without regard to case; none if the edition has no such table.
    [[nodiscard]] const TableDef* findTable(QStringView name) const;
};

} // namespace orlo::store
