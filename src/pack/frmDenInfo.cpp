#include "pack/frmDenInfo.h"

#include "pack/dlgAddAdults.h"
#include "pack/dlgAddScouts.h"
#include "platform/Conversion.h"
#include "shell/forms/EmptyLists.h"
#include "shell/forms/Module1.h"
#include "shell/forms/PersonName.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "ui_frmDenInfo.h"
#include "widgets/MessageBox.h"
#include "widgets/TextBox.h"

#include <QLineEdit>

namespace orlo
{

namespace
{
constexpr int MaxActiveLength = 255; // characters that the field takes

// A den without a type leaves the box as it was, and so does a new one. An unlisted type clears it, and a save asks for
// one.
RecordField typeField(QStringView name, widgets::ComboBox* list)
{
    RecordField field = textField(name, list);
    field.show = [list](const store::Value& value) {
        if (const QString type = value.textOrEmpty(); !type.isEmpty())
            list->setListIndex(list->findText(type, Qt::MatchFixedString));
    };
    field.clear = [] {};
    return field;
}

RecordField yearField(QStringView name, QLineEdit* box)
{
    return boxField(
        name, box, [](const store::Value& year) { return year.isNull() ? QStringLiteral("0") : year.toText(); },
        [box] { return store::Value(platform::val(box->text())); });
}

} // namespace

frmDenInfo::frmDenInfo()
    : WalkingForm({QStringLiteral("Den"), QStringLiteral("Dens"), QStringLiteral("Den_SID")}),
      ui(std::make_unique<Ui::frmDenInfo>())
{
    ui->setupUi(this);
    for (const char16_t* type : {u"Tiger", u"Wolf", u"Bear", u"Webelos (1st Yr)", u"Webelos (2nd Yr)", u" "})
        ui->comDenType->addItem(QString::fromUtf16(type));
    ui->txtActive->lineEdit()->setMaxLength(MaxActiveLength);
    bindControls(ui->txtDenNumber);
    setDefaultButton(ui->cmdSave);
    setCancelButton(ui->cmdDelete);
    sayNothingYet(*ui->lstScouts, QStringLiteral("scouts"), *ui->cmdAddScouts);
    sayNothingYet(*ui->lstAdults, QStringLiteral("leaders"), *ui->cmdAddDenLeader);
    setFields({
        numberField(u"Den_Number", ui->txtDenNumber),
        textField(u"Den_Name", ui->txtDenName),
        typeField(u"Den_Type", ui->comDenType),
        yearField(u"Year_Started", ui->txtYearStarted),
        textField(u"Active", ui->txtActive),
    });
    connect(ui->cmdAddScouts, &QPushButton::clicked, this, &frmDenInfo::cmdAddScouts_Click);
    connect(ui->cmdDelScouts, &QPushButton::clicked, this, [this] { removeScouts(false); });
    connect(ui->cmdAddDenLeader, &QPushButton::clicked, this, &frmDenInfo::cmdAddDenLeader_Click);
    connect(ui->cmdDelDenLeader, &QPushButton::clicked, this, [this] { removeLeaders(false); });
}

frmDenInfo::~frmDenInfo() = default;

void frmDenInfo::load()
{
    openRecords(QStringLiteral("Select * from Dens  order by Den_Number"));
    if (mRecordCount < 1) {
        setRecordIndex(0);
        DisableRecordButtons();
        DisableFields();
        ShowRecordInfo();
    } else {
        setRecordIndex(1);
        rsRecords->moveFirst();
        mCurrentSID = rsRecords->value(u"Den_SID").toInt16();
        ShowRecordInfo();
        FillRecord();
    }
    SetNavButtons();
}

// ---- The record

void frmDenInfo::FillRecord()
{
    if (mRecordCount < 1)
        return;
    showFields();
    mCurrentSID = rsRecords->value(u"Den_SID").toInt16();
    ui->lstScouts->clear();
    ui->lstAdults->clear();
    loadScouts();
    loadLeaders();
    ui->cmdSave->setEnabled(false);
}

void frmDenInfo::ClearRecord()
{
    clearFields();
    ui->lstScouts->clear();
    ui->lstAdults->clear();
}

void frmDenInfo::SaveRecord()
{
    if (ui->comDenType->text().isEmpty()) {
        widgets::message(QStringLiteral("A Den Type must be selected. Please select a Den type and Save again."),
                         QStringLiteral("Save Error"));
        return;
    }
    if (!mNewRecord)
        rsRecords->edit();
    writeFields();
    if (mNewRecord)
        rsRecords->setValue(u"Den_SID", int{mCurrentSID});
    rsRecords->update();
    if (mNewRecord) {
        ++mRecordCount;
        setRecordIndex(mRecordCount);
        rsRecords->moveLast();
        ui->cmdNext->setEnabled(false);
        ui->cmdLast->setEnabled(false);
    }
    mNewRecord = false;
    ShowRecordInfo();
    SetNavButtons();
}

void frmDenInfo::EnableFields()
{
    setFieldsEnabled(true);
}

void frmDenInfo::DisableFields()
{
    setFieldsEnabled(false);
}

void frmDenInfo::setFieldsEnabled(bool enabled)
{
    for (const RecordField& field : fields())
        field.control->setEnabled(enabled);
}

void frmDenInfo::prepareNew()
{
    if (recordIndex() == 0)
        EnableFields();
    setMemberButtonsEnabled(false); // an unsaved den can't have members
}

void frmDenInfo::startNew()
{
    ui->cmdSave->setEnabled(true);
    ui->cmdNew->setEnabled(false);
    ui->cmdDelete->setEnabled(false);
    ui->txtActive->setText(QStringLiteral("Y"));
    ui->comDenType->setText(QStringLiteral(" "));
    ui->txtYearStarted->setText(QString::number(platform::today().year()));
}

void frmDenInfo::finishSave()
{
    setMemberButtonsEnabled(true);
}

void frmDenInfo::finishCancelledNew()
{
    setMemberButtonsEnabled(true);
}

void frmDenInfo::setMemberButtonsEnabled(bool enabled)
{
    for (QPushButton* button : {ui->cmdAddScouts, ui->cmdAddDenLeader, ui->cmdDelScouts, ui->cmdDelDenLeader})
        button->setEnabled(enabled);
}

// ---- Members

void frmDenInfo::loadScouts()
{
    ui->lstScouts->clear();
    auto scouts = database().openRecordset(
        QStringLiteral("Select * From Scouts Where Assigned_Den_SID = %1 And Active = 'Y' Order by Last_Name, "
                       "First_Name, MI")
            .arg(mCurrentSID));
    mScoutSIDs.clear();
    for (; !scouts.eof(); scouts.moveNext()) {
        ui->lstScouts->addItem(firstMiddleLast(scouts));
        mScoutSIDs.push_back(scouts[u"Scout_SID"].toInt16());
    }
}

void frmDenInfo::loadLeaders()
{
    ui->lstAdults->clear();
    auto leaders = database().openRecordset(
        QStringLiteral("Select * From Adults A, Leader_Den_Assignments LDA Where LDA.Adult_SID = A.Adult_SID and "
                       "LDA.Den_SID = %1 and Active = 'Y' Order by Last_Name, First_Name, MI")
            .arg(mCurrentSID));
    mAdultSIDs.clear();
    QStringList keys;
    for (; !leaders.eof(); leaders.moveNext()) {
        ui->lstAdults->addItem(firstMiddleLast(leaders));
        mAdultSIDs.push_back(leaders[u"Adult_SID"].toInt16());
        keys.append(QString::number(mAdultSIDs.back()));
    }
    if (!keys.isEmpty())
        mAdultSidList = keys.join(QStringLiteral(", "));
}

void frmDenInfo::removeScouts(bool all)
{
    const widgets::BusyPointer busy;
    database().aboutToRemove(); // all members of a den may lose it
    for (int row = 0; row < ui->lstScouts->listCount(); ++row) {
        if (!all && !ui->lstScouts->selected(row))
            continue;
        auto scout = database().openRecordset(QStringLiteral("Select Assigned_Den_SID From Scouts Where Scout_SID = %1")
                                                  .arg(mScoutSIDs[static_cast<std::size_t>(row)]));
        if (scout.recordCount() == 0)
            continue;
        scout.edit();
        scout.setValue(u"Assigned_Den_SID", store::Value());
        scout.update();
    }
    loadScouts();
}

// A leader's place in this den goes with whatever title it had; pack positions stay.
void frmDenInfo::removeLeaders(bool all)
{
    const widgets::BusyPointer busy;
    for (int row = 0; row < ui->lstAdults->listCount(); ++row)
        if (all || ui->lstAdults->selected(row))
            database().execute(
                QStringLiteral(" Delete From Leader_Den_Assignments  Where Adult_SID = %1 and Den_SID = %2")
                    .arg(mAdultSIDs[static_cast<std::size_t>(row)])
                    .arg(mCurrentSID));
    loadLeaders();
}

// Only those who are listed are released: inactive members keep pointing at the den that is gone.
void frmDenInfo::releaseDependants()
{
    removeScouts(true);
    removeLeaders(true);
}

// The refill drops what was typed and not saved.
void frmDenInfo::cmdAddScouts_Click()
{
    widgets::Instance<dlgAddScouts>::showWaiting();
    FillRecord();
}

void frmDenInfo::cmdAddDenLeader_Click()
{
    widgets::Instance<dlgAddAdults>::showWaiting();
    FillRecord();
}

} // namespace orlo
