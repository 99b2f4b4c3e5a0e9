#include "widgets/ListBox.h"

#include "platform/RuntimeError.h"
#include "widgets/CellMargin.h"

#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

#include <algorithm>
#include <array>
#include <memory>

namespace orlo::widgets
{

namespace
{

// The width of a text as the sum of its letters: at least its real width, as kerning only narrows.
class LetterWidths
{
public:
    explicit LetterWidths(const QFont& font) : m_metrics(font) {}

    int of(const QString& text)
    {
        int width = 0;
        for (const QChar letter : text) {
            if (letter.unicode() >= m_widths.size())
                return m_metrics.horizontalAdvance(text);
            int& known = m_widths[letter.unicode()];
            if (known == 0)
                known = m_metrics.horizontalAdvance(letter);
            width += known;
        }
        return width;
    }

private:
    QFontMetrics m_metrics;
    std::array<int, 0x180> m_widths{}; // for Latin letters
};

// Rows as high as in grids, and as wide as the widest one: the list measures one row for all. Check boxes get a margin.
class RowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        LetterWidths widths(option.font);
        int widest = 0;
        const auto* model = index.model();
        for (int row = 0; row < model->rowCount(); ++row)
            widest = std::max(widest, widths.of(model->index(row, 0).data().toString()));
        QStyleOptionViewItem cell = option;
        initStyleOption(&cell, index);
        cell.text.clear();
        const QSize rest = option.widget->style()->sizeFromContents(QStyle::CT_ItemViewItem, &cell, {}, option.widget);
        return {rest.width() + widest, std::max(rest.height(), option.fontMetrics.height() + 2 * CellMargin)};
    }
};

} // namespace

ListBox::ListBox(QWidget* parent) : QListWidget(parent)
{
    setItemDelegate(new RowDelegate(this));
    setUniformItemSizes(true); // one line per row, so that a long list needn't measure each
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
    setCurrentRow(index); // by number: looking up a row's item would search the whole list
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
    // The base class makes the first row current on focus, but passing through with Tab isn't a click.
    const bool none = listIndex() < 0;
    const QScopedValueRollback silent(m_silent, true);
    QListWidget::focusInEvent(event);
    if (none)
        selectionModel()->clearCurrentIndex();
}

// The current row is always highlighted, even if a click ends on another row than it started.
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

// A right press twice on one row is no double click, as in a grid.
void ListBox::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        QListWidget::mouseDoubleClickEvent(event);
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
