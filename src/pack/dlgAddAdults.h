#pragma once

#include "pack/MemberDialog.h"

#include <memory>

namespace Ui
{
class dlgAddAdults;
}

namespace orlo
{

/// Offers the active adults who don't lead the den yet, according to frmDenInfo; leaders of other dens are included.
class dlgAddAdults : public MemberDialog
{
    Q_OBJECT

public:
    dlgAddAdults();
    ~dlgAddAdults() override;

protected:
    [[nodiscard]] QString query() const override;
    void assign(std::int16_t person) override;

private:
    std::unique_ptr<Ui::dlgAddAdults> ui;
};

} // namespace orlo
