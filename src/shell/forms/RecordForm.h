#pragma once

#include "shell/forms/RecordField.h"
#include "shell/forms/RecordWalk.h"
#include "widgets/Form.h"

#include <vector>

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

    explicit RecordForm(Table table);

    /// Connects the buttons that every record form has, once the form has its controls. cmdSave starts disabled.
    void bindControls(QWidget* firstField);
    /// Takes the record's fields in the order of a save. Every change of theirs enables cmdSave.
    void setFields(std::vector<RecordField> fields);
    /// Connects a button to the routine of its name.
    template <class F>
    void connectRoutine(const char* name, void (F::*routine)())
    {
        connect(&button(name), &QPushButton::clicked, this, [this, routine] {
            (static_cast<F*>(this)->*routine)();
            endRoutine();
        });
    }
    /// Where the routines of a form end that tests then for a failure which something left pending.
    virtual void endRoutine() const {}

    [[nodiscard]] const std::vector<RecordField>& fields() const { return m_fields; }
    /// Shows the fields of the current record, shows what a new one begins with, writes what shows into the record.
    void showFields();
    void clearFields();
    void writeFields();

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
    [[nodiscard]] virtual QWidget* fieldInView() const { return m_firstField; }
    void ShowRecordInfo();
    void PromptSaveChanges();
    void DisableRecordButtons();

    /// Enables and disables the four navigation buttons.
    void showWays(const Ways& ways);
    /// The key after the highest one of the table, 1 for an empty table. Raises 6 past 32767.
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
