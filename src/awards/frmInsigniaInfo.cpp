#include "awards/frmInsigniaInfo.h"

#include "awards/InsigniaTypes.h"
#include "awards/dlgFindInsignia.h"
#include "store/engine/Value.h"
#include "ui_frmInsigniaInfo.h"
#include "widgets/MessageBox.h"
#include "widgets/TextBox.h"

namespace orlo
{

namespace
{
const QString Everything = QStringLiteral("Select * From Insignias");
const QString InOrder = QStringLiteral(" Order by Insignia_Name, Insignia_Type");

// An award without a description shows a blank.
RecordField descriptionField(QStringView name, QPlainTextEdit* box)
{
    RecordField field = textField(name, box);
    field.value = [box, value = field.value] {
        if (box->toPlainText().isEmpty())
            box->setPlainText(QStringLiteral(" "));
        return value();
    };
    return field;
}

// A type that isn't one of the nine leaves the former option set, and is kept if none was set.
RecordField typeField(QStringView name, const std::array<InsigniaType, 9>& types)
{
    const auto stored = std::make_shared<store::Value>();
    const auto show = [types, stored](const store::Value& value) {
        *stored = value;
        for (const InsigniaType& type : types)
            if (type.text == value.textOrEmpty())
                type.option->setChecked(true);
    };
    const auto value = [types, stored] {
        const QString type = chosenType(types);
        return type.isEmpty() ? *stored : store::Value(type);
    };
    const auto tell = [types](const RecordField::Changed& changed) {
        for (const InsigniaType& type : types)
            QObject::connect(type.option, &widgets::OptionButton::selected, type.option, changed);
    };
    return {name, types[0].option, show, value, [types] { types[0].option->setChecked(true); }, tell};
}
} // namespace

frmInsigniaInfo::frmInsigniaInfo()
    : WalkingForm({QStringLiteral("Award"), QStringLiteral("Insignias"), QStringLiteral("Insignia_SID")}),
      ui(std::make_unique<Ui::frmInsigniaInfo>())
{
    ui->setupUi(this);
    bindControls(ui->txtInsigniaName);
    setCancelButton(ui->cmdDelete);
    setFields({
        textField(u"Insignia_Name", ui->txtInsigniaName),
        descriptionField(u"Description", ui->txtInsigniaInfo),
        typeField(u"Insignia_Type", insigniaTypes(*ui)),
    });
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
    showFields();
    mCurrentSID = rsRecords->value(u"Insignia_SID").toInt16();
    ui->cmdSave->setEnabled(false);
}

void frmInsigniaInfo::ClearRecord()
{
    clearFields();
}

// The set isn't moved to a new record: it stays on the former one, which a later save then edits.
void frmInsigniaInfo::SaveRecord()
{
    if (!mNewRecord)
        rsRecords->edit();
    writeFields();
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

// cmdNew stays enabled, and cmdSave is enabled by the changes of ClearRecord or the first key.
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

// The question about unsaved changes comes after the dialog, even if that was cancelled.
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
