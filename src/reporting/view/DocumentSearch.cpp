#include "reporting/view/DocumentSearch.h"

#include "reporting/Paint.h"

#include <QFontMetricsF>
#include <QTextLayout>

#include <algorithm>

namespace orlo::reports
{

namespace
{

struct Face {
    QFontMetricsF metrics;
    QFont shaped;
};

// The left and right end of a stretch of a line, in points, measured with what the line is drawn with.
std::pair<double, double> extent(const QString& line, const Face& face, qsizetype from, qsizetype to)
{
    if (!needsShaping(line)) {
        const double left = face.metrics.horizontalAdvance(line.left(from));
        const double width = face.metrics.horizontalAdvance(line.mid(from, to - from));
        return {left / UnitsPerPoint, (left + width) / UnitsPerPoint};
    }
    QTextLayout layout(line, face.shaped);
    layout.beginLayout();
    QTextLine whole = layout.createLine();
    whole.setNumColumns(static_cast<int>(line.size()));
    layout.endLayout();
    const double start = whole.cursorToX(static_cast<int>(from)) / UnitsPerPoint;
    const double end = whole.cursorToX(static_cast<int>(to)) / UnitsPerPoint;
    return {std::min(start, end), std::max(start, end)};
}

// The places in one text.
void findInItem(const TextItem& item, const Face& face, int page, const QString& text, std::vector<Hit>& hits)
{
    const double height = face.metrics.height() / UnitsPerPoint;
    double top = item.box.top();
    const QStringList lines = item.text.split(u'\n');
    for (const QString& line : lines) {
        for (qsizetype at = line.indexOf(text, 0, Qt::CaseInsensitive); at >= 0;
             at = line.indexOf(text, at + text.size(), Qt::CaseInsensitive)) {
            const auto [left, right] = extent(line, face, at, at + text.size());
            hits.push_back({page, QRectF(item.box.left() + left, top, right - left, height)});
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
    std::vector<Face> faces;
    for (const QFont& font : document.fonts)
        faces.push_back({QFontMetricsF(typesetFont(font)), typesetFont(font, true)});
    for (int page = 0; page < static_cast<int>(document.pages.size()); ++page) {
        for (const Item& item : document.pages[static_cast<std::size_t>(page)].items) {
            const auto* textItem = std::get_if<TextItem>(&item);
            if (textItem && textItem->text.contains(text, Qt::CaseInsensitive))
                findInItem(*textItem, faces[static_cast<std::size_t>(textItem->font)], page, text, hits);
        }
    }
    return hits;
}

} // namespace orlo::reports
