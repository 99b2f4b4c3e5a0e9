#pragma once

#include "awards/AddAwardsForm.h"

#include <memory>

namespace Ui
{
class frmAddAdultAwards;
}

namespace orlo
{

/// Gives awards to the adult shown by frmAdults.
class frmAddAdultAwards : public AddAwardsForm
{
    Q_OBJECT

public:
    frmAddAdultAwards();
    ~frmAddAdultAwards() override;

private:
    std::unique_ptr<Ui::frmAddAdultAwards> ui;
};

} // namespace orlo
