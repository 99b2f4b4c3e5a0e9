#include "reporting/PdfFinish.h"

#include "reporting/ReportError.h"

#include <QFile>

namespace orlo::reports
{

namespace
{

[[noreturn]] void raiseUnreadable(const QFile& pages)
{
    throw ReportError(platform::PathFileAccess,
                      QStringLiteral("The PDF file can't be made: %1").arg(pages.errorString()));
}

} // namespace

void finishPdf(QFile& pages, QIODevice& file, const PdfExtras& extras, const PartProgress& progress)
{
    Q_UNUSED(extras)
    constexpr qint64 AtOnce = 1 << 20;
    if (!pages.seek(0))
        raiseUnreadable(pages);
    while (!pages.atEnd()) {
        progress(std::size_t(pages.pos()), std::size_t(pages.size()));
        const QByteArray block = pages.read(AtOnce);
        if (block.isEmpty())
            raiseUnreadable(pages);
        if (file.write(block) < 0)
            return;
    }
}

} // namespace orlo::reports
