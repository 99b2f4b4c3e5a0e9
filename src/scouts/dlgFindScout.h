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

/// Asks for the name of the scouts that frmScouts is to list, and hands the answer to it.
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
