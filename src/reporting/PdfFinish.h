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

/// Writes a PDF file of finished pages once more, with bookmarks, links, author and subject. Where the module orlo-pdf
/// isn't to be had, the pages stay as they are. What the file doesn't take, it tells by its own error. Raises 75 for
/// pages that can't be read; throws Cancelled.
void finishPdf(QFile& pages, QIODevice& file, const PdfExtras& extras, const PartProgress& progress);

} // namespace orlo::reports

/// What the module orlo-pdf does of finishPdf; its name ends with the program's version, so that no other version's
/// module is called. Throws std::runtime_error, with words in the system's encoding, for pages that can't be read; and
/// Cancelled.
extern "C" Q_DECL_EXPORT void ORLO_FINISH_PDF(QFile& pages, QIODevice& file, const orlo::reports::PdfExtras& extras,
                                              const orlo::reports::PartProgress& progress);
