#include "adults/dlgFindAdult.h"

#include "adults/frmAdults.h"
#include "shell/forms/DenList.h"
#include "ui_dlgFindAdult.h"

namespace orlo
{

dlgFindAdult::dlgFindAdult() : ui(std::make_unique<Ui::dlgFindAdult>())
{
    ui->setupUi(this);
    bindControls();
    const auto enableFind = [this] { ui->cmdFind->setEnabled(true); };
    for (QLineEdit* box : {ui->txtFirst, ui->txtLast, ui->txtMi})
        connect(box, &QLineEdit::textChanged, this, enableFind);
    connect(ui->cmbDen, &widgets::ComboBox::textChange, this, &dlgFindAdult::cmbDen_Change);
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
    refill(*ui->cmbDen, mDenSIDs, activeDens());
}

void dlgFindAdult::cmbDen_Click()
{
    mDen = mDenSIDs[static_cast<std::size_t>(ui->cmbDen->listIndex())];
    ui->cmdFind->setEnabled(true);
}

// A den typed in full counts as its row. Any other text keeps the den picked before, if any.
void dlgFindAdult::cmbDen_Change()
{
    if (const int row = ui->cmbDen->findText(ui->cmbDen->text(), Qt::MatchExactly | Qt::MatchCaseSensitive); row >= 0)
        mDen = mDenSIDs[static_cast<std::size_t>(row)];
    ui->cmdFind->setEnabled(true);
}

void dlgFindAdult::handOver(frmAdults& form)
{
    const std::int16_t den = ui->cmbDen->text().isEmpty() ? std::int16_t{-1} : mDen;
    form.SetFindData(ui->txtFirst->text(), ui->txtLast->text(), ui->txtMi->text(), den);
}

} // namespace orlo
