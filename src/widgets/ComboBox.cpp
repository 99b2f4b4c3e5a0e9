#include "widgets/ComboBox.h"

#include "platform/RuntimeError.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace orlo::widgets
{

namespace
{

constexpr int VisibleRows = 16; // in the open list

}

ComboBox::ComboBox(QWidget* parent) : QComboBox(parent)
{
    setInsertPolicy(NoInsert);
    setMaxVisibleItems(VisibleRows);
    setPlaceholderText(QStringLiteral(" ")); // without one, the first row that is added becomes the chosen one
    // A row being chosen supplies its text before it becomes current; that counts as one click.
    connect(this, &QComboBox::editTextChanged, this, [this] {
        const bool choosing = currentIndex() >= 0 && currentIndex() != m_row;
        if (!m_silent && !choosing)
            Q_EMIT textChange();
    });
    // Picking another row emits both signals, picking the chosen row only activated(), choosing a row in code only
    // currentIndexChanged(). The mark is set before clicked(), since its handlers may choose rows themselves.
    connect(this, &QComboBox::currentIndexChanged, this, [this](int index) {
        m_row = index;
        m_signalled = index >= 0 && !m_silent;
        if (m_signalled)
            Q_EMIT clicked();
    });
    connect(this, &QComboBox::activated, this, [this] {
        if (!std::exchange(m_signalled, false))
            Q_EMIT clicked();
    });
}

EditableComboBox::EditableComboBox(QWidget* parent) : ComboBox(parent)
{
    setEditable(true);
    setCompleter(nullptr);
    disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
}

void ComboBox::setText(const QString& text)
{
    if (isEditable()) {
        setEditText(text);
        lineEdit()->setCursorPosition(0); // show the start of a long text
        return;
    }
    const int index = text.isEmpty() ? -1 : findText(text, Qt::MatchFixedString);
    if (index < 0 && !text.isEmpty())
        throw platform::RuntimeError(platform::InvalidProcedureCall);
    setListIndex(index);
}

int ComboBox::listIndex() const
{
    const int index = currentIndex();
    return index >= 0 && currentText() == itemText(index) ? index : -1;
}

void ComboBox::setListIndex(int index)
{
    if (index < -1 || index >= count())
        throw platform::RuntimeError(platform::InvalidProcedureCall);
    const bool retaken = index >= 0 && index == currentIndex() && index != listIndex();
    setCurrentIndex(index);
    if (retaken)
        Q_EMIT clicked();
}

void ComboBox::removeAll()
{
    const QScopedValueRollback silent(m_silent, true);
    QComboBox::clear();
    setCurrentIndex(-1);
    clearEditText();
}

void ComboBox::refill(const QStringList& rows, int chosen)
{
    const QScopedValueRollback silent(m_silent, true);
    const QString shown = text();
    QComboBox::clear();
    addItems(rows);
    setCurrentIndex(chosen);
    if (isEditable() && chosen < 0)
        setEditText(shown);
}

void ComboBox::showPopup()
{
    m_signalled = false;
    Q_EMIT dropDown();
    if (!isEnabled() || !isVisible())
        return; // a list over a box that can't be reached would capture all input
    widenList();
    QComboBox::showPopup();
}

void ComboBox::keyPressEvent(QKeyEvent* event)
{
    constexpr Qt::Key Stepping[] = {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown};
    if (std::ranges::find(Stepping, event->key()) != std::end(Stepping))
        chooseShownRow();
    m_signalled = false;
    QComboBox::keyPressEvent(event);
}

void ComboBox::wheelEvent(QWheelEvent* event)
{
    chooseShownRow();
    QComboBox::wheelEvent(event);
}

// A step starts at the row whose text is shown, whichever was chosen last.
void ComboBox::chooseShownRow()
{
    if (!isEditable() || listIndex() >= 0)
        return;
    if (const int shown = findText(currentText(), Qt::MatchExactly | Qt::MatchCaseSensitive); shown >= 0) {
        const QScopedValueRollback silent(m_silent, true);
        setCurrentIndex(shown);
    }
}

void ComboBox::widenList()
{
    QAbstractItemView* rows = view();
    const int frame = 2 * (rows->style()->pixelMetric(QStyle::PM_DefaultFrameWidth) + 1);
    const int wanted = rows->sizeHintForColumn(0) + rows->verticalScrollBar()->sizeHint().width() + frame;
    rows->setMinimumWidth(std::min(std::max(wanted, width()), screen()->availableGeometry().width()));
}

} // namespace orlo::widgets
