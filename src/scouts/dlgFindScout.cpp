#include "scouts/dlgFindScout.h"

#include "scouts/frmScouts.h"
#include "ui_dlgFindScout.h"

namespace orlo
{

dlgFindScout::dlgFindScout() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::dlgFindScout>())
{
    ui->setupUi(this);
    setDefaultButton(ui->cmdFind);
    setCancelButton(ui->cmdCancel);
    for (QLineEdit* box : {ui->txtFirst, ui->txtLast, ui->txtMi})
        connect(box, &QLineEdit::textChanged, this, [this] { ui->cmdFind->setEnabled(true); });
    connect(ui->cmdFind, &QPushButton::clicked, this, &dlgFindScout::cmdFind_Click);
    connect(ui->cmdSelectAll, &QPushButton::clicked, this, &dlgFindScout::cmdSelectAll_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &dlgFindScout::cmdCancel_Click);
}

dlgFindScout::~dlgFindScout() = default;

void dlgFindScout::cmdFind_Click()
{
    auto& scouts = widgets::Instance<frmScouts>::get();
    scouts.SetFindData(ui->txtFirst->text(), ui->txtLast->text(), ui->txtMi->text());
    scouts.SetFind(true);
    unload();
}

void dlgFindScout::cmdSelectAll_Click()
{
    widgets::Instance<frmScouts>::get().SetSelectAll(true);
    unload();
}

void dlgFindScout::cmdCancel_Click()
{
    widgets::Instance<frmScouts>::get().SetFind(false);
    unload();
}

} // namespace orlo
