#pragma once

#include "shell/forms/RecordForm.h"

namespace orlo
{

/// A record form whose records are reached by the four navigation buttons only. The buttons' handlers test the ends of
/// the set themselves.
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

    // What the forms of this family do in a way of their own, in the order in which the handlers come to it.

    /// Before a new record's key is looked for.
    virtual void prepareNew() {}
    /// Sets the defaults of a new record and the buttons, its controls having been emptied.
    virtual void startNew() = 0;
    /// Ends cmdSave, whether the record was written or refused.
    virtual void finishSave() = 0;
    /// A new record was cancelled and the last record is back on screen.
    virtual void finishCancelledNew() = 0;
    /// Ends cmdCancel.
    virtual void finishCancel() {}
    /// Releases what hangs off the record that is about to be deleted.
    virtual void releaseDependants() {}
    /// Ends cmdDelete.
    virtual void finishDelete() {}

private:
    void showNeighbour(int index);
};

} // namespace orlo
