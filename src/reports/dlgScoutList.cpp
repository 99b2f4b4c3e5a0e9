#include "reports/dlgScoutList.h"

#include "reporting/view/ReportControl.h"
#include "shell/forms/Module1.h"
#include "ui_dlgScoutList.h"

namespace orlo
{

dlgScoutList::dlgScoutList() : ReportDialog(QStringLiteral("crScoutList")), ui(std::make_unique<Ui::dlgScoutList>())
{
    ui->setupUi(this);
    bindControls(ui->cmdView, ui->cmdPrint, ui->cmdCancel);
}

dlgScoutList::~dlgScoutList() = default;

void dlgScoutList::prepare()
{
    const bool alphabetical = ui->optAlpha->isChecked();
    report().setDatabaseFile(0, databasePath());
    report().setDatabaseFile(1, alphabetical ? QString() : databasePath()); // the dens
    setReport(alphabetical ? QStringLiteral("\\ScoutPhoneList.rpt") : QStringLiteral("\\ScoutPhoneList1.rpt"));
    setWindow(QStringLiteral("Scout List Report"));
}

} // namespace orlo
