#include "awards/frmAssignInsignias.h"

#include "awards/AwardList.h"
#include "platform/Conversion.h"
#include "shell/forms/DenList.h"
#include "shell/forms/EmptyLists.h"
#include "shell/forms/Module1.h"
#include "shell/forms/dlgCalendar.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "ui_frmAssignInsignias.h"
#include "widgets/EmptyText.h"
#include "widgets/MessageBox.h"

namespace orlo
{

namespace
{

const QString ScoutType = QStringLiteral("Scout");
const QString AdultType = QStringLiteral("Adult");
const QString Marked = QStringLiteral("X");
const QString NoDen = QStringLiteral("NA");

enum Column { Marker, Name, Den, SourceSID, SelectedType = SourceSID, SelectedSID };
enum PersonField { FirstName, LastName, DenNumber, DenType, PersonSID };

// Twips.
constexpr int MarkerWidth = 200;
constexpr int PackNameWidth = 2200;
constexpr int MemberNameWidth = 2750;
constexpr int SourceDenWidth = 450;
constexpr int SelectedHeaderHeight = 500;
constexpr int SourceHeaderHeight = 300;

// Names are matched ignoring case; the two lists spell the link to the den differently.
QString packQuery(const QString& type)
{
    const QString den = type == ScoutType ? QStringLiteral("assigned_Den_SID") : QStringLiteral("Assigned_Den_SID");
    return QStringLiteral("Select First_Name, Last_Name, Den_Number, Den_Type, %1_SID From %1s LEFT JOIN Dens ON "
                          "%1s.%2 = Dens.Den_SID Where %1s.Active = 'Y' "
                          "Order by Last_Name, First_Name, MI")
        .arg(type, den);
}

QString denQuery(const QString& type, const QString& denSID)
{
    return QStringLiteral("Select First_Name, Last_Name, Den_Number, Den_Type, %1_SID From %1s, Dens Where "
                          "Den_SID = Assigned_Den_SID and Assigned_Den_SID = %2 and %1s.Active = 'Y' "
                          "Order by Last_Name, First_Name, MI")
        .arg(type, denSID);
}

// Widths and look common to all the grids.
void setWidths(widgets::TextGrid& grid, int nameWidth, int denWidth)
{
    grid.setColWidth(Marker, MarkerWidth);
    grid.setColWidth(Name, nameWidth);
    grid.setStretchColumn(Name);
    grid.setColWidth(Den, denWidth);
    grid.setColAlignment(Den, Qt::AlignCenter);
}

} // namespace

// A grid that people are taken from, and how the pack's list differs from a den's two lists.
struct frmAssignInsignias::Source {
    widgets::TextGrid& grid;
    std::int16_t& count;
    QString type;
    int nameWidth; // twips
    QString noDen; // shown for a den without a number
};

frmAssignInsignias::Source frmAssignInsignias::packSource()
{
    return {*ui->fgSelectFrom, mPackRowCount, mListType, PackNameWidth, NoDen};
}

frmAssignInsignias::Source frmAssignInsignias::denScoutSource()
{
    return {*ui->fgSelScoutsFromByDen, mDenScoutCount, ScoutType, MemberNameWidth, {}};
}

frmAssignInsignias::Source frmAssignInsignias::denAdultSource()
{
    return {*ui->fgSelAdultsFromByDen, mDenAdultCount, AdultType, MemberNameWidth, {}};
}

bool frmAssignInsignias::onDenTab() const
{
    return ui->SSTabAssignInsignias->currentWidget() == ui->pagDen;
}

frmAssignInsignias::frmAssignInsignias()
    : Form(widgets::FormKind::Child), ui(std::make_unique<Ui::frmAssignInsignias>())
{
    ui->setupUi(this);
    for (widgets::TextGrid* grid : {ui->fgSelectFrom, ui->fgSelScoutsFromByDen, ui->fgSelAdultsFromByDen})
        grid->setToolTip(QStringLiteral("Double-click a row, or press the space bar on it, to select"));
    widgets::sayWhenEmpty(*ui->fgSelectFrom, nobodyHere());
    for (widgets::TextGrid* grid : {ui->fgSelScoutsFromByDen, ui->fgSelAdultsFromByDen})
        widgets::sayWhenEmpty(*grid, QStringLiteral("Choose a den."));
    widgets::sayWhenEmpty(*ui->fgSelected, QStringLiteral("Nobody selected yet. Double-click a name."));
    tellCount();
    openCalendarOnDoubleClick(ui->txtAssignDate);
    setLeaveCheck(ui->txtAssignDate, [this] { return ValidateDate(ui->txtAssignDate->text()); });
    connectEvents();
}

frmAssignInsignias::~frmAssignInsignias() = default;

void frmAssignInsignias::connectEvents()
{
    using widgets::ComboBox;
    using widgets::OptionButton;
    using widgets::TextGrid;
    connect(ui->optListOfScouts, &OptionButton::selected, this, [this] { optListOf_Click(ScoutType); });
    connect(ui->optListOfAdults, &OptionButton::selected, this, [this] { optListOf_Click(AdultType); });
    connect(ui->SSTabAssignInsignias, &QTabWidget::currentChanged, this,
            &frmAssignInsignias::SSTabAssignInsignias_Click);
    connect(ui->comDen, &ComboBox::dropDown, this, &frmAssignInsignias::comDen_DropDown);
    connect(ui->comDen, &ComboBox::clicked, this, &frmAssignInsignias::comDen_Click);
    connect(ui->cboAward, &ComboBox::dropDown, this, &frmAssignInsignias::cboAward_DropDown);
    connect(ui->cboAward, &ComboBox::clicked, this, &frmAssignInsignias::cboAward_Click);

    connect(ui->fgSelectFrom, &TextGrid::rowDoubleClicked, this, [this] { selectRow(packSource()); });
    connect(ui->fgSelScoutsFromByDen, &TextGrid::rowDoubleClicked, this, [this] { selectRow(denScoutSource()); });
    connect(ui->fgSelAdultsFromByDen, &TextGrid::rowDoubleClicked, this, [this] { selectRow(denAdultSource()); });
    connect(ui->fgSelected, &TextGrid::rowDoubleClicked, this, &frmAssignInsignias::fgSelected_DblClick);

    connect(ui->cmdSelectAllSel, &QPushButton::clicked, this, [this] { selectAll(QString()); });
    connect(ui->cmdSelAllByDenScouts, &QPushButton::clicked, this, [this] { selectAll(QStringLiteral("Scouts")); });
    connect(ui->cmdSelAllByDenAdults, &QPushButton::clicked, this, [this] { selectAll(QStringLiteral("Adults")); });
    connect(ui->cmdUnSelAll, &QPushButton::clicked, this, &frmAssignInsignias::emptySelected);
    connect(ui->cmdClearAll, &QPushButton::clicked, this, &frmAssignInsignias::cmdClearAll_Click);
    connect(ui->cmdAssignAward, &QPushButton::clicked, this, &frmAssignInsignias::cmdAssignAward_Click);
    connect(ui->cmdExit, &QPushButton::clicked, this, &frmAssignInsignias::unload);
}

void frmAssignInsignias::load()
{
    ui->cmdAssignAward->setEnabled(false);
    mListType = ui->optListOfScouts->isChecked() ? ScoutType : AdultType;
    layOutSelected();
    fillPackList();
    for (auto [grid, heading] : {std::pair(ui->fgSelScoutsFromByDen, QStringLiteral("Scout's Name")),
                                 std::pair(ui->fgSelAdultsFromByDen, QStringLiteral("Alults's Name"))}) {
        grid->setCols(3);
        setWidths(*grid, MemberNameWidth, SourceDenWidth);
        grid->setText(0, Name, heading);
    }
}

void frmAssignInsignias::layOutSelected()
{
    auto& grid = *ui->fgSelected;
    grid.setRows(1);
    grid.setCols(SelectedSID + 1);
    setWidths(grid, 2300, 500);
    grid.setColWidth(SelectedType, 800);
    grid.setColWidth(SelectedSID, 0);
    grid.setColAlignment(SelectedType, Qt::AlignCenter);
    grid.setHeadingHeight(SelectedHeaderHeight);
    grid.setText(0, Name, QStringLiteral("Scout's Name"));
    grid.setText(0, Den, QStringLiteral("Den"));
    grid.setText(0, SelectedType, QStringLiteral("Scout or Adult"));
}

// ---- Events

void frmAssignInsignias::optListOf_Click(const QString& type)
{
    mListType = type;
    fillPackList();
}

void frmAssignInsignias::SSTabAssignInsignias_Click()
{
    if (!onDenTab())
        fillPackList();
    else if (!ui->comDen->text().isEmpty()) {
        fillDenAdults();
        fillDenScouts();
    }
}

void frmAssignInsignias::comDen_DropDown()
{
    refill(*ui->comDen, mDenSIDs, activeDens());
}

void frmAssignInsignias::comDen_Click()
{
    mDenSID = QString::number(GetDenSID(ui->comDen->text()));
    fillDenAdults();
    fillDenScouts();
}

void frmAssignInsignias::cboAward_DropDown()
{
    refill(*ui->cboAward, mAwardSIDs, awardEntries());
}

void frmAssignInsignias::cboAward_Click()
{
    const int position = ui->cboAward->listIndex();
    if (position >= 0 && position < std::ssize(mAwardSIDs) && mAwardSID >= 0)
        mAwardSID = mAwardSIDs[static_cast<std::size_t>(position)];
}

void frmAssignInsignias::fgSelected_DblClick()
{
    const int row = ui->fgSelected->row();
    if (!onDenTab())
        unselectRow(packSource(), row);
    else if (ui->fgSelected->text(row, SelectedType) == ScoutType)
        unselectRow(denScoutSource(), row);
    else
        unselectRow(denAdultSource(), row);
}

void frmAssignInsignias::cmdClearAll_Click()
{
    ui->cboAward->removeAll();
    ui->txtAssignDate->clear();
    emptySelected();
}

void frmAssignInsignias::cmdAssignAward_Click()
{
    const QString error = QStringLiteral("Error");
    if (ui->cboAward->text().isEmpty()) {
        widgets::message(QStringLiteral("An Award needs to be selected!"), error);
        ui->cboAward->setFocus();
        return;
    }
    if (ui->txtAssignDate->text().isEmpty()) {
        widgets::message(QStringLiteral("An Assigned Date needs to be entered!"), error);
        return;
    }
    const widgets::BusyPointer busy;
    assignAward();
    ui->cboAward->removeAll();
    ui->txtAssignDate->clear();
}

// ---- Source lists

// The key of the first den with that text; dens with equal texts can't be told apart.
std::int16_t frmAssignInsignias::GetDenSID(const QString& den) const
{
    int position = 0;
    while (position < ui->comDen->listCount() && ui->comDen->list(position) != den)
        ++position;
    return position < std::ssize(mDenSIDs) ? mDenSIDs[static_cast<std::size_t>(position)] : std::int16_t{0};
}

void frmAssignInsignias::fillPackList()
{
    const Source source = packSource();
    if (!fill(source, packQuery(mListType)))
        return;
    source.grid.setText(0, Name, mListType + QStringLiteral(" Name"));
    source.grid.setText(0, Den, QStringLiteral("Den"));
}

void frmAssignInsignias::fillDenScouts()
{
    widgets::sayWhenEmpty(*ui->fgSelScoutsFromByDen, nobodyHere());
    fill(denScoutSource(), denQuery(ScoutType, mDenSID));
}

void frmAssignInsignias::fillDenAdults()
{
    widgets::sayWhenEmpty(*ui->fgSelAdultsFromByDen, nobodyHere());
    fill(denAdultSource(), denQuery(AdultType, mDenSID));
}

bool frmAssignInsignias::fill(const Source& source, const QString& query)
{
    const widgets::BusyPointer busy;
    widgets::TextGrid& grid = source.grid;
    const widgets::RedrawHold hold(grid);
    grid.setRows(1);
    grid.setCols(SourceSID + 1);
    setWidths(grid, source.nameWidth, SourceDenWidth);
    grid.setColWidth(SourceSID, 0);

    auto people = database().openRecordset(query);
    if (people.recordCount() == 0)
        return false;
    source.count = platform::toInt16(people.recordCount());
    grid.setRows(source.count + 1);
    grid.setHeadingHeight(SourceHeaderHeight);
    const QSet<QString> selected = selectedOf(source.type);
    for (int row = 1; !people.eof(); people.moveNext(), ++row) {
        const QString sid = people.value(PersonSID).toText();
        const QString den = people.value(DenNumber).textOrEmpty();
        grid.setText(row, Name, people.value(FirstName).textOrEmpty() + u' ' + people.value(LastName).textOrEmpty());
        grid.setText(row, Den, den.isEmpty() ? source.noDen : den);
        grid.setText(row, SourceSID, sid);
        if (selected.contains(sid))
            grid.setText(row, Marker, Marked);
    }
    grid.setRow(1); // where the keys begin
    return true;
}

// The identifiers of the selected people of one type; scouts and adults are numbered separately.
QSet<QString> frmAssignInsignias::selectedOf(const QString& type) const
{
    QSet<QString> identifiers;
    for (int row = 1; row <= mSelectedCount; ++row)
        if (ui->fgSelected->text(row, SelectedType) == type)
            identifiers.insert(ui->fgSelected->text(row, SelectedSID));
    return identifiers;
}

// ---- Working list

void frmAssignInsignias::selectRow(const Source& source)
{
    selectRow(source, source.grid.row());
}

void frmAssignInsignias::selectRow(const Source& source, int row)
{
    source.grid.setRow(row);
    if (source.grid.text(row, Marker) == Marked)
        return;
    widgets::TextGrid& selected = *ui->fgSelected;
    const int added = selected.addRow();
    mSelectedCount = platform::toInt16(mSelectedCount + 1);
    selected.setRow(added);
    selected.setText(added, Name, source.grid.text(row, Name));
    selected.setText(added, Den, source.grid.text(row, Den));
    selected.setText(added, SelectedType, source.type);
    selected.setText(added, SelectedSID, source.grid.text(row, SourceSID));
    source.grid.setText(row, Marker, Marked);
    if (mSelectedCount == 1)
        ui->cmdAssignAward->setEnabled(true);
    tellCount();
}

void frmAssignInsignias::tellCount()
{
    const QString people =
        mSelectedCount == 1 ? QStringLiteral("1 person") : QStringLiteral("%1 people").arg(mSelectedCount);
    ui->lblSelectedCount->setText(people + QStringLiteral(" selected"));
    ui->fgSelected->setToolTip(people +
                               QStringLiteral(". Double-click a row, or press the space bar on it, to take it out"));
}

void frmAssignInsignias::selectAll(const QString& whom)
{
    const auto chosen = [&] {
        if (!onDenTab())
            return packSource();
        return whom == QLatin1String("Adults") ? denAdultSource() : denScoutSource();
    };
    const Source source = chosen();
    const widgets::BusyPointer busy;
    const widgets::RedrawHold holdSource(source.grid);
    const widgets::RedrawHold holdSelected(*ui->fgSelected);
    for (int row = 1; row <= source.count; ++row)
        selectRow(source, row);
}

void frmAssignInsignias::unselectRow(const Source& source, int row)
{
    const QString sid = ui->fgSelected->text(row, SelectedSID);
    // The type isn't compared: on the pack's tab the mark of another person with the same number goes, too.
    for (int sourceRow = 1; sourceRow <= source.count; ++sourceRow)
        if (source.grid.text(sourceRow, SourceSID) == sid)
            source.grid.setText(sourceRow, Marker, QString());
    if (mSelectedCount == 1) {
        ui->fgSelected->setRows(1);
        mSelectedCount = 0;
        ui->cmdAssignAward->setEnabled(false);
    } else if (mSelectedCount >= 2) {
        ui->fgSelected->removeRow(row);
        --mSelectedCount;
    }
    tellCount();
}

void frmAssignInsignias::emptySelected()
{
    ui->fgSelected->setRows(1);
    mSelectedCount = 0;
    ui->cmdAssignAward->setEnabled(false);
    tellCount();
    // Refilling is what clears the marks.
    if (!onDenTab())
        fillPackList();
    else if (!ui->comDen->text().isEmpty()) {
        fillDenScouts();
        fillDenAdults();
    }
}

// Each row is committed before the next one: a failure half way keeps what was assigned so far.
void frmAssignInsignias::assignAward()
{
    const QString date = ui->txtAssignDate->text();
    for (int row = 1; row <= mSelectedCount; ++row) {
        const QString type = ui->fgSelected->text(row, SelectedType) == ScoutType ? ScoutType : AdultType;
        auto awards = database().openRecordset(
            QStringLiteral("Select * From Assigned_Awards_%1s Where Insignia_SID = 0").arg(type));
        awards.addNew();
        awards.setValue(type + QStringLiteral("_SID"), ui->fgSelected->text(row, SelectedSID));
        awards.setValue(u"Insignia_SID", int{mAwardSID});
        awards.setValue(u"Date_Assigned", date);
        awards.setValue(u"Year", platform::toDate(date).date.year());
        awards.setValue(u"Month", platform::toDate(date).date.month());
        awards.update();
    }
}

} // namespace orlo
