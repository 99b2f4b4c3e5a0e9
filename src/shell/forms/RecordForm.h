#pragma once

#include "shell/forms/RecordWalk.h"
#include "widgets/Form.h"

#include <initializer_list>

class QLabel;

namespace orlo
{

/// A screen that shows one record of a table at a time: what the walking forms and the people forms have in common.
///
/// There is no changed flag as a variable: the record counts as changed exactly while cmdSave is enabled. Filling the
/// controls fires the same change events as typing, so every fill disables cmdSave last.
class RecordForm : public widgets::Form, protected RecordWalk
{
    Q_OBJECT

protected:
    /// The table whose records are shown, and how the screen calls one of them.
    struct Table {
        QString noun;
        QString name;
        QString key;
    };

    /// The controls that every record form has, whatever it shows.
    struct Controls {
        QPushButton* cmdFirst;
        QPushButton* cmdPrevious;
        QPushButton* cmdNext;
        QPushButton* cmdLast;
        QPushButton* cmdNew;
        QPushButton* cmdSave;
        QPushButton* cmdDelete;
        QPushButton* cmdCancel;
        QPushButton* cmdExit;
        QLabel* lblRecordInfo;
        QWidget* firstField;

        template <class Ui>
        Controls(const Ui& ui, QWidget* first)
            : cmdFirst(ui.cmdFirst), cmdPrevious(ui.cmdPrevious), cmdNext(ui.cmdNext), cmdLast(ui.cmdLast),
              cmdNew(ui.cmdNew), cmdSave(ui.cmdSave), cmdDelete(ui.cmdDelete), cmdCancel(ui.cmdCancel),
              cmdExit(ui.cmdExit), lblRecordInfo(ui.lblRecordInfo), firstField(first)
        {
        }
    };

    explicit RecordForm(Table table);

    /// Takes the controls of the form and connects its buttons. cmdSave starts disabled.
    void bindControls(const Controls& controls);
    /// Connects a button to the routine of its name.
    template <class F>
    void connectRoutine(QPushButton* button, void (F::*routine)())
    {
        connect(button, &QPushButton::clicked, this, [this, routine] {
            (static_cast<F*>(this)->*routine)();
            endRoutine();
        });
    }
    /// Where the routines of a form end that tests then for a failure which something left pending.
    virtual void endRoutine() const {}

    /// Makes every change of these controls, by the user or by code, enable cmdSave.
    void enableSaveOnChange(std::initializer_list<QWidget*> controls);

    /// Copies the current record into the controls and disables cmdSave.
    virtual void FillRecord() = 0;
    /// Empties the record's controls.
    virtual void ClearRecord() = 0;
    /// Checks and writes the controls into the current or the new record, and ends the new-record state.
    virtual void SaveRecord() = 0;
    virtual void SetNavButtons() = 0;
    /// Enable or disable the input controls as a group, when the set becomes empty or no longer is.
    virtual void EnableFields() {}
    virtual void DisableFields() {}

    virtual void cmdFirst_Click() = 0;
    virtual void cmdPrevious_Click() = 0;
    virtual void cmdNext_Click() = 0;
    virtual void cmdLast_Click() = 0;
    virtual void cmdNew_Click() = 0;
    virtual void cmdSave_Click() = 0;
    virtual void cmdDelete_Click() = 0;
    virtual void cmdCancel_Click() = 0;
    void cmdExit_Click();

    void showEvent(QShowEvent* event) override;

    /// Gives the focus to the first field, or to cmdNew while there is no record to type into.
    void focusFirstField();
    /// The field that stands for the first one while that doesn't show.
    [[nodiscard]] virtual QWidget* fieldInView() const { return m_controls->firstField; }
    void ShowRecordInfo();
    void PromptSaveChanges();
    void DisableRecordButtons();

    /// Enables and disables the four navigation buttons.
    void showWays(const Ways& ways);
    /// The key after the highest one of the table, 1 for an empty table. Raises 6 past 32767.
    [[nodiscard]] std::int16_t newKey() const;

    [[nodiscard]] const Controls& controls() const { return *m_controls; }
    [[nodiscard]] const QString& keyField() const { return m_table.key; }

private:
    Table m_table;
    std::optional<Controls> m_controls;
    bool m_opened = false;
};

} // namespace orlo
