#pragma once

#include "shell/forms/RecordField.h"
#include "shell/forms/RecordWalk.h"
#include "widgets/Form.h"

#include <vector>

namespace orlo
{

/// A form that shows one record of a table at a time: the common base of WalkingForm and PeopleForm.
///
/// There is no separate flag for changes: a record counts as changed exactly while cmdSave is enabled. Filling the
/// controls causes the same change events as typing, so every fill ends by disabling cmdSave.
class RecordForm : public widgets::Form, protected RecordWalk
{
    Q_OBJECT

protected:
    /// The table, and the form's word for a record.
    struct Table {
        QString noun;
        QString name;
        QString key;
    };

    explicit RecordForm(Table table);

    /// Connects the buttons of every record form, once the controls exist. cmdSave starts disabled.
    void bindControls(QWidget* firstField);
    /// Sets the record's fields, in the order of a save. Every change of one enables cmdSave.
    void setFields(std::vector<RecordField> fields);
    /// Connects a button to the routine with its name.
    template <class F>
    void connectRoutine(const char* name, void (F::*routine)())
    {
        connect(&button(name), &QPushButton::clicked, this, [this, routine] {
            (static_cast<F*>(this)->*routine)();
            endRoutine();
        });
    }
    /// Called at the end of routines; overridden to check for a pending failure.
    virtual void endRoutine() const {}

    [[nodiscard]] const std::vector<RecordField>& fields() const { return m_fields; }
    /// Show the current record's fields, show a new record's values, write the fields into the record.
    void showFields();
    void clearFields();
    void writeFields();

    /// Shows the current record and disables cmdSave.
    virtual void FillRecord() = 0;
    /// Clears the record's controls.
    virtual void ClearRecord() = 0;
    /// Checks the controls, writes them into the current or new record, and ends the new-record state.
    virtual void SaveRecord() = 0;
    virtual void SetNavButtons() = 0;
    /// Enable or disable the input controls when the set stops or starts being empty.
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

    /// Focuses the first field, or cmdNew while there is no record to edit.
    void focusFirstField();
    /// The field to focus while the first one is hidden.
    [[nodiscard]] virtual QWidget* fieldInView() const { return m_firstField; }
    void ShowRecordInfo();
    void PromptSaveChanges();
    void DisableRecordButtons();

    /// Enables and disables the four navigation buttons.
    void showWays(const Ways& ways);
    /// One more than the table's highest key, 1 for an empty table. Raises 6 past 32767.
    [[nodiscard]] std::int16_t newKey() const;

    [[nodiscard]] QPushButton& button(const char* name) const { return control<QPushButton>(name); }
    [[nodiscard]] QWidget* firstField() const { return m_firstField; }
    [[nodiscard]] const QString& keyField() const { return m_table.key; }

private:
    Table m_table;
    std::vector<RecordField> m_fields;
    QWidget* m_firstField = nullptr;
    bool m_opened = false;
};

} // namespace orlo
