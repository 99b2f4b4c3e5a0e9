#pragma once

#include "shell/forms/FindDialog.h"

#include <memory>
#include <vector>

namespace Ui
{
class dlgFindAdult;
}

namespace orlo
{

class frmAdults;

/// Asks for the name and den of the adults that frmAdults should list.
class dlgFindAdult : public FindDialog<frmAdults>
{
    Q_OBJECT

public:
    dlgFindAdult();
    ~dlgFindAdult() override;

protected:
    void handOver(frmAdults& form) override;
    void load() override;

private:
    void loadDens();
    void cmbDen_Click();
    void cmbDen_Change();

    std::unique_ptr<Ui::dlgFindAdult> ui;
    std::int16_t mDen = -1; ///< the key of the den picked in cmbDen
    std::vector<std::int16_t> mDenSIDs;
};

} // namespace orlo
