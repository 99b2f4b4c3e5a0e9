#include "shell/forms/WalkingForm.h"

#include "shell/forms/Module1.h"
#include "store/engine/Database.h"

namespace orlo
{

// On a set of one record First and Prev stay enabled; a click has no effect.
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

// After a refused record cmdSave is disabled, too: a field must be touched to enable it again.
void WalkingForm::cmdSave_Click()
{
    SaveRecord();
    focusFirstField();
    button("cmdSave").setEnabled(false);
    button("cmdNew").setEnabled(true);
    button("cmdDelete").setEnabled(true);
    finishSave();
}

// There is no question, and Escape is bound to this.
void WalkingForm::cmdDelete_Click()
{
    if (mRecordCount != 0) {
        database().aboutToRemove(); // dependent rows are removed first
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

// After cancelling a new record the last record is shown, not the one that was on screen before.
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
