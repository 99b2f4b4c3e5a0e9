#include "reports/dlgReportSelect1.h"

#include "platform/Conversion.h"
#include "reporting/view/ReportControl.h"
#include "shell/forms/DenList.h"
#include "shell/forms/Module1.h"
#include "shell/forms/PersonName.h"
#include "shell/forms/dlgCalendar.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "ui_dlgReportSelect1.h"

#include <QEvent>

namespace orlo
{

namespace
{

constexpr QLatin1String All("<All>"); // the first row of both lists

std::optional<AwardCriteria::Entry> chosen(const widgets::ComboBox& box,
                                           const std::vector<AwardCriteria::Entry>& entries)
{
    const int row = box.listIndex();
    return row > 0 ? std::optional(entries[static_cast<std::size_t>(row - 1)]) : std::nullopt;
}

} // namespace

dlgReportSelect1::dlgReportSelect1()
    : ReportDialog(QStringLiteral("crAssignedAwardsReport")), ui(std::make_unique<Ui::dlgReportSelect1>())
{
    ui->setupUi(this);
    bindControls(ui->cmdView, ui->cmdPrint, ui->cmdCancel);
    openCalendarOnDoubleClick(ui->txtDateFrom);
    openCalendarOnDoubleClick(ui->txtDateTo);
    connect(ui->optScouts, &widgets::OptionButton::selected, this, &dlgReportSelect1::optScouts_Click);
    connect(ui->optAdults, &widgets::OptionButton::selected, this, &dlgReportSelect1::optAdults_Click);
    connect(ui->cmdDateRangeOperator, &widgets::ComboBox::clicked, this, &dlgReportSelect1::setDateToState);
}

dlgReportSelect1::~dlgReportSelect1() = default;

void dlgReportSelect1::load()
{
    optScouts_Click();
    fillDens();
    ui->txtDateFrom->setText(platform::shortDate(platform::today()));
    ui->cmdDateRangeOperator->setListIndex(static_cast<int>(DateComparison::SingleDate));
    report().setDatabaseFile(0, databasePath());
    setReport(QStringLiteral("\\assignedawards.rpt"));
    setDateToState();
}

void dlgReportSelect1::optScouts_Click()
{
    ui->lblScoutOrAdult->setText(QStringLiteral("Scout:"));
    fillPeople(QStringLiteral("Select First_Name, Last_Name, MI, Scout_SID From Scouts Where Active = 'Y'  Order by "
                              "Last_Name, First_Name, MI"),
               u"Scout_SID");
}

void dlgReportSelect1::optAdults_Click()
{
    ui->lblScoutOrAdult->setText(QStringLiteral("Adult:"));
    fillPeople(QStringLiteral("Select First_Name, Last_Name, MI, Adult_SID From Adults Where Active = 'Y'  Order by "
                              "Last_Name, First_Name, MI"),
               u"Adult_SID");
}

void dlgReportSelect1::fillPeople(const QString& query, QStringView keyField)
{
    ui->cmbScoutOrAdult->removeAll();
    mPeople.clear();
    auto people = database().openRecordset(query);
    ui->cmbScoutOrAdult->addItem(All);
    for (; !people.eof(); people.moveNext()) {
        ui->cmbScoutOrAdult->addItem(lastFirstMiddle(people));
        mPeople.push_back({people[keyField].toInt16(), firstMiddleLast(people)});
    }
    ui->cmbScoutOrAdult->setText(All);
}

void dlgReportSelect1::fillDens()
{
    ui->cmbDen->addItem(All);
    for (const ListEntry& den : activeDens()) {
        ui->cmbDen->addItem(den.text);
        mDens.push_back({den.sid, den.text});
    }
    ui->cmbDen->setText(All);
}

// Only a range has an end. The field keeps its text meanwhile.
void dlgReportSelect1::setDateToState()
{
    const bool between = ui->cmdDateRangeOperator->listIndex() == static_cast<int>(DateComparison::Between);
    ui->txtDateTo->setEnabled(between);
    QPalette colours;
    colours.setBrush(QPalette::Base, palette().brush(between ? QPalette::Base : QPalette::Button));
    ui->txtDateTo->setPalette(colours);
}

void dlgReportSelect1::changeEvent(QEvent* event)
{
    ReportDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        setDateToState();
}

AwardCriteria dlgReportSelect1::criteria() const
{
    return {.adults = ui->optAdults->isChecked(),
            .person = chosen(*ui->cmbScoutOrAdult, mPeople),
            .den = chosen(*ui->cmbDen, mDens),
            .comparison = static_cast<DateComparison>(ui->cmdDateRangeOperator->listIndex()),
            .from = ui->txtDateFrom->text(),
            .to = ui->txtDateTo->text()};
}

void dlgReportSelect1::prepare()
{
    const AwardSelection selection = selectAwards(criteria());
    setReport(ui->optAdults->isChecked() ? QStringLiteral("\\AssignedAwards1.rpt")
                                         : QStringLiteral("\\AssignedAwards.rpt"));
    report().setSelectionFormula(selection.formula);
    report().setReportTitle(selection.title);
    setWindow(QStringLiteral("Assigned Awards ") + selection.title);
}

} // namespace orlo
