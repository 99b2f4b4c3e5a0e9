#include "awards/frmAddAdultAwards.h"

#include "ui_frmAddAdultAwards.h"

namespace orlo
{

frmAddAdultAwards::frmAddAdultAwards()
    : AddAwardsForm({QStringLiteral("Assigned_Awards_Adults"), QStringLiteral("Adult_SID")}),
      ui(std::make_unique<Ui::frmAddAdultAwards>())
{
    ui->setupUi(this);
    bindControls(ui->cmdAddToAdult);
}

frmAddAdultAwards::~frmAddAdultAwards() = default;

} // namespace orlo
