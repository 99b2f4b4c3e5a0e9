#include "awards/frmInsigniaInfo.h"

#include "awards/dlgFindInsignia.h"
#include "ui_frmInsigniaInfo.h"
#include "widgets/MessageBox.h"
#include "widgets/TextBox.h"

namespace orlo
{

namespace
{
const QString Everything = QStringLiteral("Select * From Insignias");
const QString InOrder = QStringLiteral(" Order by Insignia_Name, Insignia_Type");
} // namespace

frmInsigniaInfo::frmInsigniaInfo()
    : WalkingForm({QStringLiteral("Award"), QStringLiteral("Insignias"), QStringLiteral("Insignia_SID")}),
      ui(std::make_unique<Ui::frmInsigniaInfo>())
{
    ui->setupUi(this);
    m_name = textField(u"Insignia_Name", ui->txtInsigniaName);
    m_description = textField(u"Description", ui->txtInsigniaInfo);
    m_types = insigniaTypes(*ui);
    bindControls({*ui, ui->txtInsigniaName});
    setCancelButton(ui->cmdDelete);
    enableSaveOnChange({ui->txtInsigniaName, ui->txtInsigniaInfo});
    for (const InsigniaType& type : m_types)
        enableSaveOnChange({type.option});
    connect(ui->cmdFind, &QPushButton::clicked, this, &frmInsigniaInfo::cmdFind_Click);
}

frmInsigniaInfo::~frmInsigniaInfo() = default;

void frmInsigniaInfo::load()
{
    reload();
    SetNavButtons();
}

void frmInsigniaInfo::reload()
{
    openRecords(Everything + InOrder);
    setRecordIndex(mRecordCount > 0 ? 1 : 0);
    ShowRecordInfo();
    mFindRequested = false;
    if (mRecordCount < 1) {
        DisableRecordButtons();
        return;
    }
    rsRecords->moveFirst();
    mCurrentSID = rsRecords->value(u"Insignia_SID").toInt16();
    FillRecord();
}

// ---- The record

void frmInsigniaInfo::FillRecord()
{
    m_name.show(rsRecords->value(m_name.name));
    m_description.show(rsRecords->value(m_description.name));
    mCurrentSID = rsRecords->value(u"Insignia_SID").toInt16();
    // A type outside the nine leaves the option that was set before.
    const QString stored = rsRecords->value(u"Insignia_Type").textOrEmpty();
    for (const InsigniaType& type : m_types)
        if (type.text == stored)
            type.option->setChecked(true);
    ui->cmdSave->setEnabled(false);
}

void frmInsigniaInfo::ClearRecord()
{
    widgets::fillBox(*ui->txtInsigniaName, QString());
    ui->txtInsigniaInfo->clear();
    ui->optSegment->setChecked(true);
}

// The set isn't moved to a new record: it stays on the one that was current before, which a later save then edits.
void frmInsigniaInfo::SaveRecord()
{
    if (!mNewRecord)
        rsRecords->edit();
    rsRecords->setValue(m_name.name, m_name.value());
    if (ui->txtInsigniaInfo->toPlainText().isEmpty())
        ui->txtInsigniaInfo->setPlainText(QStringLiteral(" "));
    rsRecords->setValue(m_description.name, m_description.value());
    if (const QString type = chosenType(m_types); !type.isEmpty())
        rsRecords->setValue(u"Insignia_Type", type);
    if (mNewRecord)
        rsRecords->setValue(u"Insignia_SID", int{mCurrentSID});
    rsRecords->update();
    if (mNewRecord) {
        ++mRecordCount;
        setRecordIndex(mRecordCount);
    }
    ui->cmdFirst->setEnabled(true);
    ui->cmdPrevious->setEnabled(true);
    ui->cmdNext->setEnabled(false);
    ui->cmdLast->setEnabled(false);
    mNewRecord = false;
    ShowRecordInfo();
}

// cmdNew stays live, and cmdSave comes on through the changes of ClearRecord or the first key.
void frmInsigniaInfo::startNew()
{
    ui->cmdDelete->setEnabled(false);
    ui->cmdFind->setEnabled(false);
}

void frmInsigniaInfo::finishSave()
{
    ui->cmdFind->setEnabled(true);
    SetNavButtons();
}

void frmInsigniaInfo::finishCancelledNew()
{
    ui->cmdNext->setEnabled(false);
    ui->cmdLast->setEnabled(false);
}

void frmInsigniaInfo::finishCancel()
{
    ui->cmdDelete->setEnabled(true);
    ui->cmdFind->setEnabled(true);
}

void frmInsigniaInfo::finishDelete()
{
    SetNavButtons();
}

// ---- Find

void frmInsigniaInfo::SetFindData(const QString& name, const QString& type)
{
    mFindName = name;
    mFindType = type;
}

// The user is asked about unsaved changes after the dialog, and even when it was cancelled.
void frmInsigniaInfo::cmdFind_Click()
{
    widgets::Instance<dlgFindInsignia>::showWaiting();
    PromptSaveChanges();
    if (mFindRequested)
        find();
    else if (mSelectAllRequested)
        reload();
    else
        return;
    SetNavButtons();
    ui->cmdDelete->setEnabled(mRecordCount > 0);
}

QString frmInsigniaInfo::findCondition() const
{
    const QString name = mFindName.trimmed();
    const QString type = mFindType.trimmed();
    QString condition;
    if (!name.isEmpty())
        condition = QStringLiteral(" Insignia_Name Like '") + name + QStringLiteral("*'");
    if (!type.isEmpty())
        condition +=
            (condition.isEmpty() ? QStringLiteral(" Insignia_Type = '") : QStringLiteral(" and Insignia_Type = '")) +
            type + u'\'';
    return condition.isEmpty() ? condition : QStringLiteral(" Where ") + condition;
}

void frmInsigniaInfo::find()
{
    openRecords(Everything + findCondition() + InOrder);
    if (mRecordCount > 0) {
        rsRecords->moveLast();
        rsRecords->moveFirst();
        readRecordCount();
        FillRecord();
        setRecordIndex(1);
        ShowRecordInfo();
        return;
    }
    DisableRecordButtons();
    ClearRecord();
    setRecordIndex(0);
    ShowRecordInfo();
    widgets::message(QStringLiteral("No data found for the selected search cryteria"), QStringLiteral("No Data Found"));
    reload();
}

} // namespace orlo
