#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class dlgFindInsignia;
}

namespace orlo
{

/// Asks which awards frmInsigniaInfo is to walk, and hands the answer to it.
class dlgFindInsignia : public widgets::Form
{
    Q_OBJECT

public:
    dlgFindInsignia();
    ~dlgFindInsignia() override;

private:
    void cmdFind_Click();
    void cmdSelectAll_Click();
    void cmdCancel_Click();

    std::unique_ptr<Ui::dlgFindInsignia> ui;
};

} // namespace orlo
