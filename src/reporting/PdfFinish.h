#pragma once

#include "reporting/MailLinks.h"
#include "reporting/Renderer.h"

#include <QByteArrayView>

class QFile;

namespace orlo::reporting
{

/// What a PDF file has besides its pages.
struct PdfExtras {
    QString author;  ///< empty for none
    QString subject; ///< empty for none
    QSizeF paper;    ///< points
    std::vector<OutlineEntry> outline;
    std::vector<MailLink> links; ///< in page order
};

/// Takes all bytes it is given, or raises.
using ByteSink = std::function<void(QByteArrayView bytes)>;

/// Copies a PDF file, adding bookmarks, links, author and subject. Without the module orlo-pdf the pages are copied
/// unchanged. Raises 75 for pages that can't be read, and what the sink raises; throws Cancelled.
void finishPdf(QFile& pages, const ByteSink& write, const PdfExtras& extras, const PartProgress& progress);

} // namespace orlo::reporting

/// The part of finishPdf() in the module orlo-pdf. Its name contains the program's version, so that a module of another
/// version is never called. Throws std::runtime_error, in the system's encoding, for pages that can't be read; what the
/// sink raises; and Cancelled.
extern "C" Q_DECL_EXPORT void ORLO_FINISH_PDF(QFile& pages, const orlo::reporting::ByteSink& write,
                                              const orlo::reporting::PdfExtras& extras,
                                              const orlo::reporting::PartProgress& progress);
