// The command Find of the screens of people.

#include "shell/forms/Module1.h"
#include "shell/forms/PeopleForm.h"
#include "store/engine/Database.h"
#include "widgets/MessageBox.h"

namespace orlo
{

// The question about unsaved changes comes after the dialog.
void PeopleForm::cmdFind_Click()
{
    showFindDialog();
    PromptSaveChanges();
    if (!mFindRequested) {
        if (mSelectAllRequested)
            openSet();
        return;
    }
    rsRecords = database().openRecordset(findStatement());
    if (rsRecords->recordCount() > 0) {
        rsRecords->moveLast();
        rsRecords->moveFirst();
        readRecordCount();
        setRecordIndex(1);
        mNewRecord = false; // still set after cancelling a new record of an empty set
        enableRecord();
        SetNavButtons();
        FillRecord();
        PopulateNavLB();
        SelectListRow(1);
    } else {
        widgets::message(m_words.nothingFound, QStringLiteral("No Data Found"));
        const int index = recordIndex();
        openSet();
        if (mRecordCount == 0)
            return;
        if (index <= mRecordCount) // a record saved out of the view lost its row
            setRecordIndex(index);
        SetNavButtons();
        FillRecord();
        SelectListRow(recordIndex());
    }
    focusFirstField();
}

} // namespace orlo
