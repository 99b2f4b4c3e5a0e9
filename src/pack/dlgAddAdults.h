#pragma once

#include "pack/MemberDialog.h"

#include <memory>

namespace Ui
{
class dlgAddAdults;
}

namespace orlo
{

/// Offers the active adults who do not lead the den yet, as frmDenInfo knows its leaders; who leads another den may
/// lead this one, too.
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
