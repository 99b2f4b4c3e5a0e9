#include "widgets/CheckListBox.h"

namespace orlo::widgets
{

int sortedRow(const ListBox& list, const QString& text)
{
    int row = list.listCount();
    while (row > 0 && QString::compare(text, list.list(row - 1), Qt::CaseInsensitive) < 0)
        --row;
    return row;
}

CheckListBox::CheckListBox(QWidget* parent) : ListBox(parent)
{
    connect(this, &QListWidget::itemChanged, this, [this](QListWidgetItem* changed) {
        setCurrentItem(changed);
        Q_EMIT itemCheck();
    });
}

void CheckListBox::addItem(const QString& text)
{
    auto* added = new QListWidgetItem(text);
    added->setCheckState(Qt::Unchecked);
    // The base class's sorting would swap rows of equal text when one is checked.
    insertItem(sortedRow(*this, text), added);
}

bool CheckListBox::checked(int index) const
{
    const QListWidgetItem* found = item(index);
    return found && found->checkState() == Qt::Checked;
}

void CheckListBox::setChecked(int index, bool on)
{
    setListIndex(index);
    if (QListWidgetItem* found = item(index); found && checked(index) != on)
        found->setCheckState(on ? Qt::Checked : Qt::Unchecked);
}

} // namespace orlo::widgets
