#include "reports/dlgAwardsList.h"

#include "reporting/view/ReportControl.h"
#include "shell/forms/Module1.h"
#include "ui_dlgAwardsList.h"

namespace orlo
{

dlgAwardsList::dlgAwardsList() : ReportDialog(QStringLiteral("crAwardList")), ui(std::make_unique<Ui::dlgAwardsList>())
{
    ui->setupUi(this);
    bindControls(ui->cmdView, ui->cmdPrint, ui->cmdCancel);
}

dlgAwardsList::~dlgAwardsList() = default;

void dlgAwardsList::load()
{
    report().setDatabaseFile(0, databasePath());
    report().setWindowOption(true);
}

// The preview keeps its own title and size.
void dlgAwardsList::prepare()
{
    setReport(ui->chkDetailed->isChecked() ? QStringLiteral("\\AwardListDetail.rpt")
                                           : QStringLiteral("\\AwardListing.rpt"));
}

} // namespace orlo
