#pragma once

#include "store/engine/TableDef.h"
#include "store/jet/Import.h"
#include "store/jet/Stream.h"

#include <vector>

namespace orlo::store::jet
{

/// A field as declared in the former file.
struct FormerField {
    QString name;
    Kind kind;
    int size; ///< characters
};

/// A table as declared in the former file, and the new file's table for its rows.
struct FormerTable {
    QString name;
    bool isLeft = false; ///< internal to the former engine; not taken over
    std::uint32_t rows = 0;
    std::vector<FormerField> fields;
    TableDef target{QString()};
    QStringList targetFields; ///< one per field
};

/// A former file's contents except its rows.
struct Definitions {
    std::vector<FormerTable> tables; ///< in stream order
    std::vector<TableDef> empty;     ///< tables of the version that the file lacks
    int version;                     ///< one of the schema's numbers
    Report report;
};

/// Reads the stream's header and decides what to do with each table. Raises 3049, or 3343 if no table is ours.
[[nodiscard]] Definitions readDefinitions(HelperStream& stream);

/// The name, or a similar one, that is valid and not taken in the new file.
[[nodiscard]] QString freeName(const QString& wanted, const QStringList& taken);

} // namespace orlo::store::jet
