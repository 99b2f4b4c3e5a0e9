#include "widgets/BoundGridHeaders.h"

namespace orlo::widgets
{

HeadingRow::HeadingRow(QWidget* parent) : QHeaderView(Qt::Horizontal, parent)
{
    setMinimumSectionSize(1);
    setStretchLastSection(true);
}

QSize HeadingRow::sizeHint() const
{
    return QHeaderView::sizeHint() + QSize(0, viewportMargins().top());
}

} // namespace orlo::widgets
