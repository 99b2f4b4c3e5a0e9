#pragma once

#include "store/engine/Value.h"
#include "store/jet/FormerFile.h"

#include <functional>
#include <vector>

namespace orlo::store::jet
{

class HelperStream;
struct FormerTable;

/// A value from the former file, before conversion to its new field.
struct SourceValue {
    Value value;
    QString problem; ///< why part of it is lost, if so
    QString text;    ///< the original text in that case
};

/// The value as messages and "_Kept" tables show it.
[[nodiscard]] QString textOf(const SourceValue& source);

/// The rows of a table in the stream. They are counted and compared with the helper's own counts.
class FormerRows
{
public:
    FormerRows(HelperStream& stream, const FormerTable& table);

    /// Reads the next row; false at the table's end. Raises 3049 for a truncated row, or at the end if the counts
    /// differ.
    bool next();
    [[nodiscard]] const std::vector<SourceValue>& row() const { return m_row; }
    [[nodiscard]] const FormerCount& count() const { return m_count; }

private:
    void finish();

    HelperStream& m_stream;
    std::vector<SourceValue> m_row;
    FormerCount m_count;
};

/// Calls back for each of the tables, whose rows come next, and then reads the end of the stream. The callback reads
/// the rows to their end. Raises 3049 without an end.
void readTables(HelperStream& stream, const std::vector<FormerTable>& tables,
                const std::function<void(const FormerTable&, FormerRows&)>& take);

} // namespace orlo::store::jet
