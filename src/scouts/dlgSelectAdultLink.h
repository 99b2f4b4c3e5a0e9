#pragma once

#include "widgets/Form.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Ui
{
class dlgSelectAdultLink;
}

namespace orlo
{

/// Offers the leaders of the scout's den on frmScouts, one of whom a parent can be linked to.
class dlgSelectAdultLink : public widgets::Form
{
    Q_OBJECT

public:
    dlgSelectAdultLink();
    ~dlgSelectAdultLink() override;

protected:
    void load() override;

private:
    void answer(std::int16_t adult);

    std::unique_ptr<Ui::dlgSelectAdultLink> ui;
    std::vector<std::int16_t> mAdultSIDs; ///< by row of lstDenLeaders
};

} // namespace orlo
