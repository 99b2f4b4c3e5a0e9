#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class frmCreatePurchaseList;
}

namespace orlo
{

namespace reports
{
class ReportControl;
}
namespace widgets
{
class DataControl;
}

/// What has to be bought: the awards given out in a range of dates, and a free list of other things beside it.
class frmCreatePurchaseList : public widgets::Form
{
    Q_OBJECT

public:
    frmCreatePurchaseList();
    ~frmCreatePurchaseList() override;

protected:
    void load() override;

private:
    void cmdCreate_Click();
    void cmdClearOtherList_Click();
    void createList();
    void runReport(const QString& where);

    std::unique_ptr<Ui::frmCreatePurchaseList> ui;
    widgets::DataControl* dcAssignedPurchases;
    widgets::DataControl* dcOtherPurchaseList;
    reports::ReportControl* crPurchaseList;
};

} // namespace orlo
