#include "shell/forms/RecordForm.h"

#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "widgets/CheckBox.h"
#include "widgets/ComboBox.h"
#include "widgets/MessageBox.h"
#include "widgets/OptionButton.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <utility>

namespace orlo
{

RecordForm::RecordForm(Table table) : Form(widgets::FormKind::Child), m_table(std::move(table))
{
}

void RecordForm::bindControls(const Controls& controls)
{
    m_controls = controls;
    controls.cmdSave->setEnabled(false);
    widgets::pressOncePerDoubleClick(*controls.cmdDelete);
    QLabel& info = *controls.lblRecordInfo;
    const QString none = info.text();
    info.setText(QStringLiteral("%1 12345 of 12345").arg(m_table.noun)); // the longest; keys have five digits
    info.setMinimumWidth(std::max(info.minimumWidth(), info.sizeHint().width()));
    info.setText(none);
    connectRoutine(controls.cmdFirst, &RecordForm::cmdFirst_Click);
    connectRoutine(controls.cmdPrevious, &RecordForm::cmdPrevious_Click);
    connectRoutine(controls.cmdNext, &RecordForm::cmdNext_Click);
    connectRoutine(controls.cmdLast, &RecordForm::cmdLast_Click);
    connectRoutine(controls.cmdNew, &RecordForm::cmdNew_Click);
    connectRoutine(controls.cmdDelete, &RecordForm::cmdDelete_Click);
    connect(controls.cmdSave, &QPushButton::clicked, this, [this] { cmdSave_Click(); });
    connect(controls.cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    connect(controls.cmdExit, &QPushButton::clicked, this, [this] { cmdExit_Click(); });
}

void RecordForm::enableSaveOnChange(std::initializer_list<QWidget*> controls)
{
    const auto enable = [this] { m_controls->cmdSave->setEnabled(true); };
    for (QWidget* control : controls) {
        if (auto* text = qobject_cast<QLineEdit*>(control))
            connect(text, &QLineEdit::textChanged, this, enable);
        else if (auto* lines = qobject_cast<QPlainTextEdit*>(control))
            // The box tells of a text that is set anew, too; only another one is a change.
            connect(lines, &QPlainTextEdit::textChanged, this, [enable, lines, last = lines->toPlainText()]() mutable {
                const QString before = std::exchange(last, lines->toPlainText());
                if (last != before)
                    enable();
            });
        else if (auto* check = qobject_cast<widgets::CheckBox*>(control))
            connect(check, &widgets::CheckBox::changed, this, enable);
        else if (auto* option = qobject_cast<widgets::OptionButton*>(control))
            connect(option, &widgets::OptionButton::selected, this, enable);
        else if (auto* combo = qobject_cast<widgets::ComboBox*>(control)) {
            connect(combo, &widgets::ComboBox::textChange, this, enable);
            connect(combo, &widgets::ComboBox::clicked, this, enable);
        } else
            Q_UNREACHABLE();
    }
}

void RecordForm::focusFirstField()
{
    (m_controls->firstField->isEnabled() ? fieldInView() : m_controls->cmdNew)->setFocus();
}

void RecordForm::showEvent(QShowEvent* event)
{
    Form::showEvent(event);
    if (mRecordCount == 0 && !mNewRecord)
        m_controls->cmdNew->setFocus();
    else if (!m_opened)
        m_controls->firstField->setFocus();
    m_opened = true;
}

void RecordForm::cmdExit_Click()
{
    PromptSaveChanges();
    unload();
}

void RecordForm::ShowRecordInfo()
{
    m_controls->lblRecordInfo->setText(recordInfo(m_table.noun));
}

// Whatever the answer, and whether a check refuses the record or not, the operation that asked goes on.
void RecordForm::PromptSaveChanges()
{
    if (!m_controls->cmdSave->isEnabled())
        return;
    if (widgets::ask(QStringLiteral("Data Changes Not Saved.Do you want to save your changes"),
                     QStringLiteral("Save Changes"), widgets::Preset::Yes, widgets::OnEscape::DoesNothing))
        SaveRecord();
    m_controls->cmdSave->setEnabled(false);
}

void RecordForm::DisableRecordButtons()
{
    for (QPushButton* button : {m_controls->cmdSave, m_controls->cmdDelete, m_controls->cmdFirst,
                                m_controls->cmdPrevious, m_controls->cmdNext, m_controls->cmdLast})
        button->setEnabled(false);
}

void RecordForm::showWays(const Ways& ways)
{
    if (ways.back) {
        m_controls->cmdFirst->setEnabled(*ways.back);
        m_controls->cmdPrevious->setEnabled(*ways.back);
    }
    if (ways.ahead) {
        m_controls->cmdNext->setEnabled(*ways.ahead);
        m_controls->cmdLast->setEnabled(*ways.ahead);
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
