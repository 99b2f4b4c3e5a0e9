#pragma once

#include "reporting/Definition.h"
#include "reporting/DefinitionLines.h"

namespace orlo::reporting
{

/// The path of a file that a report of the folder names, whether it is there or not: beside the report, or beside the
/// folder "examples" where the report lies in that.
[[nodiscard]] QString fileOfReport(const QString& folder, const QString& name);

/// Reads the bands of a definition: what stands between a band's braces, and the options before them.
class BandReader
{
public:
    /// Pictures lie in the folder.
    BandReader(DefinitionLines& lines, Definition& definition, const QString& folder)
        : m_lines(lines), m_definition(definition), m_folder(folder)
    {
    }

    /// Reads a band from after its name on.
    void read(Band& band);

private:
    void readRow(std::vector<Row>& rows);
    void readColumns(Band& band);
    void readLine(Row& row, const QString& word);
    Element readElement(const QString& word);
    void readColor(Element& element);
    void readText(Element& element);
    QString wantedFile();
    void readPicture(Element& element);
    void readRows(Element& element);

    DefinitionLines& m_lines;
    Definition& m_definition;
    const QString& m_folder;
    bool m_inRows = false;
    bool m_inColumns = false;
};

} // namespace orlo::reporting
