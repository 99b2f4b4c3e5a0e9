#include "widgets/RowTint.h"

#include "widgets/BoundGridModel.h"
#include "widgets/Contrast.h"

#include <QAbstractItemView>

namespace orlo::widgets
{

void RowTint::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    constexpr int CurrentRow = 26; // percent of the highlight
    constexpr int EmptyLine = 12;
    QStyledItemDelegate::initStyleOption(option, index);
    const auto* grid = qobject_cast<const QAbstractItemView*>(option->widget);
    const bool isCurrent = grid && index.row() == grid->currentIndex().row();
    if (!isCurrent && !static_cast<const BoundGridModel*>(index.model())->isEmptyLine(index.row()))
        return;
    option->backgroundBrush = mixed(option->palette.color(QPalette::Active, QPalette::Highlight),
                                    option->palette.color(QPalette::Base), isCurrent ? CurrentRow : EmptyLine);
}

} // namespace orlo::widgets
