#include "reporting/PdfFinish.h"

#include "reporting/ReportError.h"

#include <QFile>

namespace orlo::reports
{

void finishPdf(QFile& pages, QIODevice& file, const PdfExtras& extras, const PartProgress& progress)
{
    Q_UNUSED(extras)
    constexpr qint64 AtOnce = 1 << 20;
    if (!pages.seek(0))
        raiseUnwritable(pages.fileName(), pages);
    while (!pages.atEnd()) {
        progress(std::size_t(pages.pos()), std::size_t(pages.size()));
        const QByteArray block = pages.read(AtOnce);
        if (block.isEmpty())
            raiseUnwritable(pages.fileName(), pages);
        if (file.write(block) < 0)
            return;
    }
}

} // namespace orlo::reports
