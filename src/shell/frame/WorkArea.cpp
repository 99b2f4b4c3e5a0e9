#include "shell/frame/WorkArea.h"

#include "widgets/Contrast.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace orlo
{

namespace
{

constexpr int Tint = 8;          // percent of the text colour mixed into the ground
constexpr int EmblemTint = 7;    // the same for the emblem, on top of that
constexpr double Drawing = 256;  // size of the icon's drawing
constexpr int EmblemLimit = 240; // pixels

// The star and the tent of the program's icon.
void drawEmblem(QPainter& painter, const QColor& color, const QColor& ground)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(
        QPolygonF{{128, 20}, {137, 47}, {164, 56}, {137, 65}, {128, 92}, {119, 65}, {92, 56}, {119, 47}});
    painter.drawPolygon(QPolygonF{{128, 104}, {222, 212}, {34, 212}});
    painter.setBrush(ground);
    painter.drawPolygon(QPolygonF{{128, 138}, {160, 212}, {96, 212}});
}

} // namespace

WorkArea::WorkArea(QWidget* parent) : QMdiArea(parent)
{
    takeGround();
}

void WorkArea::changeEvent(QEvent* event)
{
    QMdiArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        takeGround();
}

void WorkArea::takeGround()
{
    setBackground(widgets::mixed(palette().color(QPalette::WindowText), palette().color(QPalette::Window), Tint));
}

void WorkArea::paintEvent(QPaintEvent* event)
{
    QMdiArea::paintEvent(event);
    const QSize room = viewport()->size();
    const double side = std::min({EmblemLimit, room.width() / 2, room.height() / 2});
    const QColor ground = background().color();
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate((room.width() - side) / 2, (room.height() - side) / 2);
    painter.scale(side / Drawing, side / Drawing);
    drawEmblem(painter, widgets::mixed(palette().color(QPalette::WindowText), ground, EmblemTint), ground);
}

} // namespace orlo
