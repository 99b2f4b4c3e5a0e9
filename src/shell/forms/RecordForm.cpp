#include "shell/forms/RecordForm.h"

#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "widgets/MessageBox.h"

#include <QLabel>

#include <utility>

namespace orlo
{

RecordForm::RecordForm(Table table) : Form(widgets::FormKind::Child), m_table(std::move(table))
{
}

void RecordForm::bindControls(QWidget* firstField)
{
    m_firstField = firstField;
    button("cmdSave").setEnabled(false);
    widgets::pressOncePerDoubleClick(button("cmdDelete"));
    // Keys have five digits.
    control<QLabel>("lblRecordInfo").setProperty("longest", QStringLiteral("%1 12345 of 12345").arg(m_table.noun));
    connectRoutine("cmdFirst", &RecordForm::cmdFirst_Click);
    connectRoutine("cmdPrevious", &RecordForm::cmdPrevious_Click);
    connectRoutine("cmdNext", &RecordForm::cmdNext_Click);
    connectRoutine("cmdLast", &RecordForm::cmdLast_Click);
    connectRoutine("cmdNew", &RecordForm::cmdNew_Click);
    connectRoutine("cmdDelete", &RecordForm::cmdDelete_Click);
    connect(&button("cmdSave"), &QPushButton::clicked, this, [this] { cmdSave_Click(); });
    connect(&button("cmdCancel"), &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    connect(&button("cmdExit"), &QPushButton::clicked, this, [this] { cmdExit_Click(); });
}

void RecordForm::setFields(std::vector<RecordField> fields)
{
    m_fields = std::move(fields);
    for (const RecordField& field : m_fields)
        field.tell([this] { button("cmdSave").setEnabled(true); });
}

void RecordForm::showFields()
{
    for (const RecordField& field : m_fields)
        field.show(rsRecords->value(field.name));
}

void RecordForm::clearFields()
{
    for (const RecordField& field : m_fields)
        field.clear();
}

void RecordForm::writeFields()
{
    for (const RecordField& field : m_fields)
        rsRecords->setValue(field.name, field.value());
}

void RecordForm::focusFirstField()
{
    (m_firstField->isEnabled() ? fieldInView() : &button("cmdNew"))->setFocus();
}

void RecordForm::showEvent(QShowEvent* event)
{
    Form::showEvent(event);
    if (mRecordCount == 0 && !mNewRecord)
        button("cmdNew").setFocus();
    else if (!m_opened)
        m_firstField->setFocus();
    m_opened = true;
}

void RecordForm::cmdExit_Click()
{
    PromptSaveChanges();
    unload();
}

void RecordForm::ShowRecordInfo()
{
    control<QLabel>("lblRecordInfo").setText(recordInfo(m_table.noun));
}

// Whatever the answer, and even if a check refuses the record, the operation that asked goes on.
void RecordForm::PromptSaveChanges()
{
    if (!button("cmdSave").isEnabled())
        return;
    if (widgets::ask(QStringLiteral("Data Changes Not Saved.Do you want to save your changes"),
                     QStringLiteral("Save Changes"), widgets::Preset::Yes, widgets::OnEscape::DoesNothing))
        SaveRecord();
    button("cmdSave").setEnabled(false);
}

void RecordForm::DisableRecordButtons()
{
    for (const char* name : {"cmdSave", "cmdDelete", "cmdFirst", "cmdPrevious", "cmdNext", "cmdLast"})
        button(name).setEnabled(false);
}

void RecordForm::showWays(const Ways& ways)
{
    if (ways.back) {
        button("cmdFirst").setEnabled(*ways.back);
        button("cmdPrevious").setEnabled(*ways.back);
    }
    if (ways.ahead) {
        button("cmdNext").setEnabled(*ways.ahead);
        button("cmdLast").setEnabled(*ways.ahead);
    }
}

std::int16_t RecordForm::newKey() const
{
    const auto highest =
        database().openRecordset(QStringLiteral("Select Max(%1) AS [MaxSID]from %2").arg(m_table.key, m_table.name));
    const store::Value key = highest[u"MaxSID"];
    return key.isNull() ? std::int16_t{1} : platform::toInt16(key.toInt32() + 1.0);
}

} // namespace orlo
