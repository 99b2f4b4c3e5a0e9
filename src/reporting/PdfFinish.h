#pragma once

#include "reporting/MailLinks.h"
#include "reporting/Renderer.h"

#include <QByteArrayView>

class QFile;

namespace orlo::reporting
{

/// What a PDF file has beside its drawn pages.
struct PdfExtras {
    QString author;  ///< empty for none
    QString subject; ///< empty for none
    QSizeF paper;    ///< points
    std::vector<OutlineEntry> outline;
    std::vector<MailLink> links; ///< in the order of the pages
};

/// Takes all bytes that it is handed, or raises.
using ByteSink = std::function<void(QByteArrayView bytes)>;

/// Writes a PDF file of finished pages once more, with bookmarks, links, author and subject. Where the module orlo-pdf
/// isn't to be had, the pages stay as they are. Raises 75 for pages that can't be read, and what the sink raises;
/// throws Cancelled.
void finishPdf(QFile& pages, const ByteSink& write, const PdfExtras& extras, const PartProgress& progress);

} // namespace orlo::reporting

/// What the module orlo-pdf does of finishPdf; its name ends with the program's version, so that no other version's
/// module is called. Throws std::runtime_error, with words in the system's encoding, for pages that can't be read; what
/// the sink raises; and Cancelled.
extern "C" Q_DECL_EXPORT void ORLO_FINISH_PDF(QFile& pages, const orlo::reporting::ByteSink& write,
                                              const orlo::reporting::PdfExtras& extras,
                                              const orlo::reporting::PartProgress& progress);
