#pragma once

#include "adults/LeaderLists.h"
#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class dlgAddDenLeaderAsign;
}

namespace orlo
{

/// Gives the adult on frmAdults a position in a den where they have none yet, or one in the pack.
class dlgAddDenLeaderAsign : public widgets::Form
{
    Q_OBJECT

public:
    dlgAddDenLeaderAsign();
    ~dlgAddDenLeaderAsign() override;

protected:
    void load() override;

private:
    void showKind(bool den);
    void cmdSave_Click();
    void addDenPosition();
    void addPackPosition();
    void finish();

    std::unique_ptr<Ui::dlgAddDenLeaderAsign> ui;
    std::int16_t mAdultSID = 0;
    int mDenIndex = -1; ///< the row picked in cmbDen
    leaderLists::Numbers mDenSIDs;
    leaderLists::Numbers mDenRanks;
    leaderLists::Numbers mPackRanks;
};

} // namespace orlo
