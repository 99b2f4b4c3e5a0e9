#include "reports/engine/Paint.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace orlo::reports
{

namespace
{

/// Draws items in typesetting units; pens and fonts change only where the item before had others.
class PagePainter
{
public:
    PagePainter(QPainter& painter, const Document& document) : m_painter(painter)
    {
        for (const QFont& font : document.fonts) {
            const QFont typeset = typesetFont(font);
            const QFontMetricsF metrics(typeset);
            m_faces.push_back({typeset, metrics.ascent(), metrics.height()});
        }
    }

    void operator()(const TextItem& item)
    {
        const Face& face = m_faces[std::size_t(item.font)];
        if (m_font != item.font)
            m_painter.setFont(face.font);
        m_font = item.font;
        pen(item.color, 0);
        const double x = item.box.left() * UnitsPerPoint;
        double baseline = item.box.top() * UnitsPerPoint + face.ascent;
        for (const QStringView line : QStringView(item.text).split(u'\n')) {
            m_painter.drawText(QPointF(x, baseline), line.size() == item.text.size() ? item.text : line.toString());
            baseline += face.height;
        }
    }

    void operator()(const LineItem& item)
    {
        pen(item.color, item.width);
        m_painter.drawLine(item.from * UnitsPerPoint, item.to * UnitsPerPoint);
    }

    void operator()(const BoxItem& item)
    {
        const QRectF box(item.box.topLeft() * UnitsPerPoint, item.box.size() * UnitsPerPoint);
        if (item.fill.alpha() > 0)
            m_painter.fillRect(box, item.fill);
        if (item.width <= 0)
            return;
        pen(item.color, item.width);
        m_painter.drawRect(box);
    }

private:
    struct Face {
        QFont font;
        double ascent;
        double height;
    };

    void pen(const QColor& color, double width)
    {
        if (m_hasPen && color == m_color && width == m_width)
            return;
        QPen pen(color, width * UnitsPerPoint);
        pen.setCapStyle(Qt::FlatCap);
        pen.setJoinStyle(Qt::MiterJoin);
        m_painter.setPen(pen);
        m_color = color;
        m_width = width;
        m_hasPen = true;
    }

    QPainter& m_painter;
    std::vector<Face> m_faces;
    int m_font = -1;
    QColor m_color;
    double m_width = 0;
    bool m_hasPen = false;
};

} // namespace

QFont typesetFont(const QFont& font)
{
    QFont typeset(font);
    typeset.setPixelSize(int(std::lround(font.pointSizeF() * UnitsPerPoint)));
    typeset.setHintingPreference(QFont::PreferNoHinting);
    typeset.setKerning(false);
    typeset.setStyleStrategy(QFont::StyleStrategy(QFont::PreferNoShaping | QFont::PreferAntialias));
    return typeset;
}

void paintPage(QPainter& painter, const Document& document, int page)
{
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.scale(1 / UnitsPerPoint, 1 / UnitsPerPoint);
    PagePainter draw(painter, document);
    for (const Item& item : document.pages[std::size_t(page)].items)
        std::visit(draw, item);
    painter.restore();
}

} // namespace orlo::reports
