#include "reports/dlgAdultList.h"

#include "reporting/view/ReportControl.h"
#include "shell/forms/Module1.h"
#include "ui_dlgAdultList.h"

namespace orlo
{

dlgAdultList::dlgAdultList() : ReportDialog(QStringLiteral("crAdultList")), ui(std::make_unique<Ui::dlgAdultList>())
{
    ui->setupUi(this);
    bindControls(ui->cmdView, ui->cmdPrint, ui->cmdCancel);
}

dlgAdultList::~dlgAdultList() = default;

void dlgAdultList::prepare()
{
    const bool alphabetical = ui->optAlpha->isChecked();
    setReport(alphabetical ? QStringLiteral("\\AdultPhoneList.rpt") : QStringLiteral("\\AdultPhoneList1.rpt"));
    report().setDatabaseFile(0, databasePath());
    report().setSubreportToChange(alphabetical ? QStringLiteral("LeaderPositions") : QStringLiteral("Pack Positions"));
    report().setDatabaseFile(0, databasePath());
    setWindow(QStringLiteral("Adult List Report"));
}

} // namespace orlo
