#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class dlgHelp;
}

namespace orlo
{

/// Says where the help will come from; the program has none of its own yet.
class dlgHelp : public widgets::Form
{
    Q_OBJECT

public:
    dlgHelp();
    ~dlgHelp() override;

private:
    std::unique_ptr<Ui::dlgHelp> ui;
};

} // namespace orlo
