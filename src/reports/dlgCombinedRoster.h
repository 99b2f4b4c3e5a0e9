#pragma once

#include "reports/ReportDialog.h"

#include <memory>

namespace Ui
{
class dlgCombinedRoster;
}

namespace orlo
{

/// Runs the roster of leaders and scouts by den.
class dlgCombinedRoster : public ReportDialog
{
    Q_OBJECT

public:
    dlgCombinedRoster();
    ~dlgCombinedRoster() override;

protected:
    void prepare() override;

private:
    std::unique_ptr<Ui::dlgCombinedRoster> ui;
};

} // namespace orlo
