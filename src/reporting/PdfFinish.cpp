#include "reporting/PdfFinish.h"

#include "platform/Application.h"
#include "platform/System.h"
#include "reporting/ReportError.h"

#include <QFile>
#include <QLibrary>

#include <stdexcept>

namespace orlo::reporting
{

namespace
{

// Loads the module when the first PDF file is saved, since its libraries would slow down the program's start. Null if
// this build has none. A module that can't be loaded, such as one of another version, is logged once.
decltype(&ORLO_FINISH_PDF) moduleFinish()
{
    static const auto finish = [] {
        QLibrary module(platform::companionFile(platform::moduleName(QStringLiteral("orlo-pdf"))));
        const auto function = reinterpret_cast<decltype(&ORLO_FINISH_PDF)>(
            module.fileName().isEmpty() ? nullptr : module.resolve(QT_STRINGIFY(ORLO_FINISH_PDF)));
        if (!function && !module.fileName().isEmpty())
            qWarning("PDF files get no bookmarks and links: %s", qPrintable(module.errorString()));
        return function;
    }();
    return finish;
}

void copyPages(QFile& pages, const ByteSink& write, const PartProgress& progress)
{
    constexpr qint64 AtOnce = 1 << 20;
    if (!pages.seek(0))
        throw std::runtime_error(pages.errorString().toLocal8Bit().toStdString());
    while (!pages.atEnd()) {
        progress(std::size_t(pages.pos()), std::size_t(pages.size()));
        const QByteArray block = pages.read(AtOnce);
        if (block.isEmpty())
            throw std::runtime_error(pages.errorString().toLocal8Bit().toStdString());
        write(block);
    }
}

} // namespace

void finishPdf(QFile& pages, const ByteSink& write, const PdfExtras& extras, const PartProgress& progress)
{
    try {
        if (const auto finish = moduleFinish())
            finish(pages, write, extras, progress);
        else
            copyPages(pages, write, progress);
    } catch (const std::runtime_error& error) {
        throw ReportError(platform::PathFileAccess,
                          QStringLiteral("The PDF file can't be made: %1").arg(QString::fromLocal8Bit(error.what())));
    }
}

} // namespace orlo::reporting
