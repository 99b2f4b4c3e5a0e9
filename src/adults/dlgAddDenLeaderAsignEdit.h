#pragma once

#include "adults/LeaderLists.h"
#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class dlgAddDenLeaderAsignEdit;
}

namespace orlo
{

/// Changes the position selected on frmAdults: its title, or its den.
class dlgAddDenLeaderAsignEdit : public widgets::Form
{
    Q_OBJECT

public:
    dlgAddDenLeaderAsignEdit();
    ~dlgAddDenLeaderAsignEdit() override;

protected:
    void load() override;

private:
    void cmdSave_Click();
    void updatePackPosition();
    void movePosition(std::int16_t den);
    void changeTitle();
    [[nodiscard]] QString heldPosition() const;

    std::unique_ptr<Ui::dlgAddDenLeaderAsignEdit> ui;
    std::int16_t mAdultSID = 0;
    std::int16_t mOldDenSID = 0; ///< 0 for a pack position
    QString mDenText;
    QString mTitle;
    QString mPackKey;
    bool mDenChanged = false;
    int mDenIndex = -1; ///< the row picked in cmbDen
    leaderLists::Numbers mDenSIDs;
    leaderLists::Numbers mTitleRanks;
};

} // namespace orlo
