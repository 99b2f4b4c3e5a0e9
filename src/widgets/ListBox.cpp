#include "widgets/ListBox.h"

#include "platform/RuntimeError.h"
#include "widgets/CellMargin.h"

#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

#include <memory>

namespace orlo::widgets
{

namespace
{

// Rows as high as those of the grids; tick boxes keep apart, too.
class RowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        return size.expandedTo(QSize(0, option.fontMetrics.height() + 2 * CellMargin));
    }
};

} // namespace

ListBox::ListBox(QWidget* parent) : QListWidget(parent)
{
    setItemDelegate(new RowDelegate(this));
    setUniformItemSizes(true); // one line a row, so that a long list needn't measure each
    connect(this, &QListWidget::currentRowChanged, this, [this](int index) {
        if (index >= 0 && !m_silent)
            Q_EMIT clicked();
    });
    connect(this, &QAbstractItemView::doubleClicked, this, [this] { Q_EMIT doubleClicked(); });
}

QListWidgetItem& ListBox::row(int index) const
{
    if (QListWidgetItem* found = item(index))
        return *found;
    throw platform::RuntimeError(platform::InvalidProcedureCall);
}

void ListBox::removeItem(int index)
{
    const std::unique_ptr<QListWidgetItem> gone(&row(index));
    const QScopedValueRollback silent(m_silent, true); // the rows move up, nobody clicked one
    const bool current = index == listIndex();
    takeItem(index);
    if (current)
        setListIndex(-1);
}

QString ListBox::list(int index) const
{
    const QListWidgetItem* found = item(index);
    return found ? found->text() : QString();
}

void ListBox::setListIndex(int index)
{
    if (index < -1 || index >= count())
        throw platform::RuntimeError(platform::InvalidProcedureCall);
    setCurrentRow(index); // by its number: a row's item would be looked for all over the list
    if (index == -1)
        clearSelection();
}

bool ListBox::selected(int index) const
{
    return row(index).isSelected();
}

void ListBox::setSelected(int index, bool on)
{
    row(index).setSelected(on);
}

void ListBox::focusInEvent(QFocusEvent* event)
{
    // The base class makes the first row current when the focus comes in; walking past with Tab is no click on it.
    const bool none = listIndex() < 0;
    const QScopedValueRollback silent(m_silent, true);
    QListWidget::focusInEvent(event);
    if (none)
        selectionModel()->clearCurrentIndex();
}

// The current row is always the highlighted one, though a click may end on another row than the one that was hit.
void ListBox::highlightCurrent()
{
    if (selectionMode() == SingleSelection)
        setListIndex(listIndex());
}

void ListBox::keyPressEvent(QKeyEvent* event)
{
    QListWidget::keyPressEvent(event);
    highlightCurrent();
}

void ListBox::mousePressEvent(QMouseEvent* event)
{
    const int before = listIndex();
    const int pressed = indexAt(event->position().toPoint()).row();
    QListWidget::mousePressEvent(event);
    highlightCurrent();
    if (event->button() == Qt::LeftButton && pressed >= 0 && pressed == before)
        Q_EMIT clicked();
}

void ListBox::mouseReleaseEvent(QMouseEvent* event)
{
    QListWidget::mouseReleaseEvent(event);
    highlightCurrent();
}

} // namespace orlo::widgets
