#include "awards/frmEditAssignedAward.h"

#include "awards/AwardList.h"
#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "shell/forms/dlgCalendar.h"
#include "ui_frmEditAssignedAward.h"
#include "widgets/TextBox.h"

namespace orlo
{

namespace
{

constexpr std::int16_t NoAward = 0;

}

frmEditAssignedAward::frmEditAssignedAward()
    : Form(widgets::FormKind::Window), ui(std::make_unique<Ui::frmEditAssignedAward>())
{
    ui->setupUi(this);
    setDefaultButton(ui->cmdSave);
    setCancelButton(ui->Command2);
    openCalendarOnDoubleClick(ui->txtDateAssigned, [this] { ui->cmdSave->setEnabled(true); });
    connect(ui->cmdSave, &QPushButton::clicked, this, &frmEditAssignedAward::cmdSave_Click);
    connect(ui->Command2, &QPushButton::clicked, this, &frmEditAssignedAward::unload);
}

frmEditAssignedAward::~frmEditAssignedAward() = default;

void frmEditAssignedAward::load()
{
    for (const ListEntry& award : awardEntries())
        ui->cmbAward->addItem(award.text);
    widgets::fillBox(*ui->txtDateAssigned, gEditDate);
    widgets::fillBox(*ui->txtQuantity, QString::number(gEditQuantity));
    ui->cmbAward->setText(gEditAwardText);
}

void frmEditAssignedAward::cmdSave_Click()
{
    // The box means the row's own award or none; no other award can be chosen here.
    if (ui->cmbAward->text() != gEditAwardText)
        gEditInsigniaSID = NoAward;
    gEditQuantity = platform::toInt16(platform::val(ui->txtQuantity->text()));
    gEditDate = ui->txtDateAssigned->text();
    gEditSaved = true;
    unload();
}

} // namespace orlo
