#pragma once

#include "awards/AddAwardsForm.h"

#include <memory>

namespace Ui
{
class frmAddAwardsToScout;
}

namespace orlo
{

/// Gives awards to the scout shown by frmScouts.
class frmAddAwardsToScout : public AddAwardsForm
{
    Q_OBJECT

public:
    frmAddAwardsToScout();
    ~frmAddAwardsToScout() override;

private:
    std::unique_ptr<Ui::frmAddAwardsToScout> ui;
};

} // namespace orlo
