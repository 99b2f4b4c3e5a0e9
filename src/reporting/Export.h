#pragma once

#include "reporting/Document.h"
#include "reporting/Renderer.h"

namespace orlo::reporting
{

/// Writes the pages as a PDF file with real text, title, author, subject, bookmarks and e-mail links. False if progress
/// cancelled it; no file is left then. Raises 75 if the file can't be written.
bool writePdf(const Document& document, const QString& path, const Progress& progress = {});

/// The main list's rows as CSV after RFC 4180, with a line of headings, CRLF and doubled quotes. Each subreport follows
/// after an empty line, with its name and headings. A text that a spreadsheet would compute gets a leading apostrophe.
[[nodiscard]] QString csvText(const Document& document);
/// Writes csvText() as UTF-8. Raises 75 if the file can't be written.
void writeCsv(const Document& document, const QString& path);

} // namespace orlo::reporting
