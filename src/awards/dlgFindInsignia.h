#pragma once

#include "shell/forms/FindDialog.h"

#include <memory>

namespace Ui
{
class dlgFindInsignia;
}

namespace orlo
{

class frmInsigniaInfo;

/// Asks which awards frmInsigniaInfo should show.
class dlgFindInsignia : public FindDialog<frmInsigniaInfo>
{
    Q_OBJECT

public:
    dlgFindInsignia();
    ~dlgFindInsignia() override;

protected:
    void handOver(frmInsigniaInfo& form) override;

private:
    std::unique_ptr<Ui::dlgFindInsignia> ui;
};

} // namespace orlo
