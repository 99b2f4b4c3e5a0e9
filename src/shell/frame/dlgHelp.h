#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class dlgHelp;
}

namespace orlo
{

/// Says where the help will come from, and leads to the manual where that lies beside the program.
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
