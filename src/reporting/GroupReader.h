#pragma once

#include "reporting/Definition.h"
#include "reporting/DefinitionLines.h"

namespace orlo::reporting
{

/// Reads the groups of a definition: the key, the order, what stays together, and the bands of their own.
class GroupReader
{
public:
    /// Pictures lie in the folder.
    GroupReader(DefinitionLines& lines, Definition& definition, const QString& folder)
        : m_lines(lines), m_definition(definition), m_folder(folder)
    {
    }

    /// Reads a group from its name on and adds it to the definition. Raises ReportError 3075.
    void read();
    /// Reads what a "sort" line orders by. Raises ReportError 3075.
    [[nodiscard]] SortKey readSort();

private:
    void readPart(Group& group, const QString& word);
    void readKeepTogether(Group& group);
    void readTop(Group& group);
    void readBand(Band& band);

    DefinitionLines& m_lines;
    Definition& m_definition;
    const QString& m_folder;
};

} // namespace orlo::reporting
