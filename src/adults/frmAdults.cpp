#include "adults/frmAdults.h"

#include "adults/dlgAddDenLeaderAsign.h"
#include "adults/dlgAddDenLeaderAsignEdit.h"
#include "adults/dlgFindAdult.h"
#include "awards/frmAddAdultAwards.h"
#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "shell/forms/EmptyLists.h"
#include "shell/forms/Module1.h"
#include "shell/forms/Reading.h"
#include "shell/forms/dlgCalendar.h"
#include "store/engine/Value.h"
#include "ui_frmAdults.h"
#include "widgets/DataControl.h"
#include "widgets/MessageBox.h"
#include "widgets/TextBox.h"

#include <algorithm>
#include <memory>

namespace orlo
{

namespace
{

const QString Active = QStringLiteral("Y");
const QString NoDen = QStringLiteral("N/A");

enum PositionColumn { Title, DenNumber, DenLevel, DenSID, LeaderSID, PackKey };

// The positions' columns if there is no layout file.
widgets::GridLayout positionLayout()
{
    const auto column = [](const char* caption, const char* field, int width, bool hidden = false) {
        return widgets::GridColumn{QString::fromLatin1(caption), QString::fromLatin1(field), width, Qt::AlignLeft,
                                   hidden};
    };
    widgets::GridLayout layout{{column("Pack or Den Title", "Position_Title", 3600), column("Den #", "Den_Number", 900),
                                column("Den Level", "Den_Type", 1900), column("Den SID", "Den_SID", 900, true),
                                column("Leader SID", "Leader_SID", 900, true),
                                column("PackAssignedSID", "Leader_Pack_Assn", 900, true)}};
    layout.columns[DenNumber].alignment = Qt::AlignHCenter;
    return layout;
}

enum AwardColumn { Fixed, Assigned, Award, InsigniaSID, AwardColumns };
constexpr int AwardWidth = 4000; // twips

// Adults without a name can't be shown.
RecordField nameField(QStringView name, QLineEdit* box)
{
    return boxField(name, box, &store::Value::toText, [box] { return store::Value(box->text()); });
}

// A value that isn't in the list clears the box, and is kept until something is chosen.
RecordField activeField(QStringView name, widgets::ComboBox* list)
{
    const auto stored = std::make_shared<store::Value>();
    const auto show = [list, stored](const store::Value& value) {
        *stored = value;
        list->setListIndex(list->findText(value.isEmpty() ? Active : value.toText(), Qt::MatchFixedString));
    };
    RecordField field = letterField(name, list);
    field.show = show;
    field.value = [list, stored] { return list->listIndex() < 0 ? *stored : store::Value(list->text()); };
    return field;
}

// Runs a routine whose failure doesn't end the program: the failure is shown, and the screen stays as it is.
template <class Routine>
void trapped(const Routine& routine)
{
    try {
        routine();
    } catch (const platform::RuntimeError& error) {
        platform::pendingError::set(error);
    }
    TestPendingError();
}

} // namespace

frmAdults::frmAdults()
    : PeopleForm({.noun = QStringLiteral("Adult"),
                  .nothingFound = QStringLiteral("No data found for the selected search cryteria"),
                  .noDens = QStringLiteral("There is no Active Den(s) available to select from. Please create or "
                                           "activate Den(s) in the Den From.")}),
      ui(std::make_unique<Ui::frmAdults>()), dataDenAssignments(new widgets::DataControl(this)),
      m_positionLayout(QStringLiteral("\\DenAssign.grd"), positionLayout())
{
    ui->setupUi(this);
    bindControls({.list = ui->lbAdults,
                  .tabs = ui->tabAdult,
                  .awards = ui->fgAdultsAwards,
                  .personName = ui->lblAdultName,
                  .noteName = ui->lblNoteName});
    setCancelButton(ui->cmdDelete);
    bindFields();
    bindPositions();
    ui->fgAdultsAwards->setCols(AwardColumns);
    sayNothingYet(*ui->fgAdultsAwards, QStringLiteral("awards"), *ui->cmdAddAward);
    giveAwardsBy<frmAddAdultAwards>();
}

frmAdults::~frmAdults() = default;

void frmAdults::bindFields()
{
    setFields({
        nameField(u"First_Name", ui->txtFirst),
        nameField(u"Last_Name", ui->txtLast),
        textField(u"MI", ui->txtMi),
        textField(u"Address", ui->txtAddress),
        textField(u"Phone", ui->txtPhone),
        textField(u"City", ui->txtCity),
        textField(u"State", ui->txtState),
        textField(u"Zip_Code", ui->txtZip),
        birthDateField(u"Birth_date", ui->txtDOB),
        textField(u"WorkPhone", ui->txtWorkPhone),
        textField(u"Email", ui->txtEmail),
        textField(u"Note", ui->txtNote),
        activeField(u"Active", ui->comActive),
        dateField(u"Pack_Start_Date", ui->txtPackStartDate),
        numberField(u"Years_In_Other_Pack", ui->txtYearsInOtherPack),
        numberField(u"Years_In_Scouts", ui->txtYearsInScouts),
    });
    for (QLineEdit* date : {ui->txtDOB, ui->txtPackStartDate})
        openCalendarOnDoubleClick(date, [this] { ui->cmdSave->setEnabled(true); });
    setLeaveCheck(ui->txtPackStartDate, [this] { return ValidateDate(ui->txtPackStartDate->text()); });
}

void frmAdults::load()
{
    dataDenAssignments->setDatabase(database);
    applyPositionLayout();
    openSet();
    SetUpAwardGrid({{200, Qt::AlignLeft, QString()},
                    {1500, Qt::AlignCenter, QStringLiteral("Date Assigned")},
                    {AwardWidth, Qt::AlignLeft, QStringLiteral("Award")},
                    {2000, Qt::AlignCenter, QString()}},
                   Award);
    ui->fgAdultsAwards->setFirstKeyColumn(InsigniaSID, AwardWidth);
    if (mRecordCount > 0) {
        LoadAwardRows();
        PopulateDenAssignments();
    }
}

// ---- The record

void frmAdults::FillRecord()
{
    const Reading reading(database());
    showFields();
    mCurrentSID = GetAdultSID();
    ui->cmdSave->setEnabled(false);
    ReloadAwardGrid();
    ShowRecordInfo();
}

void frmAdults::ClearRecord()
{
    for (const RecordField& field : fields())
        if (field.control != ui->txtNote)
            field.clear();
    PopulateDenAssignments();
    m_awardPage->cut();
    ui->lblAdultName->clear();
    ui->txtNote->clear();
}

// Nothing is checked here: the table refuses what it can't hold.
void frmAdults::SaveRecord()
{
    auto& record = *rsRecords;
    if (!mNewRecord)
        record.edit();
    markMissingBirthDate(*ui->txtDOB);
    writeFields();
    // A value left by an older version disappears with the first save.
    record.setValue(u"Assigned_Den_SID", mAssignedDen >= 1 ? store::Value(int{mAssignedDen}) : store::Value());
    if (mNewRecord)
        record.setValue(u"Adult_SID", int{mCurrentSID});
    record.update();
    finishSaveRecord();
}

void frmAdults::setDefaults()
{
    ui->txtPackStartDate->setText(platform::shortDate(platform::today()));
    ui->comActive->setText(Active);
}

void frmAdults::deleteAwards()
{
    database().execute(QStringLiteral("Delete From Assigned_Awards_Adults Where Adult_SID = %1").arg(GetAdultSID()));
}

void frmAdults::setFieldsEnabled(bool enabled)
{
    for (const RecordField& field : fields())
        field.control->setEnabled(enabled);
}

// Without an adult, positions and awards are disabled, too.
void frmAdults::DisableFields()
{
    setFieldsEnabled(false);
    ui->tabAdult->setCurrentIndex(0);
    ui->tabAdult->setEnabled(false);
}

// ---- List, filters, find

void frmAdults::openSet()
{
    trapped([this] { PeopleForm::openSet(); });
}

void frmAdults::PopulateNavLB()
{
    trapped([this] { PeopleForm::PopulateNavLB(); });
}

// The first fill leaves "<All>" unchanged: restoring the text would open the set again.
void frmAdults::LoadDenLists()
{
    trapped([this] {
        widgets::ComboBox& filter = *ui->cmbSelectedDens;
        const int rows = filter.listCount();
        if (!readDens() || rows - 1 == static_cast<int>(m_dens.texts.size())) // less "<All>"
            return;
        if (rows > 0 || filters().namesDen() || filter.text().isEmpty()) {
            filters().setDens(m_dens.texts);
            return;
        }
        for (const QString& den : std::as_const(m_dens.texts))
            filter.addItem(den);
        filter.addItem(filter.text());
    });
}

// Decided by positions: a leader of two dens is listed under both, a person with only a pack position under none.
QString frmAdults::denCriterion(std::int16_t den) const
{
    return QStringLiteral(" Adult_SID In (Select Leader_Den_Assignments.Adult_SID  From Leader_Den_Assignments  Where "
                          "Leader_Den_Assignments.Den_SID = %1 ) ")
        .arg(den);
}

// A find covers all adults, whatever the filters show, and knows a den only as older versions stored it.
QString frmAdults::findStatement() const
{
    QString criteria = m_names.text();
    if (mFindDen > -1)
        criteria +=
            (criteria.isEmpty() ? QStringLiteral(" Assigned_Den_SID = ") : QStringLiteral(" and Assigned_Den_SID = ")) +
            QString::number(mFindDen);
    if (!criteria.isEmpty())
        criteria.prepend(QStringLiteral(" Where "));
    return QStringLiteral("Select * From Adults") + criteria + QStringLiteral(" Order by Last_Name, First_Name, MI");
}

std::int16_t frmAdults::GetDenSID(const QString& denName) const
{
    return m_dens.keyOf(*ui->cmbSelectedDens, denName);
}

void frmAdults::showFindDialog()
{
    widgets::Instance<dlgFindAdult>::showWaiting();
}

void frmAdults::SetFindData(const QString& first, const QString& last, const QString& initial, std::int16_t den)
{
    m_names = {first, last, initial};
    mFindDen = den;
}

// ---- Positions

void frmAdults::bindPositions()
{
    dataDenAssignments->setObjectName(QStringLiteral("dataDenAssignments"));
    ui->dbgDenAssignment->setDataControl(dataDenAssignments);
    ui->dbgDenAssignment->setStretchColumn(Title);
    sayNothingYet(*ui->dbgDenAssignment, QStringLiteral("positions"), *ui->cmdAddDenAssn);
    connect(ui->cmdAddDenAssn, &QPushButton::clicked, this, &frmAdults::cmdAddDenAssn_Click);
    connect(ui->cmdEditDenAssn, &QPushButton::clicked, this, &frmAdults::cmdEditDenAssn_Click);
    widgets::pressOncePerDoubleClick(*ui->cmdDelDenAssn);
    connect(ui->cmdDelDenAssn, &QPushButton::clicked, this, &frmAdults::cmdDelDenAssn_Click);
}

void frmAdults::applyPositionLayout()
{
    ui->dbgDenAssignment->applyLayout(m_positionLayout.read(gAppPath));
}

// Identifies an adult's positions, by row: the den's key, or that of the pack position.
QStringList frmAdults::positionKeys() const
{
    QStringList keys;
    const auto& grid = *ui->dbgDenAssignment;
    for (int row = 0; row < grid.recordCount(); ++row)
        keys += grid.cellText(row, DenSID) + u'/' + grid.cellText(row, PackKey);
    return keys;
}

// The position that was edited stays selected; one that was added or moved to another den becomes the selected one.
void frmAdults::PopulateDenAssignments()
{
    auto& grid = *ui->dbgDenAssignment;
    const bool sameAdult = std::exchange(m_positionsOf, mCurrentSID) == mCurrentSID;
    const QStringList before = sameAdult ? positionKeys() : QStringList();
    const int row = grid.row();
    grid.setUpdatesEnabled(false);
    dataDenAssignments->setRecordSource(
        QStringLiteral("Select * From Leader_Assignments  Where Leader_SID = %1").arg(mCurrentSID));
    dataDenAssignments->refresh();
    applyPositionLayout();
    grid.setUpdatesEnabled(true);
    if (!sameAdult)
        return;
    const QStringList after = positionKeys();
    const auto added = std::ranges::find_if(after, [&](const QString& key) { return !before.contains(key); });
    const auto kept = added != after.end() ? added : std::ranges::find(after, before.value(row));
    grid.setRow(kept != after.end() ? static_cast<int>(kept - after.begin()) : row);
}

std::int16_t frmAdults::GetDenText(QString& denText, QString& title, QString& packKey) const
{
    const auto& grid = *ui->dbgDenAssignment;
    denText = grid.columnText(DenLevel) + QStringLiteral(" Den ") + grid.columnText(DenNumber);
    title = grid.columnText(Title);
    packKey = grid.columnText(PackKey);
    return platform::toInt16(platform::val(grid.columnText(DenSID)));
}

// A position needs a stored adult. If the filters exclude the only adult, just saved, the form is empty and there is
// nobody to give a position to.
void frmAdults::cmdAddDenAssn_Click()
{
    SaveRecord();
    focusFirstField();
    ui->cmdSave->setEnabled(false);
    if (mRecordCount == 0)
        return;
    enableRecordButtons();
    widgets::Instance<dlgAddDenLeaderAsign>::showWaiting();
}

void frmAdults::cmdEditDenAssn_Click()
{
    if (ui->dbgDenAssignment->recordCount() > 0)
        widgets::Instance<dlgAddDenLeaderAsignEdit>::showWaiting();
}

void frmAdults::cmdDelDenAssn_Click()
{
    const auto& grid = *ui->dbgDenAssignment;
    const QString number = grid.columnText(DenNumber);
    const QString place = number == NoDen ? QStringLiteral(" Pack position")
                                          : QStringLiteral(" position in ") + grid.columnText(DenLevel) +
                                                QStringLiteral(" Den ") + number;
    if (widgets::ask(QStringLiteral("Are you sure you want to delete the ") + grid.columnText(Title) + place,
                     QStringLiteral("Delete Assigned Position"), widgets::Preset::No))
        deletePosition();
}

// A den's leader without a title is removed on the den's screen.
void frmAdults::deletePosition()
{
    const auto& grid = *ui->dbgDenAssignment;
    if (grid.columnText(Title).isEmpty())
        return;
    if (const QString den = grid.columnText(DenSID); platform::val(den) > 0)
        database().execute(QStringLiteral("Delete From Leader_Den_Assignments  where Adult_SID = %1 and Den_SID = %2")
                               .arg(QString::number(mCurrentSID), den));
    else
        database().execute(
            QStringLiteral("Delete From Leader_Pack_Assn Where Leader_Pack_Assn = %1").arg(grid.columnText(PackKey)));
    PopulateDenAssignments();
}

// ---- Awards

QString frmAdults::awardStatement(std::int16_t person) const
{
    return QStringLiteral("Select a.Adult_SID, a.Insignia_SID, b.Insignia_Name, b.Insignia_Type, a.Date_Assigned From "
                          "Assigned_Awards_Adults a, Insignias b Where b.Insignia_SID = a.Insignia_Sid and a.Adult_SID "
                          "= %1 Order by Date_Assigned ")
        .arg(person);
}

void frmAdults::fillAwardRow(widgets::TextGrid& grid, int row, const store::Recordset& award)
{
    grid.setText(row, Assigned, award[u"Date_Assigned"].textOrEmpty());
    grid.setText(row, Award, awardText(award));
    grid.setText(row, InsigniaSID, award[u"Insignia_SID"].toText());
}

// The rows have no key: the same award given twice on one day is deleted twice.
void frmAdults::cmdDeleteAward_Click()
{
    const auto& grid = *ui->fgAdultsAwards;
    const QString award = grid.text(grid.row(), InsigniaSID);
    if (award.isEmpty())
        return;
    const QString date = platform::shortDate(platform::toDate(grid.text(grid.row(), Assigned)));
    database().execute(QStringLiteral("Delete From Assigned_Awards_Adults Where Adult_SID = %1 and Insignia_SID = %2 "
                                      "and Date_Assigned = #%3#")
                           .arg(QString::number(GetAdultSID()), award, date));
    ReloadAwardGrid();
}

} // namespace orlo
