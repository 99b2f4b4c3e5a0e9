#include "widgets/BoundGridHeaders.h"

#include <QPainter>

namespace orlo::widgets
{

HeadingRow::HeadingRow(QWidget* parent) : QHeaderView(Qt::Horizontal, parent)
{
    setHighlightSections(false);
    setSectionsClickable(false);
    setMinimumSectionSize(1);
    setStretchLastSection(true);
}

QSize HeadingRow::sizeHint() const
{
    return QHeaderView::sizeHint() + QSize(0, viewportMargins().top());
}

MarkColumn::MarkColumn(QWidget* parent) : QHeaderView(Qt::Vertical, parent)
{
    setSectionsClickable(true); // a click marks the row
    setHighlightSections(true);
    setSectionResizeMode(Fixed);
}

bool MarkColumn::isPencil(int row) const
{
    return model()->headerData(row, Qt::Vertical).toString() == QChar(Pencil);
}

void MarkColumn::initStyleOptionForIndex(QStyleOptionHeader* option, int row) const
{
    QHeaderView::initStyleOptionForIndex(option, row);
    if (isPencil(row))
        option->text.clear();
}

void MarkColumn::paintSection(QPainter* painter, const QRect& rect, int row) const
{
    QHeaderView::paintSection(painter, rect, row);
    if (!isPencil(row))
        return;
    constexpr qreal Grid = 16;
    const qreal side = std::min(rect.width(), rect.height()) - 4;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(QRectF(rect).center() - QPointF(side, side) / 2);
    painter->scale(side / Grid, side / Grid);
    painter->setPen(QPen(palette().color(QPalette::ButtonText), 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolygon(QPolygonF({{2, 14}, {3, 10}, {11, 2}, {14, 5}, {6, 13}}));
    painter->drawLine(QPointF(9, 4), QPointF(12, 7));
    painter->drawLine(QPointF(3, 10), QPointF(6, 13));
    painter->restore();
}

} // namespace orlo::widgets
