#pragma once

#include <QStyledItemDelegate>

namespace orlo::widgets
{

/// Tints a bound grid's empty line and, more strongly, the row of the current cell, which may be one narrow number.
class RowTint : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace orlo::widgets
