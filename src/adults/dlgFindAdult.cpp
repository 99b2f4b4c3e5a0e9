#include "adults/dlgFindAdult.h"

#include "adults/LeaderLists.h"
#include "adults/frmAdults.h"
#include "shell/forms/DenList.h"
#include "ui_dlgFindAdult.h"

namespace orlo
{

dlgFindAdult::dlgFindAdult() : ui(std::make_unique<Ui::dlgFindAdult>())
{
    ui->setupUi(this);
    bindControls(ui->cmdFind, ui->cmdSelectAll, ui->cmdCancel);
    const auto enableFind = [this] { ui->cmdFind->setEnabled(true); };
    for (QLineEdit* box : {ui->txtFirst, ui->txtLast, ui->txtMi})
        connect(box, &QLineEdit::textChanged, this, enableFind);
    connect(ui->cmbDen, &widgets::ComboBox::textChange, this, enableFind);
    connect(ui->cmbDen, &widgets::ComboBox::clicked, this, &dlgFindAdult::cmbDen_Click);
    connect(ui->cmbDen, &widgets::ComboBox::dropDown, this, &dlgFindAdult::loadDens);
}

dlgFindAdult::~dlgFindAdult() = default;

void dlgFindAdult::load()
{
    loadDens();
}

void dlgFindAdult::loadDens()
{
    mDenSIDs = listActiveDens(*ui->cmbDen);
}

void dlgFindAdult::cmbDen_Click()
{
    mDenIndex = ui->cmbDen->listIndex();
    ui->cmdFind->setEnabled(true);
}

// A den that was typed and never picked is no criterion.
void dlgFindAdult::handOver(frmAdults& form)
{
    std::int16_t den = -1;
    if (!ui->cmbDen->text().isEmpty() && mDenIndex >= 0)
        den = leaderLists::entry(mDenSIDs, mDenIndex);
    form.SetFindData(ui->txtFirst->text(), ui->txtLast->text(), ui->txtMi->text(), den);
}

} // namespace orlo
