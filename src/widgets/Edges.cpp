#include "widgets/Edges.h"

#include "widgets/Contrast.h"

#include <QPainter>
#include <QStyleOption>

namespace orlo::widgets
{

namespace
{

constexpr double Radius = 2; // of corners, pixels
// Contrasts; no pixel of a round edge is covered completely.
constexpr double RoundEdge = 3.6;
constexpr double DisabledEdge = 2;

// Enables antialiasing and restores the painter's state.
class Smooth
{
public:
    explicit Smooth(QPainter& painter) : m_painter(painter)
    {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
    }
    ~Smooth() { m_painter.restore(); }
    Smooth(const Smooth&) = delete;
    Smooth& operator=(const Smooth&) = delete;

private:
    QPainter& m_painter;
};

bool isEnabled(const QStyleOption& option)
{
    return option.state & QStyle::State_Enabled;
}

// The highlight around a focused box, otherwise a mixture of text and ground.
QPen edgePen(const QStyleOption& option, double least = VisibleEdge)
{
    const auto color = [&option](QPalette::ColorRole role) { return option.palette.color(QPalette::Active, role); };
    const QColor base = option.palette.color(QPalette::Base);
    const QColor window = option.palette.color(QPalette::Window);
    if ((option.state & QStyle::State_HasFocus) && isEnabled(option))
        return {raised(color(QPalette::Highlight), color(QPalette::WindowText), {base, window}, least), EdgeWidth};
    return {raised(window, color(QPalette::WindowText), {base, window}, isEnabled(option) ? least : DisabledEdge), 1};
}

// Where a pen of this width paints whole pixels along a box's inside.
QRectF inside(const QRectF& box, const QPen& pen)
{
    const double half = pen.widthF() / 2;
    return box.adjusted(half, half, -half, -half);
}

// The ground of a checked or chosen box, darker or lighter while pressed.
QColor groundOf(const QStyleOption& option)
{
    const QColor base = option.palette.color(isEnabled(option) ? QPalette::Base : QPalette::Window);
    return option.state & QStyle::State_Sunken ? mixed(option.palette.color(QPalette::Text), base, 15) : base;
}

} // namespace

void paintEdge(QPainter& painter, const QStyleOption& box)
{
    const Smooth smooth(painter);
    const QPen pen = edgePen(box);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(inside(box.rect, pen), Radius, Radius);
}

void paintTick(QPainter& painter, const QStyleOption& box)
{
    const Smooth smooth(painter);
    const QPen pen = edgePen(box);
    const QRectF place = box.rect; // a square, as all indicators are
    painter.setPen(pen);
    painter.setBrush(groundOf(box));
    painter.drawRoundedRect(inside(place, pen), Radius, Radius);
    const auto at = [&place](double x, double y) { return place.topLeft() + QPointF(x, y) * place.width(); };
    painter.setPen(
        QPen(box.palette.color(QPalette::Text), place.width() / 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (box.state & QStyle::State_On)
        painter.drawPolyline(QPolygonF{at(0.26, 0.52), at(0.43, 0.7), at(0.74, 0.32)});
    else if (box.state & QStyle::State_NoChange)
        painter.drawLine(at(0.28, 0.5), at(0.72, 0.5));
}

void paintRadio(QPainter& painter, const QStyleOption& choice)
{
    const Smooth smooth(painter);
    const QPen pen = edgePen(choice, RoundEdge);
    const QRectF place = choice.rect;
    painter.setPen(pen);
    painter.setBrush(groundOf(choice));
    painter.drawEllipse(inside(place, pen));
    if (!(choice.state & QStyle::State_On))
        return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(choice.palette.color(QPalette::Text));
    painter.drawEllipse(place.center(), place.width() / 4.5, place.width() / 4.5);
}

void paintComboBox(QPainter& painter, const QStyleOptionComboBox& box, const QRect& arrow)
{
    const Smooth smooth(painter);
    const auto color = [&box](QPalette::ColorRole role) { return box.palette.color(role); };
    QColor ground = color(box.editable ? QPalette::Base : QPalette::Button);
    if (!box.editable && (box.state & (QStyle::State_On | QStyle::State_Sunken)))
        ground = mixed(color(QPalette::ButtonText), ground, 15);
    else if (!box.editable && isEnabled(box) && (box.state & QStyle::State_MouseOver))
        ground = mixed(color(QPalette::ButtonText), ground, 6);
    const QPen pen = edgePen(box);
    painter.setPen(box.frame ? pen : QPen(Qt::NoPen));
    painter.setBrush(ground);
    painter.drawRoundedRect(inside(box.rect, pen), Radius, Radius);
    const QPointF middle = QRectF(arrow).center();
    painter.setPen(QPen(color(box.editable ? QPalette::Text : QPalette::ButtonText), 1.5, Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(
        QPolygonF{middle + QPointF(-3.5, -1.75), middle + QPointF(0, 1.75), middle + QPointF(3.5, -1.75)});
}

} // namespace orlo::widgets
