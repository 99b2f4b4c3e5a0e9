#include "awards/frmAddAwardsToScout.h"

#if __has_include("scouts/frmScouts.h")
#include "scouts/frmScouts.h"
#else
#include "platform/RuntimeError.h"
#endif
#include "ui_frmAddAwardsToScout.h"

namespace orlo
{

frmAddAwardsToScout::frmAddAwardsToScout()
    : AddAwardsForm({QStringLiteral("Assigned_Awards_Scouts"), QStringLiteral("Scout_SID")}),
      ui(std::make_unique<Ui::frmAddAwardsToScout>())
{
    ui->setupUi(this);
    bindControls({*ui, ui->cmdAddToScout});
}

frmAddAwardsToScout::~frmAddAwardsToScout() = default;

#if __has_include("scouts/frmScouts.h")
std::int16_t frmAddAwardsToScout::person() const
{
    return widgets::Instance<frmScouts>::get().GetScoutSID();
}

void frmAddAwardsToScout::reloadGrid()
{
    widgets::Instance<frmScouts>::get().ReloadAwardGrid();
}
#else
std::int16_t frmAddAwardsToScout::person() const
{
    throw platform::RuntimeError(platform::ObjectNotSet);
}

void frmAddAwardsToScout::reloadGrid()
{
    throw platform::RuntimeError(platform::ObjectNotSet);
}
#endif

} // namespace orlo
