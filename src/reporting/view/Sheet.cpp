#include "reporting/view/Sheet.h"

#include "reporting/Paint.h"

#include <QPainter>

namespace orlo::reporting
{

namespace
{

constexpr int ShadowDepth = 6;

} // namespace

void paintShadow(QPainter& painter, const QRectF& sheet)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 10));
    for (int depth = ShadowDepth; depth > 0; --depth)
        painter.drawRoundedRect(sheet.translated(0, 2).adjusted(-depth, -depth, depth, depth), depth, depth);
}

void paintSheet(QPainter& painter, const QRectF& sheet, const Document& document, int page)
{
    painter.save();
    painter.fillRect(sheet, Qt::white);
    painter.setClipRect(sheet, Qt::IntersectClip);
    painter.translate(sheet.topLeft());
    const double scale = sheet.width() / document.paper.width();
    painter.scale(scale, scale);
    paintPage(painter, document, page);
    painter.restore();
}

} // namespace orlo::reporting
