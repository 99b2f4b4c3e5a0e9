#include "shell/forms/ListForm.h"

#include "widgets/ListBox.h"

#include <QTabWidget>

namespace orlo
{

void ListForm::bindList(const ListControls& controls)
{
    m_list = controls;
    connect(m_list.list, &widgets::ListBox::clicked, this, &ListForm::list_Click);
}

// On another page than the first field's it is what that page begins with: nothing is to be typed unseen.
QWidget* ListForm::fieldInView() const
{
    QWidget* first = controls().firstField;
    QWidget* page = m_list.tabs->currentWidget();
    if (page->isAncestorOf(first))
        return first;
    for (QWidget* control = page->nextInFocusChain(); control != page; control = control->nextInFocusChain())
        if (page->isAncestorOf(control) && control->isEnabled() && (control->focusPolicy() & Qt::TabFocus))
            return control;
    return first;
}

// Repairs the position after a step off either end.
void ListForm::SetNavButtons()
{
    readRecordCount();
    const bool any = mRecordCount != 0;
    controls().cmdDelete->setEnabled(any);
    m_list.cmdFind->setEnabled(any);
    bool behind = any;
    bool ahead = any;
    if (!any)
        setRecordIndex(0);
    else if (rsRecords->bof()) {
        behind = false;
        ahead = controls().cmdNext->isEnabled();
        rsRecords->moveFirst();
        setRecordIndex(1);
    } else if (rsRecords->eof()) {
        behind = controls().cmdPrevious->isEnabled();
        ahead = false;
        rsRecords->moveLast();
        setRecordIndex(mRecordCount);
    } else {
        behind = recordIndex() != 1;
        ahead = recordIndex() != mRecordCount;
    }
    controls().cmdFirst->setEnabled(behind);
    controls().cmdPrevious->setEnabled(behind);
    controls().cmdNext->setEnabled(ahead);
    controls().cmdLast->setEnabled(ahead);
}

void ListForm::SelectListRow(int position)
{
    m_list.list->setListIndex(position - 1);
}

// Record set and list are kept in step through the row's number only.
void ListForm::list_Click()
{
    PromptSaveChanges();
    const int row = m_list.list->listIndex();
    rsRecords->moveFirst();
    rsRecords->move(row);
    setRecordIndex(row + 1);
    FillRecord();
    reloadDependants();
    SetNavButtons();
}

void ListForm::cmdFirst_Click()
{
    PromptSaveChanges();
    rsRecords->moveFirst();
    setRecordIndex(1);
    showCurrent();
}

void ListForm::cmdPrevious_Click()
{
    PromptSaveChanges();
    rsRecords->movePrevious();
    setRecordIndex(recordIndex() - 1);
    showCurrent();
}

void ListForm::cmdNext_Click()
{
    PromptSaveChanges();
    rsRecords->moveNext();
    readRecordCount();
    setRecordIndex(recordIndex() + 1);
    showCurrent();
}

void ListForm::cmdLast_Click()
{
    PromptSaveChanges();
    rsRecords->moveLast();
    readRecordCount();
    setRecordIndex(mRecordCount);
    showCurrent();
}

void ListForm::showCurrent()
{
    SetNavButtons();
    FillRecord();
    SelectListRow(recordIndex());
    reloadDependants();
    focusFirstField();
}

void ListForm::cmdNew_Click()
{
    readRecordCount();
    if (mRecordCount == 0)
        setRecordIndex(0);
    m_list.tabs->setCurrentIndex(0);
    mCurrentSID = newKey();
    if (recordIndex() == 0) {
        EnableFields();
        m_list.tabs->setEnabled(true);
    }
    rsRecords->addNew();
    ClearRecord();
    setDefaults(); // what changes here is what enables cmdSave
    controls().cmdNew->setEnabled(false);
    controls().cmdDelete->setEnabled(false);
    enableExtraButtons(false);
    focusFirstField();
    mNewRecord = true;
    finishNew();
    ShowRecordInfo();
}

void ListForm::cmdSave_Click()
{
    SaveRecord();
    if (mRecordCount <= 0)
        return;
    focusFirstField();
    controls().cmdSave->setEnabled(false);
    enableRecordButtons();
}

void ListForm::finishSaveRecord()
{
    const bool added = mNewRecord;
    if (added) {
        ++mRecordCount;
        setRecordIndex(mRecordCount);
        m_list.list->insertItem(mRecordCount - 1, newRowText());
        if (mRecordCount == 1) {
            // The first record of an empty set comes in through the filters, which may leave it out again.
            controls().cmdSave->setEnabled(false);
            openSet();
        }
    }
    if (mRecordCount > 0) {
        SetNavButtons();
        FillRecord();
        if (added)
            SelectListRow(mRecordCount);
    }
    mNewRecord = false;
    if (added && mRecordCount > 0) // saved by the way, as when another row was clicked: cmdSave does the same
        enableRecordButtons();
    ShowRecordInfo();
}

void ListForm::cmdDelete_Click()
{
    if (!confirmDelete())
        return;
    if (rsRecords->recordCount() > 0) // none where the new record of an empty set was cancelled
        deleteAwards();
    readRecordCount();
    if (mRecordCount == 0)
        return;
    m_list.list->removeItem(recordIndex() - 1);
    rsRecords->remove();
    readRecordCount();
    if (mRecordCount < 1) {
        setRecordIndex(0);
        mCurrentSID = 0; // nothing hangs off nobody
        ClearRecord();
        controls().cmdDelete->setEnabled(false);
        m_list.cmdFind->setEnabled(false);
        controls().cmdSave->setEnabled(false);
        controls().cmdNew->setEnabled(true);
        DisableFields();
        controls().cmdNew->setFocus();
        return;
    }
    if (recordIndex() <= mRecordCount)
        rsRecords->moveNext();
    else {
        setRecordIndex(mRecordCount);
        rsRecords->moveLast();
    }
    SetNavButtons();
    FillRecord();
    SelectListRow(recordIndex());
    focusFirstField();
}

// An existing record is not put back: what was typed stays on screen, out of reach of any save.
void ListForm::cmdCancel_Click()
{
    controls().cmdSave->setEnabled(false);
    enableRecordButtons();
    if (recordIndex() == 0) {
        DisableFields();
        return;
    }
    controls().cmdSave->setEnabled(false);
    controls().cmdNew->setEnabled(true);
    if (mNewRecord) {
        mNewRecord = false;
        readRecordCount();
        rsRecords->moveFirst();
        rsRecords->move(recordIndex() - 1);
        SetNavButtons();
        FillRecord();
        reloadDependants();
    }
    ShowRecordInfo();
}

void ListForm::showEmpty()
{
    DisableRecordButtons();
    m_list.cmdFind->setEnabled(false);
    setRecordIndex(0);
    DisableFields();
    controls().cmdNew->setEnabled(true);
    m_list.tabs->setCurrentIndex(0);
    m_list.tabs->setEnabled(false);
}

void ListForm::enableRecordButtons()
{
    controls().cmdNew->setEnabled(true);
    controls().cmdDelete->setEnabled(true);
    enableExtraButtons(true);
}

void ListForm::enableExtraButtons(bool on)
{
    m_list.cmdFind->setEnabled(on);
    m_list.cmdAddAward->setEnabled(on);
    m_list.cmdDeleteAward->setEnabled(on);
}

} // namespace orlo
