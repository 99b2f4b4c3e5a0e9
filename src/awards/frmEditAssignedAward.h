#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class frmEditAssignedAward;
}

namespace orlo
{

/// Edits date, award and quantity of an assigned award. It writes nothing itself: the gEdit... values bring the row in
/// and, with gEditSaved, return the changes to the caller.
class frmEditAssignedAward : public widgets::Form
{
    Q_OBJECT

public:
    frmEditAssignedAward();
    ~frmEditAssignedAward() override;

protected:
    void load() override;

private:
    void cmdSave_Click();

    std::unique_ptr<Ui::frmEditAssignedAward> ui;
};

} // namespace orlo
