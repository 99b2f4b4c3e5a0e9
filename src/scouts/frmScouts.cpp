#include "scouts/frmScouts.h"

#include "awards/frmAddAwardsToScout.h"
#include "awards/frmEditAssignedAward.h"
#include "platform/Conversion.h"
#include "scouts/DenLeaderBox.h"
#include "scouts/dlgFindScout.h"
#include "scouts/dlgSelectAdultLink.h"
#include "shell/Module1.h"
#include "shell/dlgCalendar.h"
#include "ui_frmScouts.h"
#include "widgets/MessageBox.h"

namespace orlo
{

namespace
{

const QString Yes = QStringLiteral("Yes");
const QString No = QStringLiteral("No");
const QString MissingDate = QStringLiteral("01/01/1001");

enum AwardColumn { Fixed, Assigned, Quantity, Award, AssignedSID, InsigniaSID };

QString yesNo(const store::Value& value)
{
    return value == store::Value(u"Y") || value == store::Value(true) ? Yes : No;
}

QString letter(const widgets::ComboBox* box)
{
    return box->text() == Yes ? QStringLiteral("Y") : QStringLiteral("N");
}

} // namespace

frmScouts::frmScouts()
    : PeopleForm({QStringLiteral("Scout"), QStringLiteral("Scouts"), QStringLiteral("Scout_SID")}),
      ui(std::make_unique<Ui::frmScouts>())
{
    ui->setupUi(this);
    bindControls({*ui, ui->txtFirst});
    bindList({ui->lbScouts, ui->tabScout, ui->cmdFind, ui->cmdAddAward, ui->cmdDeleteAward});
    bindFilters(FilterControls(*ui));
    setDefaultButton(ui->cmdSave);
    setCancelButton(ui->cmdCancel);
    bindFields();
    bindParents();
    ui->fgScoutsAwards->setCols(InsigniaSID + 1);
    connect(ui->cmdAddAward, &QPushButton::clicked, this,
            [] { widgets::Instance<frmAddAwardsToScout>::showWaiting(); });
    connect(ui->cmdEditAward, &QPushButton::clicked, this, &frmScouts::cmdEditAward_Click);
    connect(ui->cmdDeleteAward, &QPushButton::clicked, this, &frmScouts::cmdDeleteAward_Click);
}

frmScouts::~frmScouts() = default;

void frmScouts::bindFields()
{
    m_texts = {
        {ui->txtFirst, u"First_Name"},
        {ui->txtLast, u"Last_Name"},
        {ui->txtMi, u"MI"},
        {ui->txtAddress, u"Address"},
        {ui->txtPhone, u"Phone"},
        {ui->txtCity, u"City"},
        {ui->txtState, u"State"},
        {ui->txtZip, u"Zip_Code"},
        {ui->txtParent1, u"Parent_Name1"},
        {ui->txtParent2, u"Parent_Name2"},
        {ui->txtSchool, u"School"},
        {ui->txtBSANum, u"BSA_Number"},
        {ui->txtEmail, u"Scouts_Email"},
        {ui->txtAltAddress, u"Alt_Parent_Address"},
        {ui->txtAltCity, u"Alt_Parent_City"},
        {ui->txtAltState, u"Alt_Parent_State"},
        {ui->txtAltZip, u"Alt_Parent_Zip"},
        {ui->txtParent1Email, u"Parent1_Email"},
        {ui->txtParent1HPhone, u"Parent1_Home_Phone"},
        {ui->txtParent1WPhone, u"Parent1_Work_Phone"},
        {ui->txtParent2Email, u"Parent2_Email"},
        {ui->txtParent2HPhone, u"Parent2_Home_Phone"},
        {ui->txtParent2WPhone, u"Parent2_Work_Phone"},
    };
    // An edit of the e-mail address alone counts as no change.
    for (const TextField& text : m_texts)
        if (text.box != ui->txtEmail)
            enableSaveOnChange({text.box});
    enableSaveOnChange({ui->txtDOB, ui->txtPackStartDate, ui->txtGrade, ui->txtYearsInOtherPack, ui->txtYearsInScouts,
                        ui->txtScoutNote, ui->comActive, ui->comWasTiger, ui->cmbBoysLife, ui->chkP1IncludeCorr,
                        ui->chkP2IncludeCorr, ui->optP1UseScoutAdd, ui->optParent1UseAltAdd, ui->optP2UseScoutAdd,
                        ui->optParent2UseAltAdd});
    for (QLineEdit* date : {ui->txtDOB, ui->txtPackStartDate})
        openCalendarOnDoubleClick(date, [this] { ui->cmdSave->setEnabled(true); });
    connect(ui->comDen, &widgets::ComboBox::textChange, this, &frmScouts::comDen_Change);
    connect(ui->comDen, &widgets::ComboBox::clicked, this, &frmScouts::comDen_Change);
    connect(ui->comDen, &widgets::ComboBox::dropDown, this, &frmScouts::LoadDenLists);
}

void frmScouts::load()
{
    openSet();
    SetUpAwardGrid();
    if (mRecordCount > 0)
        LoadAwardRows();
    TestPendingError();
}

std::int16_t frmScouts::GetScoutSID() const
{
    return rsRecords->value(u"Scout_SID").toInt16();
}

// ---- The record

void frmScouts::FillRecord()
{
    const auto& record = *rsRecords;
    for (const TextField& text : m_texts)
        text.box->setText(record[text.field].textOrEmpty());
    ui->txtDOB->setText(birthDateText(u"Birth_Date"));
    ui->comActive->setText(yesNo(record[u"Active"]));
    ui->txtPackStartDate->setText(record[u"Pack_Start_Date"].textOrEmpty());
    ui->comWasTiger->setText(yesNo(record[u"Tigar"]));
    ui->txtYearsInOtherPack->setText(record[u"Years_In_Other_Pack"].textOrEmpty());
    ui->txtYearsInScouts->setText(record[u"Years_In_Scouts"].textOrEmpty());
    const auto truth = [&record](QStringView field) { return record[field] == store::Value(true); };
    (truth(u"Parent1_Use_Scout_Add") ? ui->optP1UseScoutAdd : ui->optParent1UseAltAdd)->setChecked(true);
    ui->chkP1IncludeCorr->setChecked(truth(u"Parent1_Correspondance"));
    (truth(u"Parent2_Use_Scout_Add") ? ui->optP2UseScoutAdd : ui->optParent2UseAltAdd)->setChecked(true);
    ui->chkP2IncludeCorr->setChecked(truth(u"Parent2_Correspondance"));
    ui->txtGrade->setText(record[u"Grade_In_School"].textOrEmpty());
    ui->cmbBoysLife->setText(yesNo(record[u"Boys_Life"]));
    fillLink(u"Parent1_Den_Leader_SID", mParent1LeaderSID, ui->chkP1DenLeader);
    fillLink(u"Parent2_Den_Leader_SID", mParent2LeaderSID, ui->chkP2DenLeader);
    if (const store::Value den = record[u"Assigned_Den_SID"]; !den.isNull() && den.toInt16() > 0) {
        mDenSID = den.toInt16();
        ui->comDen->setText(GetDenName(mDenSID)); // a change of the text looks mDenSID up once more
    } else {
        ui->comDen->setText(QString());
        mDenSID = 0;
    }
    ui->txtScoutNote->setPlainText(record[u"Note"].textOrEmpty());
    mCurrentSID = GetScoutSID();
    ui->cmdSave->setEnabled(false);
    ShowRecordInfo();
    ReloadAwardGrid();
    TestPendingError();
}

// The grade, the den leader boxes and their links stay: a new record begins with those that were on screen.
void frmScouts::ClearRecord()
{
    ui->comDen->setText(QStringLiteral(" "));
    for (const TextField& text : m_texts)
        text.box->clear();
    for (QLineEdit* box : {ui->txtDOB, ui->txtPackStartDate, ui->txtYearsInOtherPack, ui->txtYearsInScouts})
        box->clear();
    ui->txtScoutNote->clear();
    ui->optP1UseScoutAdd->setChecked(true);
    ui->optP2UseScoutAdd->setChecked(true);
    ui->chkP1IncludeCorr->setChecked(true);
    ui->chkP2IncludeCorr->setChecked(false);
    ui->cmbBoysLife->setText(No);
    TestPendingError();
}

void frmScouts::SaveRecord()
{
    auto& record = *rsRecords;
    if (!mNewRecord)
        record.edit();
    if (ui->txtDOB->text().isEmpty())
        ui->txtDOB->setText(MissingDate);
    for (const TextField& text : m_texts)
        record.setValue(text.field, text.box->text());
    record.setValue(u"Birth_Date", dateText(ui->txtDOB->text()));
    record.setValue(u"Note", ui->txtScoutNote->toPlainText());
    record.setValue(u"Active", letter(ui->comActive));
    const QString started = ui->txtPackStartDate->text();
    record.setValue(u"Pack_Start_Date", started.isEmpty() ? store::Value() : store::Value(dateText(started)));
    record.setValue(u"Tigar", letter(ui->comWasTiger));
    record.setValue(u"Years_In_Other_Pack", platform::val(ui->txtYearsInOtherPack->text()));
    record.setValue(u"Years_In_Scouts", platform::val(ui->txtYearsInScouts->text()));
    record.setValue(u"Parent1_Use_Scout_Add", ui->optP1UseScoutAdd->isChecked());
    record.setValue(u"Parent1_Correspondance", ui->chkP1IncludeCorr->isChecked());
    record.setValue(u"Parent2_Use_Scout_Add", ui->optP2UseScoutAdd->isChecked());
    record.setValue(u"Parent2_Correspondance", ui->chkP1IncludeCorr->isChecked()); // the first parent's box, for both
    record.setValue(u"Grade_In_School", platform::val(ui->txtGrade->text()));
    record.setValue(u"Boys_Life", ui->cmbBoysLife->text() == Yes);
    const auto link = [](const QAbstractButton* box, std::int16_t sid) {
        return box->isChecked() ? store::Value(int{sid}) : store::Value();
    };
    record.setValue(u"Parent1_Den_Leader_SID", link(ui->chkP1DenLeader, mParent1LeaderSID));
    record.setValue(u"Parent2_Den_Leader_SID", link(ui->chkP2DenLeader, mParent2LeaderSID));
    record.setValue(u"Assigned_Den_SID", mDenSID >= 1 ? store::Value(int{mDenSID}) : store::Value());
    if (mNewRecord)
        record.setValue(u"Scout_SID", int{mCurrentSID});
    record.update();
    finishSaveRecord();
    TestPendingError();
}

void frmScouts::SetNavButtons()
{
    PeopleForm::SetNavButtons();
    TestPendingError();
}

void frmScouts::EnableFields()
{
    setFieldsEnabled(true);
}

void frmScouts::DisableFields()
{
    setFieldsEnabled(false);
}

// The others are out of reach with the tab control.
void frmScouts::setFieldsEnabled(bool enabled)
{
    for (QWidget* field : std::initializer_list<QWidget*>{
             ui->comDen, ui->txtFirst, ui->txtLast, ui->txtMi, ui->txtAddress, ui->txtPhone, ui->txtCity, ui->txtState,
             ui->txtZip, ui->txtDOB, ui->txtParent1, ui->txtParent2, ui->comActive, ui->txtPackStartDate,
             ui->comWasTiger, ui->txtYearsInOtherPack, ui->txtYearsInScouts, ui->txtSchool, ui->txtScoutNote})
        field->setEnabled(enabled);
    TestPendingError();
}

// ---- Events

void frmScouts::cmdFirst_Click()
{
    PeopleForm::cmdFirst_Click();
    TestPendingError();
}

void frmScouts::cmdPrevious_Click()
{
    PeopleForm::cmdPrevious_Click();
    TestPendingError();
}

void frmScouts::cmdNext_Click()
{
    PeopleForm::cmdNext_Click();
    ReloadAwardGrid();
    TestPendingError();
}

void frmScouts::cmdLast_Click()
{
    PeopleForm::cmdLast_Click();
    ReloadAwardGrid();
    TestPendingError();
}

void frmScouts::cmdNew_Click()
{
    PeopleForm::cmdNew_Click();
    TestPendingError();
}

void frmScouts::setDefaults()
{
    cutGrid(*ui->fgScoutsAwards);
    ui->txtPackStartDate->setText(platform::shortDate(platform::today()));
    ui->comActive->setText(Yes);
    ui->comWasTiger->setText(No);
}

// A new scout begins in the den that the filter names.
void frmScouts::finishNew()
{
    if (!filtersByDen()) {
        mDenSID = -1;
        return;
    }
    const QString den = ui->cmbSelectedDens->text();
    ui->comDen->setText(den);
    mDenSID = GetDenSID(den);
}

void frmScouts::cmdDelete_Click()
{
    PeopleForm::cmdDelete_Click();
    TestPendingError();
}

bool frmScouts::confirmDelete()
{
    return widgets::ask(
        QStringLiteral("ARE YOU SURE YOU WANT TO DELETE THE CURRENT SCOUT RECORD and all of the Scout's Award Records? "
                       "The alternitive is to set the scout to inactive. This will retain all the Scout's data in the "
                       "program, but disable the Scout from showing up on reports."),
        QStringLiteral("Delete Scout"));
}

void frmScouts::deleteAwards()
{
    database().execute(QStringLiteral("Delete From Assigned_Awards_Scouts Where Scout_SID = %1").arg(GetScoutSID()));
    TestPendingError();
}

void frmScouts::comDen_Change()
{
    mDenSID = GetDenSID(ui->comDen->text());
    ui->cmdSave->setEnabled(true);
}

// ---- List, filters, find

void frmScouts::openSet()
{
    PeopleForm::openSet();
    TestPendingError();
}

void frmScouts::PopulateNavLB()
{
    PeopleForm::PopulateNavLB();
    TestPendingError();
}

QString frmScouts::setStatement() const
{
    return QStringLiteral("Select * From Scouts ") + BuildViewCriteria(QString()) + BuildOrderClause();
}

// A find acts inside the view and den in force. Under "All" its text ends in an " and " too many.
QString frmScouts::findStatement() const
{
    QString criteria = nameCriteria();
    if (!criteria.isEmpty())
        criteria.prepend(QStringLiteral(" Where "));
    return QStringLiteral("Select * From Scouts") + BuildViewCriteria(criteria) + BuildOrderClause();
}

QString frmScouts::BuildViewCriteria(const QString& start) const
{
    const bool fresh = start.isEmpty();
    QString criteria = fresh ? QStringLiteral("Where ") : start + QStringLiteral(" and ");
    if (ui->optActive->isChecked())
        criteria += QStringLiteral(" Active = 'Y' ");
    else if (ui->optInactive->isChecked())
        criteria += QStringLiteral(" Active = 'N' ");
    else if (fresh)
        criteria.clear();
    if (filtersByDen()) {
        criteria += criteria.isEmpty() ? QStringLiteral("Where ") : QStringLiteral(" And ");
        criteria += QStringLiteral(" Assigned_Den_SID = ") + QString::number(GetDenSID(ui->cmbSelectedDens->text()));
    }
    return criteria;
}

std::int16_t frmScouts::GetDenSID(const QString& denName) const
{
    std::int16_t sid = -1;
    for (int row = 0; !denName.isEmpty() && row < ui->comDen->listCount(); ++row)
        if (ui->comDen->list(row) == denName) {
            sid = mDenSIDs[static_cast<std::size_t>(row)];
            break;
        }
    TestPendingError();
    return sid;
}

QString frmScouts::GetDenName(std::int16_t denSID) const
{
    const auto den = database().openRecordset(
        QStringLiteral("Select Den_Number, Den_Type, Den_SID From Dens Where Den_SID = %1").arg(denSID));
    const QString name = den.recordCount() > 0 ? denText(den) : QString();
    TestPendingError();
    return name;
}

// The filter is rebuilt only where both lists are short. comDen gets no text back: mDenSID keeps its value.
void frmScouts::LoadDenLists()
{
    const int filterRows = std::max(0, ui->cmbSelectedDens->listCount() - 1);
    const int denRows = ui->comDen->listCount();
    if (!readDens())
        return;
    const int dens = static_cast<int>(mDenSIDs.size());
    ui->comDen->clear();
    for (const QString& den : std::as_const(m_denTexts))
        ui->comDen->addItem(den);
    if (filterRows != dens && denRows != dens)
        rebuildDenFilter();
}

void frmScouts::showFindDialog()
{
    widgets::Instance<dlgFindScout>::showWaiting();
}

void frmScouts::SetFindData(const QString& first, const QString& last, const QString& initial)
{
    SetFindNames(first, last, initial);
}

QString frmScouts::nothingFoundText() const
{
    return QStringLiteral("No data found for the selected search criteria");
}

QString frmScouts::noDensText() const
{
    return QStringLiteral("There is no Active Den(s) available to select from. Please create or activate a Den in the "
                          "Den From.");
}

QString frmScouts::middlePart(const QString& initial) const
{
    return initial.isEmpty() ? QStringLiteral(" ") : u' ' + initial + QStringLiteral(". ");
}

// ---- Parents

void frmScouts::bindParents()
{
    const auto owner = [this] {
        return DenLeaderBox::Owner{[this](bool enable) { ui->cmdSave->setEnabled(enable); },
                                   [this] { return !ui->comDen->text().isEmpty(); }, [this] { return PickDenLeader(); },
                                   [this] { mParent2LeaderSID = mPickedAdultSID; }}; // whichever box picked
    };
    new DenLeaderBox(ui->chkP1DenLeader, mParent1LeaderSID, owner());
    new DenLeaderBox(ui->chkP2DenLeader, mParent2LeaderSID, owner());
}

bool frmScouts::PickDenLeader()
{
    mPickedAdultSID = 0;
    widgets::Instance<dlgSelectAdultLink>::showWaiting();
    return mPickedAdultSID > 0;
}

// No link is a 1, which a save writes only when the user checks the box without a pick.
void frmScouts::fillLink(QStringView field, std::int16_t& sid, QAbstractButton* box)
{
    const store::Value link = rsRecords->value(field);
    sid = link.isNull() ? std::int16_t{1} : link.toInt16();
    box->setChecked(!link.isNull());
}

// ---- Awards

void frmScouts::SetUpAwardGrid()
{
    if (mRecordCount > 0)
        showScoutName();
    auto& grid = *ui->fgScoutsAwards;
    grid.setRowHeight(0, 250);
    grid.setColWidth(Fixed, 200);
    grid.setColWidth(Assigned, 1000);
    grid.setColWidth(Quantity, 500);
    grid.setColWidth(Award, 4000);
    grid.setColWidth(AssignedSID, 0); // the keys are the program's business
    grid.setColWidth(InsigniaSID, 0);
    grid.setStretchColumn(Award);
    grid.setColAlignment(Assigned, Qt::AlignCenter);
    grid.setColAlignment(Quantity, Qt::AlignCenter);
    cutGrid(grid);
    grid.setText(0, Assigned, QStringLiteral("Assigned"));
    grid.setText(0, Quantity, QStringLiteral("Qty"));
    grid.setText(0, Award, QStringLiteral("Award"));
    TestPendingError();
}

void frmScouts::ReloadAwardGrid()
{
    cutGrid(*ui->fgScoutsAwards);
    showScoutName();
    LoadAwardRows();
    TestPendingError();
}

void frmScouts::showScoutName()
{
    const auto text = [this](QStringView field) { return rsRecords->value(field).textOrEmpty(); };
    ui->lblScoutName->setText(u' ' + rightTrimmed(text(u"First_Name") + u' ' + text(u"MI")) + u' ' +
                              rightTrimmed(text(u"Last_Name")));
}

// The newest award ends as the current row, for cmdEditAward and cmdDeleteAward.
void frmScouts::LoadAwardRows()
{
    rsAwards = database().openRecordset(
        QStringLiteral("Select a.Scout_SID, a.Assigned_SID, b.Insignia_Name, b.Insignia_Type, a.Date_Assigned, "
                       "a.Quantity, a.Insignia_SID  From Assigned_Awards_Scouts a, Insignias b Where b.Insignia_SID = "
                       "a.Insignia_Sid and a.Scout_SID = %1 Order by Date_Assigned ")
            .arg(GetScoutSID()));
    auto& awards = *rsAwards;
    auto& grid = *ui->fgScoutsAwards;
    grid.setRedraw(false);
    for (; !awards.eof(); awards.moveNext()) {
        const int row = grid.addRow();
        grid.setRow(row);
        grid.setText(row, Assigned, awards[u"Date_Assigned"].textOrEmpty());
        const store::Value quantity = awards[u"Quantity"];
        grid.setText(row, Quantity, quantity.isNull() ? QStringLiteral("1") : quantity.toText().trimmed());
        grid.setText(row, Award,
                     rightTrimmed(awards[u"Insignia_Name"].textOrEmpty()) + u' ' +
                         awards[u"Insignia_Type"].textOrEmpty());
        grid.setText(row, AssignedSID, awards[u"Assigned_SID"].toText());
        grid.setText(row, InsigniaSID, awards[u"Insignia_SID"].toText());
    }
    grid.setRedraw(true);
    grid.fitCol(Assigned);
    TestPendingError();
}

// Year and Month of the row keep the former date's values.
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
                                   .arg(gEditQuantity)
                                   .arg(gEditInsigniaSID)
                                   .arg(gEditDate)
                                   .arg(gEditAssignedSID));
            ReloadAwardGrid();
        }
    }
    TestPendingError();
}

void frmScouts::cmdDeleteAward_Click()
{
    const auto& grid = *ui->fgScoutsAwards;
    if (const QString key = grid.text(grid.row(), AssignedSID); !key.isEmpty()) {
        database().execute(QStringLiteral("Delete From Assigned_Awards_Scouts Where Assigned_SID = %1").arg(key));
        ReloadAwardGrid();
    }
    TestPendingError();
}

} // namespace orlo
