#pragma once

#include "shell/forms/WalkingForm.h"

#include <memory>
#include <vector>

namespace Ui
{
class frmDenInfo;
}

namespace orlo::widgets
{
class ListBox;
}

namespace orlo
{

/// The dens, one at a time, with the den's active scouts and leaders. Members are added and removed at once,
/// independently of cmdSave.
class frmDenInfo : public WalkingForm
{
    Q_OBJECT

public:
    frmDenInfo();
    ~frmDenInfo() override;

    /// The den on screen, for the dialogs that add members.
    [[nodiscard]] std::int16_t GetDenSID() const { return mCurrentSID; }
    /// The keys of the leaders listed last, "3, 7, 12". A den without active leaders keeps those of the den before.
    [[nodiscard]] const QString& GetAdultSidListStr() const { return mAdultSidList; }

protected:
    void load() override;

    void FillRecord() override;
    void ClearRecord() override;
    void SaveRecord() override;
    void EnableFields() override;
    void DisableFields() override;

    void prepareNew() override;
    void startNew() override;
    void finishSave() override;
    void finishCancelledNew() override;
    void releaseDependants() override;

private:
    void loadScouts();
    void loadLeaders();
    void removeScouts(bool all);
    void removeLeaders(bool all);
    void setFieldsEnabled(bool enabled);
    void setMemberButtonsEnabled(bool enabled);

    void cmdAddScouts_Click();
    void cmdAddDenLeader_Click();

    std::unique_ptr<Ui::frmDenInfo> ui;
    std::vector<std::int16_t> mScoutSIDs; ///< by row of lstScouts
    std::vector<std::int16_t> mAdultSIDs; ///< by row of lstAdults
    QString mAdultSidList;
};

} // namespace orlo
