#include "awards/dlgFindInsignia.h"

#include "awards/InsigniaTypes.h"
#include "awards/frmInsigniaInfo.h"
#include "ui_dlgFindInsignia.h"

namespace orlo
{

dlgFindInsignia::dlgFindInsignia() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::dlgFindInsignia>())
{
    ui->setupUi(this);
    setDefaultButton(ui->cmdFind);
    setCancelButton(ui->cmdCancel);
    const auto enableFind = [this] { ui->cmdFind->setEnabled(true); };
    connect(ui->txtInsigniaName, &QLineEdit::textChanged, this, enableFind);
    connect(ui->OptAllInsigniaTypes, &widgets::OptionButton::selected, this, enableFind);
    for (const InsigniaType& type : insigniaTypes(*ui))
        connect(type.option, &widgets::OptionButton::selected, this, enableFind);
    connect(ui->cmdFind, &QPushButton::clicked, this, &dlgFindInsignia::cmdFind_Click);
    connect(ui->cmdSelectAll, &QPushButton::clicked, this, &dlgFindInsignia::cmdSelectAll_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &dlgFindInsignia::cmdCancel_Click);
}

dlgFindInsignia::~dlgFindInsignia() = default;

void dlgFindInsignia::cmdFind_Click()
{
    auto& catalogue = widgets::Instance<frmInsigniaInfo>::get();
    catalogue.SetFindData(ui->txtInsigniaName->text(), chosenType(insigniaTypes(*ui)));
    catalogue.SetFind(true);
    unload();
}

void dlgFindInsignia::cmdSelectAll_Click()
{
    widgets::Instance<frmInsigniaInfo>::get().SetSelectAll(true);
    unload();
}

void dlgFindInsignia::cmdCancel_Click()
{
    widgets::Instance<frmInsigniaInfo>::get().SetFind(false);
    unload();
}

} // namespace orlo
