#include "reporting/PdfFinish.h"

#include <QFile>

namespace orlo::reports
{

void finishPdf(QFile& pages, QIODevice& file, const PdfExtras& extras, const PartProgress& progress)
{
    Q_UNUSED(extras)
    constexpr qint64 AtOnce = 1 << 20;
    pages.seek(0);
    while (!pages.atEnd()) {
        progress(std::size_t(pages.pos()), std::size_t(pages.size()));
        if (file.write(pages.read(AtOnce)) <= 0)
            return;
    }
}

} // namespace orlo::reports
