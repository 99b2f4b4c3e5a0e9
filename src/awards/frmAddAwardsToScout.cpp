#include "awards/frmAddAwardsToScout.h"

#include "ui_frmAddAwardsToScout.h"

namespace orlo
{

frmAddAwardsToScout::frmAddAwardsToScout()
    : AddAwardsForm({QStringLiteral("Assigned_Awards_Scouts"), QStringLiteral("Scout_SID")}),
      ui(std::make_unique<Ui::frmAddAwardsToScout>())
{
    ui->setupUi(this);
    bindControls(ui->cmdAddToScout);
}

frmAddAwardsToScout::~frmAddAwardsToScout() = default;

} // namespace orlo
