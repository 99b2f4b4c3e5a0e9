#include "scouts/dlgFindScout.h"

#include "scouts/frmScouts.h"
#include "ui_dlgFindScout.h"

namespace orlo
{

dlgFindScout::dlgFindScout() : ui(std::make_unique<Ui::dlgFindScout>())
{
    ui->setupUi(this);
    bindControls();
    for (QLineEdit* box : {ui->txtFirst, ui->txtLast, ui->txtMi})
        connect(box, &QLineEdit::textChanged, this, [this] { ui->cmdFind->setEnabled(true); });
}

dlgFindScout::~dlgFindScout() = default;

void dlgFindScout::handOver(frmScouts& form)
{
    form.SetFindData(ui->txtFirst->text(), ui->txtLast->text(), ui->txtMi->text());
}

} // namespace orlo
