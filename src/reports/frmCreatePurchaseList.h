#pragma once

#include "reports/ReportDialog.h"

#include <memory>

namespace Ui
{
class frmCreatePurchaseList;
}

namespace orlo
{

namespace widgets
{
class DataControl;
}

/// What has to be bought: the awards assigned in a range of dates, and a free list of other things.
class frmCreatePurchaseList : public ReportDialog
{
    Q_OBJECT

public:
    frmCreatePurchaseList();
    ~frmCreatePurchaseList() override;

protected:
    void load() override;
    void prepare() override;

private:
    void cmdCreate_Click();
    void cmdClearOtherList_Click();
    void createList();

    std::unique_ptr<Ui::frmCreatePurchaseList> ui;
    widgets::DataControl* dcAssignedPurchases;
    widgets::DataControl* dcOtherPurchaseList;
};

} // namespace orlo
