#include "reports/engine/view/DocumentSearch.h"

#include "reports/engine/Paint.h"

#include <QFontMetricsF>

namespace orlo::reports
{

namespace
{

// The box of a part of one line, from the metrics that the line is drawn with.
QRectF boxOfPart(const TextItem& item, const QFontMetricsF& metrics, const QString& line, double top, qsizetype at,
                 qsizetype length)
{
    const double lineWidth = metrics.horizontalAdvance(line) / UnitsPerPoint;
    double left = item.box.left();
    if (item.alignment & Qt::AlignRight)
        left = item.box.right() - lineWidth;
    else if (item.alignment & Qt::AlignHCenter)
        left = item.box.center().x() - lineWidth / 2;
    const double before = metrics.horizontalAdvance(line.left(at)) / UnitsPerPoint;
    const double width = metrics.horizontalAdvance(line.mid(at, length)) / UnitsPerPoint;
    return {left + before, top, width, metrics.height() / UnitsPerPoint};
}

void findInItem(const TextItem& item, const QFontMetricsF& metrics, int page, const QString& text,
                std::vector<Hit>& hits)
{
    double top = item.box.top();
    const QStringList lines = item.text.split(u'\n');
    for (const QString& line : lines) {
        for (qsizetype at = line.indexOf(text, 0, Qt::CaseInsensitive); at >= 0;
             at = line.indexOf(text, at + text.size(), Qt::CaseInsensitive))
            hits.push_back({page, boxOfPart(item, metrics, line, top, at, text.size())});
        top += metrics.lineSpacing() / UnitsPerPoint;
    }
}

} // namespace

std::vector<Hit> findText(const Document& document, const QString& text)
{
    std::vector<Hit> hits;
    if (text.isEmpty())
        return hits;
    std::vector<QFontMetricsF> metrics;
    for (const QFont& font : document.fonts)
        metrics.emplace_back(typesetFont(font));
    for (int page = 0; page < static_cast<int>(document.pages.size()); ++page) {
        for (const Item& item : document.pages[static_cast<std::size_t>(page)].items) {
            const auto* textItem = std::get_if<TextItem>(&item);
            if (textItem && textItem->text.contains(text, Qt::CaseInsensitive))
                findInItem(*textItem, metrics[static_cast<std::size_t>(textItem->font)], page, text, hits);
        }
    }
    return hits;
}

} // namespace orlo::reports
