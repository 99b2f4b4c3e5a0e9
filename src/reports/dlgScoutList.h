#pragma once

#include "reports/ReportDialog.h"

#include <memory>

namespace Ui
{
class dlgScoutList;
}

namespace orlo
{

/// Runs the telephone list of scouts, by den or alphabetically.
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
