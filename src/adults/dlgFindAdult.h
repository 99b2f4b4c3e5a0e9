#pragma once

#include "widgets/Form.h"

#include <memory>
#include <vector>

namespace Ui
{
class dlgFindAdult;
}

namespace orlo
{

/// Asks for the name and the den of the adults that frmAdults is to list, and hands the answer to it.
class dlgFindAdult : public widgets::Form
{
    Q_OBJECT

public:
    dlgFindAdult();
    ~dlgFindAdult() override;

protected:
    void load() override;

private:
    void loadDens();
    void cmbDen_Click();
    void cmdFind_Click();
    void cmdSelectAll_Click();
    void cmdCancel_Click();

    std::unique_ptr<Ui::dlgFindAdult> ui;
    int mDenIndex = -1; ///< the row picked in cmbDen
    std::vector<std::int16_t> mDenSIDs;
};

} // namespace orlo
