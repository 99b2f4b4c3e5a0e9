#pragma once

#include "reporting/Document.h"
#include "reporting/Renderer.h"

namespace orlo::reporting
{

/// Writes the pages as a PDF file with real text, the document's title, author and subject, its outline as bookmarks
/// and its e-mail addresses as links. False if progress cancelled it, no file is left then. Raises 75 where the file
/// can't be written.
bool writePdf(const Document& document, const QString& path, const Progress& progress = {});

/// The rows of the main list with a line of headings, as RFC 4180 wants it: CRLF, quotes doubled. Each subreport
/// follows after an empty line, with its name and its own headings. A text that a spreadsheet would compute gets an
/// apostrophe before it.
[[nodiscard]] QString csvText(const Document& document);
/// Writes csvText() as UTF-8. Raises 75 where the file can't be written.
void writeCsv(const Document& document, const QString& path);

} // namespace orlo::reporting
