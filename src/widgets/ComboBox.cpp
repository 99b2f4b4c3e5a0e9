#include "widgets/ComboBox.h"

#include "platform/RuntimeError.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>

namespace orlo::widgets
{

ComboBox::ComboBox(QWidget* parent) : QComboBox(parent)
{
    setInsertPolicy(NoInsert);
    setPlaceholderText(QStringLiteral(" ")); // without one, the first row that is added becomes the chosen one
    connect(this, &QComboBox::editTextChanged, this, &ComboBox::textChange);
    connect(this, &QComboBox::activated, this, &ComboBox::clicked);
}

void ComboBox::setEditable(bool editable)
{
    if (editable == isEditable())
        return;
    QComboBox::setEditable(editable);
    if (!editable)
        return;
    setCompleter(nullptr);
    // A typed text that happens to equal a row is still typed and not picked.
    disconnect(lineEdit(), &QLineEdit::returnPressed, this, nullptr);
    disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
}

void ComboBox::setText(const QString& text)
{
    if (isEditable()) {
        setEditText(text);
        return;
    }
    const int index = text.isEmpty() ? -1 : findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
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
    const bool changes = index != listIndex();
    setCurrentIndex(index);
    if (changes && index >= 0)
        Q_EMIT clicked();
}

void ComboBox::clear()
{
    QComboBox::clear();
    setCurrentIndex(-1);
    clearEditText();
}

void ComboBox::showPopup()
{
    Q_EMIT dropDown();
    widenList();
    QComboBox::showPopup();
}

void ComboBox::widenList()
{
    QAbstractItemView* rows = view();
    const int frame = 2 * (rows->style()->pixelMetric(QStyle::PM_DefaultFrameWidth) + 1);
    const int wanted = rows->sizeHintForColumn(0) + rows->verticalScrollBar()->sizeHint().width() + frame;
    rows->setMinimumWidth(std::min(std::max(wanted, width()), screen()->availableGeometry().width()));
}

} // namespace orlo::widgets
