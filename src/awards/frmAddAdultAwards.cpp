#include "awards/frmAddAdultAwards.h"

#if __has_include("adults/frmAdults.h")
#include "adults/frmAdults.h"
#else
#include "platform/RuntimeError.h"
#endif
#include "ui_frmAddAdultAwards.h"

namespace orlo
{

frmAddAdultAwards::frmAddAdultAwards()
    : AddAwardsForm({QStringLiteral("Assigned_Awards_Adults"), QStringLiteral("Adult_SID")}),
      ui(std::make_unique<Ui::frmAddAdultAwards>())
{
    ui->setupUi(this);
    bindControls({*ui, ui->cmdAddToAdult});
}

frmAddAdultAwards::~frmAddAdultAwards() = default;

#if __has_include("adults/frmAdults.h")
std::int16_t frmAddAdultAwards::person() const
{
    return widgets::Instance<frmAdults>::get().GetAdultSID();
}

void frmAddAdultAwards::reloadGrid()
{
    widgets::Instance<frmAdults>::get().ReloadAwardGrid();
}
#else
std::int16_t frmAddAdultAwards::person() const
{
    throw platform::RuntimeError(platform::ObjectNotSet);
}

void frmAddAdultAwards::reloadGrid()
{
    throw platform::RuntimeError(platform::ObjectNotSet);
}
#endif

} // namespace orlo
