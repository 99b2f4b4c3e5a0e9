#include "shell/frame/dlgHelp.h"

#include "ui_dlgHelp.h"

namespace orlo
{

dlgHelp::dlgHelp() : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::dlgHelp>())
{
    ui->setupUi(this);
    setCancelButton(ui->cmdClose);
    connect(ui->cmdClose, &QPushButton::clicked, this, &dlgHelp::unload);
}

dlgHelp::~dlgHelp() = default;

} // namespace orlo
