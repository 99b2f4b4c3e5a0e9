#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class dlgHelp;
}

namespace orlo
{

/// Says where help will come from, and links to the manual if that is beside the program.
class dlgHelp : public widgets::Form
{
    Q_OBJECT

public:
    dlgHelp();
    ~dlgHelp() override;

protected:
    void load() override;

private:
    void openManual(const QString& link);

    std::unique_ptr<Ui::dlgHelp> ui;
};

} // namespace orlo
