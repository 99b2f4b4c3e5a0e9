#include "widgets/Glyphs.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

#include <initializer_list>

namespace orlo::widgets
{

namespace
{

constexpr double Grid = 24; // the drawings' own units
constexpr double StrokeWidth = 1.8;

void strokeThrough(QPainter& painter, std::initializer_list<QPointF> points)
{
    const QList<QPointF> list(points);
    painter.drawPolyline(list.constData(), static_cast<int>(list.size()));
}

void drawLens(QPainter& painter)
{
    painter.drawEllipse(QPointF(10.5, 10.5), 6, 6);
    painter.drawLine(QPointF(15, 15), QPointF(20, 20));
}

void drawSheet(QPainter& painter)
{
    strokeThrough(painter, {{13, 3}, {5, 3}, {5, 21}, {19, 21}, {19, 9}, {13, 3}, {13, 9}, {19, 9}});
}

void drawPrinter(QPainter& painter)
{
    strokeThrough(painter, {{7, 8}, {7, 3}, {17, 3}, {17, 8}});
    strokeThrough(painter, {{7, 17}, {3.5, 17}, {3.5, 8}, {20.5, 8}, {20.5, 17}, {17, 17}});
    painter.drawRect(QRectF(7, 14, 10, 7));
}

void drawPages(QPainter& painter)
{
    painter.drawRect(QRectF(3, 4, 18, 16));
    painter.drawLine(QPointF(9.5, 4), QPointF(9.5, 20));
    for (const double y : {8.0, 12.0, 16.0})
        painter.drawLine(QPointF(5.5, y), QPointF(7, y));
}

void drawDot(QPainter& painter, double y)
{
    painter.drawLine(QPointF(12, y), QPointF(12, y + 0.1)); // a line without length isn't drawn
}

void drawQuestion(QPainter& painter)
{
    QPainterPath hook(QPointF(9, 9.5));
    hook.cubicTo(9, 5.5, 15, 5.5, 15, 9.5);
    hook.cubicTo(15, 11.8, 12, 11.8, 12, 14);
    painter.drawPath(hook);
    drawDot(painter, 17);
}

void drawGlyph(QPainter& painter, Glyph glyph)
{
    switch (glyph) {
    case Glyph::First:
        strokeThrough(painter, {{16, 6}, {10, 12}, {16, 18}});
        painter.drawLine(QPointF(7, 6), QPointF(7, 18));
        break;
    case Glyph::Previous:
        strokeThrough(painter, {{15, 6}, {9, 12}, {15, 18}});
        break;
    case Glyph::Next:
        strokeThrough(painter, {{9, 6}, {15, 12}, {9, 18}});
        break;
    case Glyph::Last:
        strokeThrough(painter, {{8, 6}, {14, 12}, {8, 18}});
        painter.drawLine(QPointF(17, 6), QPointF(17, 18));
        break;
    case Glyph::ZoomIn:
        drawLens(painter);
        painter.drawLine(QPointF(10.5, 7.7), QPointF(10.5, 13.3));
        painter.drawLine(QPointF(7.7, 10.5), QPointF(13.3, 10.5));
        break;
    case Glyph::ZoomOut:
        drawLens(painter);
        painter.drawLine(QPointF(7.7, 10.5), QPointF(13.3, 10.5));
        break;
    case Glyph::Find:
        drawLens(painter);
        break;
    case Glyph::Up:
        strokeThrough(painter, {{6, 15}, {12, 9}, {18, 15}});
        break;
    case Glyph::Down:
        strokeThrough(painter, {{6, 9}, {12, 15}, {18, 9}});
        break;
    case Glyph::Print:
        drawPrinter(painter);
        break;
    case Glyph::Pdf:
        drawSheet(painter);
        strokeThrough(painter, {{12, 11}, {12, 18}});
        strokeThrough(painter, {{9, 15.2}, {12, 18}, {15, 15.2}});
        break;
    case Glyph::Csv:
        painter.drawRect(QRectF(3, 5, 18, 14));
        painter.drawLine(QPointF(3, 9.6), QPointF(21, 9.6));
        painter.drawLine(QPointF(3, 14.3), QPointF(21, 14.3));
        painter.drawLine(QPointF(10, 5), QPointF(10, 19));
        break;
    case Glyph::Pages:
        drawPages(painter);
        break;
    case Glyph::Refresh:
        painter.drawArc(QRectF(4.5, 4.5, 15, 15), 60 * 16, 300 * 16);
        strokeThrough(painter, {{11.5, 2}, {16.2, 5.8}, {11.5, 9}});
        break;
    case Glyph::Close:
        painter.drawLine(QPointF(6, 6), QPointF(18, 18));
        painter.drawLine(QPointF(18, 6), QPointF(6, 18));
        break;
    case Glyph::Calendar:
        painter.drawRect(QRectF(4, 5, 16, 15));
        painter.drawLine(QPointF(4, 10), QPointF(20, 10));
        for (const double x : {8.5, 15.5})
            painter.drawLine(QPointF(x, 3), QPointF(x, 6.5));
        break;
    case Glyph::Information:
        drawDot(painter, 7.5);
        painter.drawLine(QPointF(12, 11), QPointF(12, 17));
        break;
    case Glyph::Question:
        drawQuestion(painter);
        break;
    case Glyph::Warning:
        painter.drawLine(QPointF(12, 9), QPointF(12, 14));
        drawDot(painter, 17.5);
        break;
    case Glyph::Critical:
        painter.drawLine(QPointF(8.5, 8.5), QPointF(15.5, 15.5));
        painter.drawLine(QPointF(15.5, 8.5), QPointF(8.5, 15.5));
        break;
    }
}

// Paints the ground of a message's sign in the colours of the program's icon; returns the glyph's colour.
QColor drawSignGround(QPainter& painter, Glyph glyph)
{
    const bool isTriangle = glyph == Glyph::Warning;
    const QColor ground = isTriangle                 ? QColor(0xee, 0xa4, 0x3c)
                          : glyph == Glyph::Critical ? QColor(0xc9, 0x4a, 0x34)
                                                     : QColor(0x35, 0x7f, 0x9f);
    painter.setBrush(ground);
    painter.setPen(QPen(ground, StrokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin)); // rounds the corners
    if (isTriangle)
        painter.drawPolygon(QPolygonF{{12, 3}, {22, 20.5}, {2, 20.5}});
    else
        painter.drawEllipse(QPointF(12, 12), 10, 10);
    return isTriangle ? QColor(0x4a, 0x2a, 0x12) : QColor(Qt::white);
}

class GlyphEngine : public QIconEngine
{
public:
    GlyphEngine(Glyph glyph, QPalette::ColorRole role) : m_glyph(glyph), m_role(role) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        QColor ink = QGuiApplication::palette().color(group, m_role);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / Grid, rect.height() / Grid);
        if (m_glyph >= Glyph::Information)
            ink = drawSignGround(*painter, m_glyph);
        painter->setBrush(Qt::NoBrush);
        painter->setPen(QPen(ink, StrokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        drawGlyph(*painter, m_glyph);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new GlyphEngine(*this); }

private:
    Glyph m_glyph;
    QPalette::ColorRole m_role;
};

} // namespace

QIcon glyphIcon(Glyph glyph, QPalette::ColorRole role)
{
    return QIcon(new GlyphEngine(glyph, role));
}

} // namespace orlo::widgets
