#include "reports/frmReportsMenu.h"

#include "reports/dlgAwardsList.h"
#include "reports/dlgReportSelect1.h"
#include "ui_frmReportsMenu.h"

namespace orlo
{

frmReportsMenu::frmReportsMenu() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::frmReportsMenu>())
{
    ui->setupUi(this);
    setCancelButton(ui->Command1);
    connect(ui->cmdAssignedAwards, &QPushButton::clicked, this,
            [] { widgets::Instance<dlgReportSelect1>::showWaiting(); });
    connect(ui->cmdAwardsList, &QPushButton::clicked, this, [] { widgets::Instance<dlgAwardsList>::showWaiting(); });
    connect(ui->Command1, &QPushButton::clicked, this, &frmReportsMenu::unload);
}

frmReportsMenu::~frmReportsMenu() = default;

} // namespace orlo
