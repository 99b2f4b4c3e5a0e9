#pragma once

#include "shell/forms/RecordForm.h"

namespace orlo
{

/// A record form navigated by the four buttons alone, whose handlers test for the ends of the set themselves.
class WalkingForm : public RecordForm
{
    Q_OBJECT

protected:
    using RecordForm::RecordForm;

    void SetNavButtons() override;

    void cmdFirst_Click() override;
    void cmdPrevious_Click() override;
    void cmdNext_Click() override;
    void cmdLast_Click() override;
    void cmdNew_Click() override;
    void cmdSave_Click() override;
    void cmdDelete_Click() override;
    void cmdCancel_Click() override;

    // Overridden by the forms of this family, in the order in which the handlers call them.

    /// Before a new record's key is determined.
    virtual void prepareNew() {}
    /// Sets a new record's defaults and the buttons, after its controls were cleared.
    virtual void startNew() = 0;
    /// Called at the end of cmdSave, whether the record was written or refused.
    virtual void finishSave() = 0;
    /// Called after a cancelled new record, when the last record is shown again.
    virtual void finishCancelledNew() = 0;
    /// Called at the end of cmdCancel.
    virtual void finishCancel() {}
    /// Releases what belongs to a record about to be deleted.
    virtual void releaseDependants() {}
    /// Called at the end of cmdDelete.
    virtual void finishDelete() {}

private:
    void showNeighbour(int index);
};

} // namespace orlo
