#include "scouts/frmScouts.h"

#include "awards/frmAddAwardsToScout.h"
#include "awards/frmEditAssignedAward.h"
#include "platform/Conversion.h"
#include "scouts/DenLeaderBox.h"
#include "scouts/dlgFindScout.h"
#include "scouts/dlgSelectAdultLink.h"
#include "shell/forms/EmptyLists.h"
#include "shell/forms/Module1.h"
#include "shell/forms/Reading.h"
#include "shell/forms/dlgCalendar.h"
#include "store/engine/Value.h"
#include "ui_frmScouts.h"
#include "widgets/MessageBox.h"
#include "widgets/TextBox.h"

namespace orlo
{

namespace
{

const QString Yes = QStringLiteral("Yes");
const QString No = QStringLiteral("No");

enum AwardColumn { Fixed, Assigned, Quantity, Award, AssignedSID, InsigniaSID };

} // namespace

frmScouts::frmScouts()
    : PeopleForm({.noun = QStringLiteral("Scout"),
                  .nothingFound = QStringLiteral("No data found for the selected search criteria"),
                  .noDens = QStringLiteral("There is no Active Den(s) available to select from. Please create or "
                                           "activate a Den in the Den From.")}),
      ui(std::make_unique<Ui::frmScouts>())
{
    ui->setupUi(this);
    bindControls({.list = ui->lbScouts,
                  .tabs = ui->tabScout,
                  .awards = ui->fgScoutsAwards,
                  .personName = ui->lblScoutName,
                  .noteName = ui->lblNoteName});
    setCancelButton(ui->cmdCancel);
    bindFields();
    bindParents();
    ui->fgScoutsAwards->setCols(InsigniaSID + 1);
    sayNothingYet(*ui->fgScoutsAwards, QStringLiteral("awards"), *ui->cmdAddAward);
    giveAwardsBy<frmAddAwardsToScout>();
    connectRoutine("cmdEditAward", &frmScouts::cmdEditAward_Click);
}

frmScouts::~frmScouts() = default;

void frmScouts::bindFields()
{
    setFields({
        textField(u"First_Name", ui->txtFirst),
        textField(u"Last_Name", ui->txtLast),
        textField(u"MI", ui->txtMi),
        textField(u"Address", ui->txtAddress),
        textField(u"Phone", ui->txtPhone),
        textField(u"City", ui->txtCity),
        textField(u"State", ui->txtState),
        textField(u"Zip_Code", ui->txtZip),
        birthDateField(u"Birth_Date", ui->txtDOB),
        textField(u"Parent_Name1", ui->txtParent1),
        textField(u"Parent_Name2", ui->txtParent2),
        textField(u"Note", ui->txtScoutNote),
        letterField(u"Active", ui->comActive),
        dateField(u"Pack_Start_Date", ui->txtPackStartDate),
        letterField(u"Tigar", ui->comWasTiger),
        wholeNumberField(u"Years_In_Other_Pack", ui->txtYearsInOtherPack),
        wholeNumberField(u"Years_In_Scouts", ui->txtYearsInScouts),
        textField(u"School", ui->txtSchool),
        textField(u"BSA_Number", ui->txtBSANum),
        silent(textField(u"Scouts_Email", ui->txtEmail)), // an edit of this field alone is no change
        textField(u"Alt_Parent_Address", ui->txtAltAddress),
        textField(u"Alt_Parent_City", ui->txtAltCity),
        textField(u"Alt_Parent_State", ui->txtAltState),
        textField(u"Alt_Parent_Zip", ui->txtAltZip),
        textField(u"Parent1_Email", ui->txtParent1Email),
        textField(u"Parent1_Home_Phone", ui->txtParent1HPhone),
        textField(u"Parent1_Work_Phone", ui->txtParent1WPhone),
        optionField(u"Parent1_Use_Scout_Add", ui->optP1UseScoutAdd, ui->optParent1UseAltAdd),
        checkField(u"Parent1_Correspondance", ui->chkP1IncludeCorr, ui->chkP1IncludeCorr, true),
        textField(u"Parent2_Email", ui->txtParent2Email),
        textField(u"Parent2_Home_Phone", ui->txtParent2HPhone),
        textField(u"Parent2_Work_Phone", ui->txtParent2WPhone),
        optionField(u"Parent2_Use_Scout_Add", ui->optP2UseScoutAdd, ui->optParent2UseAltAdd),
        checkField(u"Parent2_Correspondance", ui->chkP2IncludeCorr,
                   ui->chkP1IncludeCorr, // saves the first parent's box
                   false),
        kept(wholeNumberField(u"Grade_In_School", ui->txtGrade)),
        yesNoField(u"Boys_Life", ui->cmbBoysLife),
    });
    for (QLineEdit* date : {ui->txtDOB, ui->txtPackStartDate})
        openCalendarOnDoubleClick(date, [this] { ui->cmdSave->setEnabled(true); });
    connect(ui->comDen, &widgets::ComboBox::textChange, this, &frmScouts::comDen_Change);
    connect(ui->comDen, &widgets::ComboBox::clicked, this, &frmScouts::comDen_Change);
    connect(ui->comDen, &widgets::ComboBox::dropDown, this, &frmScouts::LoadDenLists);
}

void frmScouts::load()
{
    OpenScouts();
    SetUpAwardGrid({{200, Qt::AlignLeft, QString()},
                    {1000, Qt::AlignCenter, QStringLiteral("Assigned")},
                    {500, Qt::AlignCenter, QStringLiteral("Qty")},
                    {4000, Qt::AlignLeft, QStringLiteral("Award")},
                    {0, Qt::AlignLeft, QString()}, // keys are internal
                    {0, Qt::AlignLeft, QString()}},
                   Award);
    ui->fgScoutsAwards->fitCol(Quantity, QString::number(INT16_MAX));
    if (mRecordCount > 0)
        LoadAwardRows();
    endRoutine();
}

// A failure left pending by one routine is shown at the end of the next.
void frmScouts::endRoutine() const
{
    TestPendingError();
}

std::int16_t frmScouts::GetScoutSID() const
{
    return currentPerson();
}

// ---- The record

void frmScouts::FillRecord()
{
    const Reading reading(database());
    const auto& record = *rsRecords;
    showFields();
    m_parent1Leader->show(record[u"Parent1_Den_Leader_SID"]);
    m_parent2Leader->show(record[u"Parent2_Den_Leader_SID"]);
    if (const store::Value den = record[u"Assigned_Den_SID"]; !den.isNull() && den.toInt16() > 0) {
        mDenSID = den.toInt16();
        ui->comDen->setText(GetDenName(mDenSID)); // changing the text looks mDenSID up again
    } else {
        ui->comDen->setText(QString());
        mDenSID = 0;
    }
    mCurrentSID = GetScoutSID();
    ui->cmdSave->setEnabled(false);
    ShowRecordInfo();
    ReloadAwardGrid();
    endRoutine();
}

// Grade, den leader boxes and their links stay: a new record starts with those on screen.
void frmScouts::ClearRecord()
{
    ui->comDen->setText(QStringLiteral(" "));
    clearFields();
    endRoutine();
}

void frmScouts::SaveRecord()
{
    auto& record = *rsRecords;
    if (!mNewRecord)
        record.edit();
    markMissingBirthDate(*ui->txtDOB);
    writeFields();
    record.setValue(u"Parent1_Den_Leader_SID", m_parent1Leader->value());
    record.setValue(u"Parent2_Den_Leader_SID", m_parent2Leader->value());
    record.setValue(u"Assigned_Den_SID", mDenSID >= 1 ? store::Value(int{mDenSID}) : store::Value());
    if (mNewRecord)
        record.setValue(u"Scout_SID", int{mCurrentSID});
    record.update();
    finishSaveRecord();
    endRoutine();
}

void frmScouts::EnableFields()
{
    setFieldsEnabled(true);
}

void frmScouts::DisableFields()
{
    setFieldsEnabled(false);
}

// The others are disabled with the tab control.
void frmScouts::setFieldsEnabled(bool enabled)
{
    for (QWidget* field : std::initializer_list<QWidget*>{
             ui->comDen, ui->txtFirst, ui->txtLast, ui->txtMi, ui->txtAddress, ui->txtPhone, ui->txtCity, ui->txtState,
             ui->txtZip, ui->txtDOB, ui->txtParent1, ui->txtParent2, ui->comActive, ui->txtPackStartDate,
             ui->comWasTiger, ui->txtYearsInOtherPack, ui->txtYearsInScouts, ui->txtSchool, ui->txtScoutNote})
        field->setEnabled(enabled);
    endRoutine();
}

// ---- Events

void frmScouts::setDefaults()
{
    m_awardPage->cut();
    ui->txtPackStartDate->setText(platform::shortDate(platform::today()));
    ui->comActive->setText(Yes);
    ui->comWasTiger->setText(No);
}

// A new scout starts in the filter's den.
void frmScouts::finishNew()
{
    if (!filters().namesDen()) {
        mDenSID = -1;
        return;
    }
    const QString den = ui->cmbSelectedDens->text();
    ui->comDen->setText(den);
    if (const int row = ui->cmbSelectedDens->listIndex(); row >= 0)
        ui->comDen->setListIndex(row);
    mDenSID = GetDenSID(den);
}

void frmScouts::DeleteAwardsOfScout()
{
    database().execute(QStringLiteral("Delete From Assigned_Awards_Scouts Where Scout_SID = %1").arg(GetScoutSID()));
    endRoutine();
}

void frmScouts::comDen_Change()
{
    mDenSID = GetDenSID(ui->comDen->text());
    ui->cmdSave->setEnabled(true);
}

// ---- List, filters, find

// A find covers the current view and den. Under "All" its text ends with a surplus " and ".
QString frmScouts::findStatement() const
{
    QString criteria = m_names.text();
    if (!criteria.isEmpty())
        criteria.prepend(QStringLiteral(" Where "));
    return QStringLiteral("Select * From Scouts") + filter().BuildViewCriteria(criteria) + filter().BuildOrderClause();
}

QString frmScouts::denCriterion(std::int16_t den) const
{
    return QStringLiteral(" Assigned_Den_SID = ") + QString::number(den);
}

std::int16_t frmScouts::GetDenSID(const QString& denName) const
{
    const std::int16_t den = m_dens.keyOf(*ui->comDen, denName);
    endRoutine();
    return den;
}

// The filter is rebuilt only if both lists are out of date; rows are counted before comDen is emptied. comDen's text
// isn't restored: mDenSID keeps its value.
void frmScouts::LoadDenLists()
{
    const int filterRows = std::max(0, ui->cmbSelectedDens->listCount() - 1); // less "<All>"
    const int denRows = ui->comDen->listCount();
    if (readDens()) {
        const int dens = static_cast<int>(m_dens.texts.size());
        ui->comDen->removeAll();
        for (const QString& den : std::as_const(m_dens.texts))
            ui->comDen->addItem(den);
        if (filterRows != dens && denRows != dens)
            filters().setDens(m_dens.texts);
    }
    endRoutine();
}

void frmScouts::showFindDialog()
{
    widgets::Instance<dlgFindScout>::showWaiting();
}

void frmScouts::SetFindData(const QString& first, const QString& last, const QString& initial)
{
    m_names = {first, last, initial};
}

QString frmScouts::listMiddle(const QString& initial) const
{
    return initial.isEmpty() ? QStringLiteral(" ") : u' ' + initial + QStringLiteral(". ");
}

// ---- Parents

void frmScouts::bindParents()
{
    const DenLeaderBox::Owner owner{
        [this](bool enable) { ui->cmdSave->setEnabled(enable); }, [this] { return !ui->comDen->text().isEmpty(); },
        [this] { return PickDenLeader(); }, [this] { m_parent2Leader->link(mPickedAdultSID); }}; // for either box
    m_parent1Leader = new DenLeaderBox(ui->chkP1DenLeader, owner);
    m_parent2Leader = new DenLeaderBox(ui->chkP2DenLeader, owner);
}

bool frmScouts::PickDenLeader()
{
    mPickedAdultSID = 0;
    widgets::Instance<dlgSelectAdultLink>::showWaiting();
    return mPickedAdultSID > 0;
}

// ---- Awards

QString frmScouts::personName() const
{
    return u' ' + PeopleForm::personName();
}

QString frmScouts::awardStatement(std::int16_t person) const
{
    return QStringLiteral("Select a.Scout_SID, a.Assigned_SID, b.Insignia_Name, b.Insignia_Type, a.Date_Assigned, "
                          "a.Quantity, a.Insignia_SID  From Assigned_Awards_Scouts a, Insignias b Where b.Insignia_SID "
                          "= a.Insignia_Sid and a.Scout_SID = %1 Order by Date_Assigned ")
        .arg(person);
}

// The newest award ends up as the current row, for cmdEditAward and cmdDeleteAward.
void frmScouts::fillAwardRow(widgets::TextGrid& grid, int row, const store::Recordset& award)
{
    grid.setRow(row);
    grid.setText(row, Assigned, award[u"Date_Assigned"].textOrEmpty());
    const store::Value quantity = award[u"Quantity"];
    grid.setText(row, Quantity, quantity.isNull() ? QStringLiteral("1") : quantity.toText().trimmed());
    grid.setText(row, Award, awardText(award));
    grid.setText(row, AssignedSID, award[u"Assigned_SID"].toText());
    grid.setText(row, InsigniaSID, award[u"Insignia_SID"].toText());
}

// The row's Year and Month keep the former date's values.
void frmScouts::cmdEditAward_Click()
{
    const auto& grid = *ui->fgScoutsAwards;
    const int row = grid.row();
    if (const QString key = grid.text(row, AssignedSID); !key.isEmpty()) {
        gEditSaved = false;
        gEditAssignedSID = platform::toInt32(platform::val(key));
        gEditDate = grid.text(row, Assigned);
        gEditQuantity = platform::toInt16(platform::val(grid.text(row, Quantity)));
        gEditAwardText = grid.text(row, Award);
        gEditInsigniaSID = platform::toInt16(platform::val(grid.text(row, InsigniaSID)));
        widgets::Instance<frmEditAssignedAward>::showWaiting();
        if (gEditSaved) {
            database().execute(QStringLiteral("Update Assigned_Awards_Scouts Set Quantity = %1, Insignia_Sid = %2, "
                                              "Date_Assigned = #%3#  Where Assigned_SID = %4")
                                   .arg(QString::number(gEditQuantity), QString::number(gEditInsigniaSID), gEditDate,
                                        QString::number(gEditAssignedSID)));
            ReloadAwardGrid();
        }
    }
}

void frmScouts::cmdDeleteAward_Click()
{
    const auto& grid = *ui->fgScoutsAwards;
    if (const QString key = grid.text(grid.row(), AssignedSID); !key.isEmpty()) {
        database().execute(QStringLiteral("Delete From Assigned_Awards_Scouts Where Assigned_SID = %1").arg(key));
        ReloadAwardGrid();
    }
}

} // namespace orlo
