#pragma once

#include "shell/forms/RecordForm.h"

class QTabWidget;

namespace orlo::widgets
{
class ListBox;
}

namespace orlo
{

/// A record form with a list of all its records beside the one on screen. Row n of the list is record n of the set, by
/// position alone; a click in the list, by the user or by code, brings that record on screen. One routine,
/// SetNavButtons, finds the ends of the set, so the buttons' handlers needn't.
class ListForm : public RecordForm
{
    Q_OBJECT

protected:
    /// What the list forms have beside the controls of every record form.
    struct ListControls {
        widgets::ListBox* list;
        QTabWidget* tabs;
        QPushButton* cmdFind;
        QPushButton* cmdAddAward;
        QPushButton* cmdDeleteAward;
    };

    using RecordForm::RecordForm;

    void bindList(const ListControls& controls);

    [[nodiscard]] QWidget* fieldInView() const override;
    void SetNavButtons() override;
    /// Makes a row the list's current one, 1-based. It counts as a click when the row changes.
    void SelectListRow(int position);
    void list_Click();

    void cmdFirst_Click() override;
    void cmdPrevious_Click() override;
    void cmdNext_Click() override;
    void cmdLast_Click() override;
    void cmdNew_Click() override;
    void cmdSave_Click() override;
    void cmdDelete_Click() override;
    void cmdCancel_Click() override;

    /// Ends SaveRecord, the record having been written: a new one gets its row, and the screen shows what was stored.
    void finishSaveRecord();
    /// Puts the form into the state without records: only cmdNew is live.
    void showEmpty();
    /// Brings cmdNew, cmdDelete and the extra buttons back, the new-record state having ended.
    void enableRecordButtons();
    void enableExtraButtons(bool on);

    // What the forms of this family do in a way of their own.

    /// Opens the set anew through the form's filters and fills the list.
    virtual void openSet() = 0;
    /// Reloads what hangs off the record on screen and FillRecord doesn't reload.
    virtual void reloadDependants() {}
    /// Sets the defaults of a new record, its controls having been emptied.
    virtual void setDefaults() = 0;
    /// Ends cmdNew, the new-record state having begun.
    virtual void finishNew() {}
    /// The text of the row that a new record gets; it stays until the list is next filled.
    [[nodiscard]] virtual QString newRowText() const = 0;
    /// Asks whether the record on screen is to be deleted.
    [[nodiscard]] virtual bool confirmDelete() = 0;
    /// Deletes the awards of the record that is about to be deleted.
    virtual void deleteAwards() = 0;

    [[nodiscard]] const ListControls& listControls() const { return m_list; }

private:
    void showCurrent();

    ListControls m_list{};
};

} // namespace orlo
