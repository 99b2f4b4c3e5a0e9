#pragma once

#include "store/engine/Value.h"
#include "store/jet/FormerFile.h"

#include <vector>

namespace orlo::store::jet
{

class HelperStream;
struct FormerTable;

/// A value as the former file has it, before its new field has its say.
struct SourceValue {
    Value value;
    QString problem; ///< why it isn't all of what stood there
    QString text;    ///< what stood there then
};

/// What a message or a table beside shows of the value.
[[nodiscard]] QString textOf(const SourceValue& source);

/// The rows of one table, as they come in the stream. They are counted on their way, and the helper's own counts
/// compared.
class FormerRows
{
public:
    FormerRows(HelperStream& stream, const FormerTable& table);

    /// Reads the next row; false at the table's end. Raises 3049 for a row that breaks off, and at the end unless as
    /// many rows and values have come as there are.
    bool next();
    [[nodiscard]] const std::vector<SourceValue>& row() const { return m_row; }
    [[nodiscard]] const FormerCount& count() const { return m_count; }

private:
    void finish();

    HelperStream& m_stream;
    std::vector<SourceValue> m_row;
    FormerCount m_count;
};

} // namespace orlo::store::jet
