#include "reports/engine/view/DocumentSearch.h"

#include "reports/engine/Paint.h"

#include <QFontMetricsF>

namespace orlo::reports
{

namespace
{

// The places in one text, measured with what it is drawn with.
void findInItem(const TextItem& item, const QFontMetricsF& metrics, int page, const QString& text,
                std::vector<Hit>& hits)
{
    const double height = metrics.height() / UnitsPerPoint;
    double top = item.box.top();
    const QStringList lines = item.text.split(u'\n');
    for (const QString& line : lines) {
        for (qsizetype at = line.indexOf(text, 0, Qt::CaseInsensitive); at >= 0;
             at = line.indexOf(text, at + text.size(), Qt::CaseInsensitive)) {
            const double before = metrics.horizontalAdvance(line.left(at)) / UnitsPerPoint;
            const double width = metrics.horizontalAdvance(line.mid(at, text.size())) / UnitsPerPoint;
            hits.push_back({page, QRectF(item.box.left() + before, top, width, height)});
        }
        top += height;
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
