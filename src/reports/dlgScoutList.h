#pragma once

#include "reports/ReportDialog.h"

#include <memory>

namespace Ui
{
class dlgScoutList;
}

namespace orlo
{

/// Runs the telephone list of the scouts, by den or alphabetical.
class dlgScoutList : public ReportDialog
{
    Q_OBJECT

public:
    dlgScoutList();
    ~dlgScoutList() override;

protected:
    void prepare() override;

private:
    std::unique_ptr<Ui::dlgScoutList> ui;
};

} // namespace orlo
