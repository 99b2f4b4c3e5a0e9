#pragma once

#include "reporting/Definition.h"
#include "reporting/DefinitionLines.h"

namespace orlo::reporting
{

/// The path of a file that a report of the folder names, whether it exists or not: beside the report or, for a report
/// in the folder "examples", one level up.
[[nodiscard]] QString fileOfReport(const QString& folder, const QString& name);

/// Reads a band: the options after its name and what its braces contain.
class BandReader
{
public:
    /// Pictures are looked for in the folder.
    BandReader(DefinitionLines& lines, Definition& definition, const QString& folder)
        : m_lines(lines), m_definition(definition), m_folder(folder)
    {
    }

    /// Reads a band whose name has just been read.
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
