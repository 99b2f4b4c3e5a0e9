#pragma once

#include "store/jet/Import.h"
#include "store/jet/Stream.h"
#include "store/schema/Schema.h"

#include <vector>

namespace orlo::store::jet
{

/// A field as the former file declares it.
struct FormerField {
    QString name;
    Kind kind;
    int size; ///< characters
};

/// A table as the former file declares it, and the table of the new file that takes its rows.
struct FormerTable {
    QString name;
    bool isLeft = false; ///< the former engine's own, which nothing takes
    std::uint32_t rows = 0;
    std::vector<FormerField> fields;
    TableDef target{QString()};
    QStringList targetFields; ///< one for each of the fields
};

/// What a former file holds, besides its rows.
struct Definitions {
    std::vector<FormerTable> tables; ///< in the order of the stream
    std::vector<TableDef> empty;     ///< tables of the version that the file lacks
    int version; ///< a number of the schema's
    Report report;
};

/// Reads the head of the stream and decides what becomes of each table. Raises 3049, or 3343 where no table is ours.
[[nodiscard]] Definitions readDefinitions(HelperStream& stream);

/// The name, or one like it that no table or query of the new file has and that the file's own names allow.
[[nodiscard]] QString freeName(const QString& wanted, const QStringList& taken);

} // namespace orlo::store::jet
