#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class frmReportsMenu;
}

namespace orlo
{

/// Leads to the two reports on awards. No menu of the main window opens it.
class frmReportsMenu : public widgets::Form
{
    Q_OBJECT

public:
    frmReportsMenu();
    ~frmReportsMenu() override;

private:
    std::unique_ptr<Ui::frmReportsMenu> ui;
};

} // namespace orlo
