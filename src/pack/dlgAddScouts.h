#pragma once

#include "pack/MemberDialog.h"

#include <memory>

namespace Ui
{
class dlgAddScouts;
}

namespace orlo
{

/// Offers the active scouts without a den.
class dlgAddScouts : public MemberDialog
{
    Q_OBJECT

public:
    dlgAddScouts();
    ~dlgAddScouts() override;

protected:
    [[nodiscard]] QString query() const override;
    void assign(std::int16_t person) override;

private:
    std::unique_ptr<Ui::dlgAddScouts> ui;
};

} // namespace orlo
