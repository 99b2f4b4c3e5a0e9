#pragma once

#include "store/engine/Database.h"

#include <QHash>

namespace orlo::store
{

/// A version of the program's schema. The engine knows no table by itself, so opening and repair use this.
struct Edition {
    std::vector<TableDef> tables;
    std::vector<QueryDef> queries;
    QString telling;                        ///< the table whose number of fields is characteristic
    QHash<QString, QStringList> usualTexts; ///< by table: the first field of a new file's rows

    /// The table of a name (case-insensitive), or null.
    [[nodiscard]] const TableDef* findTable(QStringView name) const;
};

} // namespace orlo::store
