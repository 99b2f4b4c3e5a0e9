#include "awards/dlgFindInsignia.h"

#include "awards/InsigniaTypes.h"
#include "awards/frmInsigniaInfo.h"
#include "ui_dlgFindInsignia.h"

namespace orlo
{

dlgFindInsignia::dlgFindInsignia() : ui(std::make_unique<Ui::dlgFindInsignia>())
{
    ui->setupUi(this);
    bindControls();
    const auto enableFind = [this] { ui->cmdFind->setEnabled(true); };
    connect(ui->txtInsigniaName, &QLineEdit::textChanged, this, enableFind);
    connect(ui->OptAllInsigniaTypes, &widgets::OptionButton::selected, this, enableFind);
    for (const InsigniaType& type : insigniaTypes(*ui))
        connect(type.option, &widgets::OptionButton::selected, this, enableFind);
}

dlgFindInsignia::~dlgFindInsignia() = default;

void dlgFindInsignia::handOver(frmInsigniaInfo& form)
{
    form.SetFindData(ui->txtInsigniaName->text(), chosenType(insigniaTypes(*ui)));
}

} // namespace orlo
