#include "pack/dlgAddAdults.h"

#include "pack/frmDenInfo.h"
#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "ui_dlgAddAdults.h"

namespace orlo
{

dlgAddAdults::dlgAddAdults() : MemberDialog(QStringLiteral("Adult_SID")), ui(std::make_unique<Ui::dlgAddAdults>())
{
    ui->setupUi(this);
    bindControls(ui->lstAdults, ui->cmdSelect, ui->cmdCancel);
}

dlgAddAdults::~dlgAddAdults() = default;

QString dlgAddAdults::query() const
{
    const QString leaders = widgets::Instance<frmDenInfo>::get().GetAdultSidListStr();
    const QString exclusion = leaders.isEmpty()
                                  ? QString()
                                  : QStringLiteral(" and Adults.Adult_SID not in ( ") + leaders + QStringLiteral(") ");
    return QStringLiteral("Select DistinctRow Adults.Adult_SID, Adults.First_Name,   Adults.Last_Name, Adults.MI  From "
                          "Adults Left Outer Join Leader_Den_Assignments on  Adults.Adult_SID = "
                          "Leader_Den_Assignments.Adult_SID  Where Adults.Active = 'Y' ") +
           exclusion + QStringLiteral(" Order by Adults.Last_Name, Adults.First_Name, Adults.MI");
}

// A leader added here has no title yet.
void dlgAddAdults::assign(std::int16_t person)
{
    database().execute(QStringLiteral("Insert Into Leader_Den_Assignments (Adult_SID, Den_Sid)  Values ( %1, %2 ) ")
                           .arg(person)
                           .arg(mDenSID));
}

} // namespace orlo
