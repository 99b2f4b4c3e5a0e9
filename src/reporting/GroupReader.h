#pragma once

#include "reporting/Definition.h"
#include "reporting/DefinitionLines.h"

namespace orlo::reporting
{

/// Reads a definition's groups: key, order, what is kept together, and their bands.
class GroupReader
{
public:
    /// Pictures are looked for in the folder.
    GroupReader(DefinitionLines& lines, Definition& definition, const QString& folder)
        : m_lines(lines), m_definition(definition), m_folder(folder)
    {
    }

    /// Reads a group, starting at its name, and adds it to the definition. Raises ReportError 3075.
    void read();
    /// Reads the operand of a "sort" line. Raises ReportError 3075.
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
