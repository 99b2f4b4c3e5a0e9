#include "shell/forms/WalkingForm.h"

namespace orlo
{

// On a set of one record First and Prev stay enabled; a click on them bounces off the start.
void WalkingForm::SetNavButtons()
{
    showWays(ways());
}

void WalkingForm::cmdFirst_Click()
{
    PromptSaveChanges();
    rsRecords->moveFirst();
    FillRecord();
    setRecordIndex(1);
    ShowRecordInfo();
    focusFirstField();
    SetNavButtons();
}

void WalkingForm::cmdPrevious_Click()
{
    PromptSaveChanges();
    rsRecords->movePrevious();
    readRecordCount();
    if (rsRecords->bof())
        rsRecords->moveNext();
    else
        showNeighbour(recordIndex() - 1);
    SetNavButtons();
}

void WalkingForm::cmdNext_Click()
{
    PromptSaveChanges();
    rsRecords->moveNext();
    readRecordCount();
    if (rsRecords->eof())
        rsRecords->movePrevious();
    else
        showNeighbour(recordIndex() + 1);
    SetNavButtons();
}

void WalkingForm::cmdLast_Click()
{
    PromptSaveChanges();
    rsRecords->moveLast();
    readRecordCount();
    setRecordIndex(mRecordCount);
    ShowRecordInfo();
    FillRecord();
    focusFirstField();
    SetNavButtons();
}

void WalkingForm::showNeighbour(int index)
{
    FillRecord();
    setRecordIndex(index);
    ShowRecordInfo();
    focusFirstField();
}

void WalkingForm::cmdNew_Click()
{
    prepareNew();
    mCurrentSID = newKey();
    rsRecords->addNew();
    ClearRecord();
    startNew();
    focusFirstField();
    mNewRecord = true;
    ShowRecordInfo();
    SetNavButtons();
}

// A refused record leaves cmdSave disabled, too: the user has to touch a field to get it back.
void WalkingForm::cmdSave_Click()
{
    SaveRecord();
    focusFirstField();
    button("cmdSave").setEnabled(false);
    button("cmdNew").setEnabled(true);
    button("cmdDelete").setEnabled(true);
    finishSave();
}

// Nothing asks, and Escape is bound to it.
void WalkingForm::cmdDelete_Click()
{
    if (mRecordCount != 0) {
        database().aboutToRemove(); // what depends on the record goes first
        releaseDependants();
        rsRecords->remove();
        readRecordCount();
    }
    if (mRecordCount != 0) {
        rsRecords->movePrevious();
        if (rsRecords->bof()) {
            button("cmdPrevious").setEnabled(false);
            button("cmdFirst").setEnabled(false);
            rsRecords->moveNext();
            setRecordIndex(1);
        } else
            setRecordIndex(recordIndex() - 1);
        FillRecord();
    } else {
        ClearRecord();
        DisableRecordButtons();
        DisableFields();
        setRecordIndex(0);
        button("cmdNew").setFocus();
    }
    finishDelete();
    ShowRecordInfo();
}

// A cancelled new record gives way to the last record, not to the one that was on screen before.
void WalkingForm::cmdCancel_Click()
{
    button("cmdSave").setEnabled(false);
    button("cmdNew").setEnabled(true);
    button("cmdDelete").setEnabled(true);
    if (mNewRecord) {
        mNewRecord = false;
        readRecordCount();
        if (mRecordCount > 0) {
            rsRecords->moveLast();
            setRecordIndex(mRecordCount);
            FillRecord();
            finishCancelledNew();
        }
    } else
        FillRecord();
    finishCancel();
    ShowRecordInfo();
    SetNavButtons();
}

} // namespace orlo
