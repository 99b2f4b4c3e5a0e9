#include "pack/dlgAddScouts.h"

#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "ui_dlgAddScouts.h"

namespace orlo
{

dlgAddScouts::dlgAddScouts() : MemberDialog(QStringLiteral("Scout_SID")), ui(std::make_unique<Ui::dlgAddScouts>())
{
    ui->setupUi(this);
    bindControls(ui->lstScouts, ui->cmdSelect, ui->cmdCancel);
}

dlgAddScouts::~dlgAddScouts() = default;

QString dlgAddScouts::query() const
{
    return QStringLiteral("Select First_Name, Last_Name, MI, Scout_SID From Scouts Where Assigned_Den_SID = NULL and "
                          "Active = 'Y'  Order by Last_Name, First_Name, MI");
}

void dlgAddScouts::assign(std::int16_t person)
{
    auto scout = database().openRecordset(
        QStringLiteral("Select Assigned_Den_SID From Scouts Where Scout_SID = %1").arg(person));
    if (scout.recordCount() == 0)
        return;
    scout.moveFirst();
    scout.edit();
    scout.setValue(u"Assigned_Den_SID", int{mDenSID});
    scout.update();
}

} // namespace orlo
