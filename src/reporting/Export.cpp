#include "reporting/Export.h"

#include "platform/Application.h"
#include "reporting/Paint.h"
#include "reporting/PdfFinish.h"
#include "reporting/ReportError.h"

#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTemporaryFile>

namespace orlo::reports
{

namespace
{

/// Makes the writer's device unit the typesetting unit.
constexpr int PdfResolution = int(72 * UnitsPerPoint);

/// How far a PDF file has come when its pages are drawn, in percent.
constexpr int PagesDrawn = 90;

[[noreturn]] void cannotWrite(const QString& path, const QFileDevice& file)
{
    throw ReportError(platform::PathFileAccess,
                      QStringLiteral("The file %1 can't be written: %2").arg(path, file.errorString()));
}

/// A spreadsheet takes a text that begins so for a formula. A sign before a number is none: telephone numbers have it.
bool readsAsFormula(const QString& text)
{
    return text.startsWith(u'=') || text.startsWith(u'@') || text.startsWith(u'\t') || text.startsWith(u'\r');
}

QString csvField(const QString& given)
{
    const QString text = readsAsFormula(given) ? u'\'' + given : given;
    const bool plain = std::none_of(text.begin(), text.end(),
                                    [](QChar c) { return c == u'"' || c == u',' || c == u'\r' || c == u'\n'; });
    return plain ? text : u'"' + QString(text).replace(u'"', QLatin1StringView("\"\"")) + u'"';
}

void appendLine(QString& csv, const QStringList& fields)
{
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (i > 0)
            csv += u',';
        csv += csvField(fields[i]);
    }
    csv += QLatin1StringView("\r\n");
}

void drawPages(const Document& document, QIODevice& file, std::vector<MailLink>& links, const PartProgress& progress)
{
    QPdfWriter writer(&file);
    writer.setTitle(document.title);
    writer.setCreator(platform::title());
    writer.setResolution(PdfResolution);
    writer.setPageSize(QPageSize(document.paper, QPageSize::Point));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    QPainter painter(&writer);
    painter.scale(UnitsPerPoint, UnitsPerPoint);
    const PagePainter pages(document);
    const int count = int(document.pages.size());
    for (int page = 0; page < count; ++page) {
        progress(std::size_t(page), std::size_t(count));
        if (page > 0)
            writer.newPage();
        pages.paint(painter, page);
        addMailLinks(document.pages[std::size_t(page)], page, document.fonts, links);
    }
}

} // namespace

bool writePdf(const Document& document, const QString& path, const Progress& progress)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        cannotWrite(path, file);
    QTemporaryFile pages(path + QStringLiteral(".XXXXXX")); // what is drawn, before it gets its bookmarks and links
    if (!pages.open())
        cannotWrite(path, pages);
    try {
        PdfExtras extras{document.author, document.subject, document.paper, document.outline, {}};
        drawPages(document, pages, extras.links, PartProgress(progress, 0, PagesDrawn));
        if (!pages.flush() || pages.error() != QFileDevice::NoError)
            cannotWrite(path, pages);
        finishPdf(pages, file, extras, PartProgress(progress, PagesDrawn, 100));
    } catch (const Cancelled&) {
        return false;
    }
    if (!file.commit())
        cannotWrite(path, file);
    return true;
}

QString csvText(const Document& document)
{
    QString csv;
    appendLine(csv, document.columns);
    for (const QStringList& row : document.rows)
        appendLine(csv, row);
    for (const DataBlock& block : document.blocks) {
        csv += QLatin1StringView("\r\n");
        appendLine(csv, {block.title});
        appendLine(csv, block.columns);
        for (const QStringList& row : block.rows)
            appendLine(csv, row);
    }
    return csv;
}

void writeCsv(const Document& document, const QString& path)
{
    QSaveFile file(path);
    // The mark at the start tells spreadsheet programs that the text is UTF-8.
    if (!file.open(QIODevice::WriteOnly) || file.write("\xEF\xBB\xBF" + csvText(document).toUtf8()) < 0 ||
        !file.commit())
        cannotWrite(path, file);
}

} // namespace orlo::reports
