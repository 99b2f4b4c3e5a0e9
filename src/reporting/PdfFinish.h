#pragma once

#include "reporting/MailLinks.h"
#include "reporting/Renderer.h"

class QFile;
class QIODevice;

namespace orlo::reports
{

/// What a PDF file has beside its drawn pages.
struct PdfExtras {
    QString author;  ///< empty for none
    QString subject; ///< empty for none
    QSizeF paper;    ///< points
    std::vector<OutlineEntry> outline;
    std::vector<MailLink> links; ///< in the order of the pages
};

/// Writes a PDF file of finished pages once more, with bookmarks, links, author and subject. Two files hold this
/// function, and the build takes one of them: PdfFinish.cpp by the library qpdf; PdfFinishNone.cpp, where that isn't to
/// be had, leaves the pages as they are. What the file doesn't take, it tells by its own error. Raises 75 for pages
/// that can't be read; throws Cancelled.
void finishPdf(QFile& pages, QIODevice& file, const PdfExtras& extras, const PartProgress& progress);

} // namespace orlo::reports
