#include "reporting/Export.h"

#include "platform/Application.h"
#include "reporting/Paint.h"
#include "reporting/ReportError.h"

#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

namespace orlo::reports
{

namespace
{

/// Makes the writer's device unit the typesetting unit.
constexpr int PdfResolution = int(72 * UnitsPerPoint);

[[noreturn]] void cannotWrite(const QSaveFile& file)
{
    throw ReportError(platform::PathFileAccess,
                      QStringLiteral("The file %1 can't be written: %2").arg(file.fileName(), file.errorString()));
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

} // namespace

bool writePdf(const Document& document, const QString& path, const Progress& progress)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        cannotWrite(file);
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
            if (progress && !progress(page, count))
                return false;
            if (page > 0)
                writer.newPage();
            pages.paint(painter, page);
        }
    }
    if (!file.commit())
        cannotWrite(file);
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
        cannotWrite(file);
}

} // namespace orlo::reports
