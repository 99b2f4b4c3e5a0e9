#include "reports/dlgCombinedRoster.h"

#include "reporting/view/ReportControl.h"
#include "shell/forms/Module1.h"
#include "ui_dlgCombinedRoster.h"

namespace orlo
{

dlgCombinedRoster::dlgCombinedRoster()
    : ReportDialog(QStringLiteral("crCombinedList")), ui(std::make_unique<Ui::dlgCombinedRoster>())
{
    ui->setupUi(this);
    bindControls(ui->cmdView, ui->cmdPrint, ui->cmdCancel);
}

dlgCombinedRoster::~dlgCombinedRoster() = default;

void dlgCombinedRoster::prepare()
{
    report().setDatabaseFile(0, databasePath());
    setReport(QStringLiteral("\\CombinedRoster.rpt"));
    setWindow(QStringLiteral("Combined Roster"));
}

} // namespace orlo
