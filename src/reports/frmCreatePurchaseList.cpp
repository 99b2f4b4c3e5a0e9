#include "reports/frmCreatePurchaseList.h"

#include "platform/Conversion.h"
#include "reporting/view/ReportControl.h"
#include "shell/forms/EmptyLists.h"
#include "shell/forms/Module1.h"
#include "shell/forms/dlgCalendar.h"
#include "store/engine/Database.h"
#include "ui_frmCreatePurchaseList.h"
#include "widgets/DataControl.h"
#include "widgets/EmptyText.h"
#include "widgets/MessageBox.h"

namespace orlo
{

frmCreatePurchaseList::frmCreatePurchaseList()
    : ReportDialog(QStringLiteral("crPurchaseList")), ui(std::make_unique<Ui::frmCreatePurchaseList>()),
      dcAssignedPurchases(new widgets::DataControl(this)), dcOtherPurchaseList(new widgets::DataControl(this))
{
    ui->setupUi(this);
    bindControls(ui->cmdPreviewList, ui->cmdPrintList, ui->cmdCancel);
    dcAssignedPurchases->setObjectName(QStringLiteral("dcAssignedPurchases"));
    dcOtherPurchaseList->setObjectName(QStringLiteral("dcOtherPurchaseList"));
    ui->dbgAssignedPurchases->setDataControl(dcAssignedPurchases);
    ui->dbgAssignedPurchases->setColumns({
        {QStringLiteral("Quantity"), QStringLiteral("Quantity"), 1000, Qt::AlignRight},
        {QStringLiteral("Award Name"), QStringLiteral("Award_Name"), 3600},
        {QStringLiteral("Award Type"), QStringLiteral("Insignia_Type"), 2200},
    });
    ui->dbgAssignedPurchases->setStretchColumn(1);
    sayNothingYet(*ui->dbgAssignedPurchases, QStringLiteral("list"), *ui->cmdCreate);
    ui->dbgOtherPurchaseList->setDataControl(dcOtherPurchaseList);
    ui->dbgOtherPurchaseList->setColumns({
        {QStringLiteral("Quantity"), QStringLiteral("Quantity"), 1000, Qt::AlignRight},
        {QStringLiteral("Item to Purchase"), QStringLiteral("Item_Name"), 5800},
    });

    for (QLineEdit* field : {ui->txtStartDate, ui->txtEndDate}) {
        openCalendarOnDoubleClick(field);
        setLeaveCheck(field, [field] { return ValidateDate(field->text()); });
    }
    connect(ui->cmdCreate, &QPushButton::clicked, this, &frmCreatePurchaseList::cmdCreate_Click);
    connect(ui->cmdClearOtherList, &QPushButton::clicked, this, &frmCreatePurchaseList::cmdClearOtherList_Click);
}

frmCreatePurchaseList::~frmCreatePurchaseList() = default;

void frmCreatePurchaseList::load()
{
    ui->txtStartDate->setText(platform::shortDate(FirstOfMonth(platform::today())));
    ui->txtEndDate->setText(platform::shortDate(LastOfMonth(platform::today())));
    dcAssignedPurchases->setDatabase(database);
    dcOtherPurchaseList->setDatabase(database);
    database().execute(QStringLiteral("Delete From Purchase_List"));

    dcAssignedPurchases->setRecordSource(QStringLiteral("Purchase_List"));
    dcAssignedPurchases->refresh();
    dcOtherPurchaseList->setRecordSource(QStringLiteral("Other_Purchase_List"));
    dcOtherPurchaseList->refresh();
}

void frmCreatePurchaseList::cmdCreate_Click()
{
    if (ui->txtStartDate->text().isEmpty() || ui->txtEndDate->text().isEmpty()) {
        widgets::message(QStringLiteral("You must enter a start date and end date"),
                         QStringLiteral("Date Selection Error"));
        return;
    }
    if (platform::toDate(ui->txtEndDate->text()) < platform::toDate(ui->txtStartDate->text())) {
        widgets::message(QStringLiteral("The start date needs to be equal to or older then the end date"),
                         QStringLiteral("Delete Selection Error"));
        return;
    }
    createList();
}

void frmCreatePurchaseList::createList()
{
    const widgets::BusyPointer busy;
    const QString statement =
        QStringLiteral("Insert Into Purchase_List (Award_Name, Quantity, Insignia_Type) ") +
        QStringLiteral("Select  Award_Name, Sum(Qty) as Quantity,  Insignia_Type ") +
        QStringLiteral("From UnionAwardsScoutAdults  ") + QStringLiteral(" Where Date_Assigned between #") +
        ui->txtStartDate->text() + QStringLiteral("# and #") + ui->txtEndDate->text() + QStringLiteral("#  ") +
        QStringLiteral(" Group by  Insignia_Type, Award_Name ") + QStringLiteral(" Order by Award_Name");
    widgets::sayWhenEmpty(*ui->dbgAssignedPurchases, QStringLiteral("No award was given in these dates."));
    database().execute(QStringLiteral("Delete From Purchase_List"));
    database().execute(statement);
    dcAssignedPurchases->setRecordSource(QStringLiteral("Purchase_List"));
    dcAssignedPurchases->refresh();
    ui->dbgAssignedPurchases->refresh();
}

void frmCreatePurchaseList::cmdClearOtherList_Click()
{
    database().execute(QStringLiteral("Delete From Other_Purchase_List"));
    dcOtherPurchaseList->refresh();
    ui->dbgOtherPurchaseList->refresh();
}

void frmCreatePurchaseList::prepare()
{
    report().setDatabaseFile(0, databasePath());
    setReport(QStringLiteral("\\PurchaseList.rpt"));
    report().setSubreportToChange(QStringLiteral("OtherPurchaseList"));
    report().setDatabaseFile(0, databasePath());
    setWindow(QStringLiteral("Purchase List"));
}

} // namespace orlo
