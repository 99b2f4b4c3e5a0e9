#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class dlgFindScout;
}

namespace orlo
{

/// Asks for the name of the scouts that frmScouts is to list, and hands the answer to it.
class dlgFindScout : public widgets::Form
{
    Q_OBJECT

public:
    dlgFindScout();
    ~dlgFindScout() override;

private:
    void cmdFind_Click();
    void cmdSelectAll_Click();
    void cmdCancel_Click();

    std::unique_ptr<Ui::dlgFindScout> ui;
};

} // namespace orlo
