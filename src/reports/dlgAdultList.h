#pragma once

#include "reports/ReportDialog.h"

#include <memory>

namespace Ui
{
class dlgAdultList;
}

namespace orlo
{

/// Runs the telephone list of adults, alphabetically or by den.
class dlgAdultList : public ReportDialog
{
    Q_OBJECT

public:
    dlgAdultList();
    ~dlgAdultList() override;

protected:
    void prepare() override;

private:
    std::unique_ptr<Ui::dlgAdultList> ui;
};

} // namespace orlo
