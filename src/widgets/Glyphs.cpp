#include "widgets/Glyphs.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace orlo::widgets
{

namespace
{

constexpr double Grid = 24; // the drawings' own units
constexpr double StrokeWidth = 1.8;

// The strokes of each glyph, as words: M moves to a point, L draws a line to one, C a curve by two control points, O a
// circle of a centre and a radius, R a rectangle of a corner and a size, A an arc of an ellipse's rectangle, with its
// start and length in degrees.
struct Strokes {
    Glyph glyph;
    const char* words;
};

constexpr Strokes Drawings[] = {
    {Glyph::First, "M 16 6 L 10 12 L 16 18 M 7 6 L 7 18"},
    {Glyph::Previous, "M 15 6 L 9 12 L 15 18"},
    {Glyph::Next, "M 9 6 L 15 12 L 9 18"},
    {Glyph::Last, "M 8 6 L 14 12 L 8 18 M 17 6 L 17 18"},
    {Glyph::ZoomIn, "O 10.5 10.5 6 M 15 15 L 20 20 M 10.5 7.7 L 10.5 13.3 M 7.7 10.5 L 13.3 10.5"},
    {Glyph::ZoomOut, "O 10.5 10.5 6 M 15 15 L 20 20 M 7.7 10.5 L 13.3 10.5"},
    {Glyph::Find, "O 10.5 10.5 6 M 15 15 L 20 20"},
    {Glyph::Up, "M 6 15 L 12 9 L 18 15"},
    {Glyph::Down, "M 6 9 L 12 15 L 18 9"},
    {Glyph::Print, "M 7 8 L 7 3 L 17 3 L 17 8 "
                   "M 7 17 L 3.5 17 L 3.5 8 L 20.5 8 L 20.5 17 L 17 17 R 7 14 10 7"},
    {Glyph::Pdf, "M 13 3 L 5 3 L 5 21 L 19 21 L 19 9 L 13 3 L 13 9 L 19 9 "
                 "M 12 11 L 12 18 M 9 15.2 L 12 18 L 15 15.2"},
    {Glyph::Csv, "R 3 5 18 14 M 3 9.6 L 21 9.6 M 3 14.3 L 21 14.3 M 10 5 L 10 19"},
    {Glyph::Pages, "R 3 4 18 16 M 9.5 4 L 9.5 20 M 5.5 8 L 7 8 M 5.5 12 L 7 12 M 5.5 16 L 7 16"},
    {Glyph::Refresh, "A 4.5 4.5 15 15 60 300 M 11.5 2 L 16.2 5.8 L 11.5 9"},
    {Glyph::Close, "M 6 6 L 18 18 M 18 6 L 6 18"},
    {Glyph::Calendar, "R 4 5 16 15 M 4 10 L 20 10 M 8.5 3 L 8.5 6.5 M 15.5 3 L 15.5 6.5"},
    {Glyph::Information, "M 12 7.5 L 12 7.6 M 12 11 L 12 17"},
    {Glyph::Question, "M 9 9.5 C 9 5.5 15 5.5 15 9.5 C 15 11.8 12 11.8 12 14 M 12 17 L 12 17.1"},
    {Glyph::Warning, "M 12 9 L 12 14 M 12 17.5 L 12 17.6"},
    {Glyph::Critical, "M 8.5 8.5 L 15.5 15.5 M 15.5 8.5 L 8.5 15.5"},
};

QPainterPath pathOf(Glyph glyph)
{
    const Strokes& drawing = *std::ranges::find(Drawings, glyph, &Strokes::glyph);
    const QStringList words = QString::fromLatin1(drawing.words).split(u' ', Qt::SkipEmptyParts);
    QPainterPath path;
    for (qsizetype at = 0; at < words.size();) {
        const char16_t stroke = words[at++].front().unicode();
        const auto next = [&] { return words[at++].toDouble(); };
        const auto point = [&] {
            const double x = next();
            return QPointF(x, next());
        };
        const QPointF first = point();
        if (stroke == u'M')
            path.moveTo(first);
        else if (stroke == u'L')
            path.lineTo(first);
        else if (stroke == u'O') {
            const double radius = next();
            path.addEllipse(first, radius, radius);
        } else {
            const QPointF second = point();
            const QRectF box(first, QSizeF(second.x(), second.y()));
            if (stroke == u'C')
                path.cubicTo(first, second, point());
            else if (stroke == u'R')
                path.addRect(box);
            else {
                const double start = next();
                path.arcMoveTo(box, start);
                path.arcTo(box, start, next());
            }
        }
    }
    return path;
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
        painter->drawPath(pathOf(m_glyph));
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
