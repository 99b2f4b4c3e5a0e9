#pragma once

#include "reports/ReportDialog.h"

#include <memory>

namespace Ui
{
class dlgAwardsList;
}

namespace orlo
{

/// Runs the list of the award catalogue, with or without descriptions.
class dlgAwardsList : public ReportDialog
{
    Q_OBJECT

public:
    dlgAwardsList();
    ~dlgAwardsList() override;

protected:
    void load() override;
    void prepare() override;

private:
    std::unique_ptr<Ui::dlgAwardsList> ui;
};

} // namespace orlo
