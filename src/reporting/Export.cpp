#include "reporting/Export.h"

#include "platform/WriteAll.h"
#include "reporting/PdfFile.h"

#include <QRegularExpression>
#include <QSaveFile>

namespace orlo::reporting
{

namespace
{

// Share of the work that is done when the pages are drawn, in percent.
constexpr int PagesDrawn = 90;

// True for a text that a spreadsheet would take for a formula. A sign followed only by digits isn't one: telephone
// numbers look like that.
bool readsAsFormula(const QString& text)
{
    static const QRegularExpression signedNumber(
        QStringLiteral("^[+-]([0-9][0-9 ,.]*%?|[0-9]*\\.?[0-9]+(E[+-]?[0-9]+)?)$"),
        QRegularExpression::CaseInsensitiveOption);
    if (text.startsWith(u'+') || text.startsWith(u'-'))
        return !signedNumber.match(text).hasMatch();
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
    const PartProgress drawn(progress, 0, PagesDrawn);
    try {
        PdfFile file(path);
        for (const Page& page : document.pages) {
            drawn(std::size_t(&page - document.pages.data()), document.pages.size());
            file.add(document, page);
        }
        file.commit(PartProgress(progress, PagesDrawn, 100));
    } catch (const Cancelled&) {
        return false;
    }
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
    if (!file.open(QIODevice::WriteOnly))
        platform::raiseUnwritable(path, file.errorString());
    // The byte order mark tells spreadsheets that the text is UTF-8.
    platform::writeAll(file, "\xEF\xBB\xBF" + csvText(document).toUtf8());
    platform::commitAll(file);
}

} // namespace orlo::reporting
