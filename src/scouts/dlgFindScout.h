#pragma once

#include "shell/forms/FindDialog.h"

#include <memory>

namespace Ui
{
class dlgFindScout;
}

namespace orlo
{

class frmScouts;

/// Asks for the names of the scouts that frmScouts should list.
class dlgFindScout : public FindDialog<frmScouts>
{
    Q_OBJECT

public:
    dlgFindScout();
    ~dlgFindScout() override;

protected:
    void handOver(frmScouts& form) override;

private:
    std::unique_ptr<Ui::dlgFindScout> ui;
};

} // namespace orlo
