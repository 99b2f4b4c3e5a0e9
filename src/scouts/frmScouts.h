#pragma once

#include "shell/forms/PeopleForm.h"

#include <memory>

namespace Ui
{
class frmScouts;
}

namespace orlo
{

class DenLeaderBox;

/// The scouts: a list of those in view, and one scout's record, with both parents, awards and a note.
class frmScouts : public PeopleForm
{
    Q_OBJECT

public:
    frmScouts();
    ~frmScouts() override;

    /// The current record's scout.
    [[nodiscard]] std::int16_t GetScoutSID() const;
    [[nodiscard]] std::int16_t GetDenSID(const QString& denName) const override;
    /// The den of the record on screen.
    [[nodiscard]] std::int16_t GetDenSIDPub() const { return mDenSID; }
    /// What dlgFindScout searches for: beginnings of names; empty texts don't count.
    void SetFindData(const QString& first, const QString& last, const QString& initial);
    /// The adult picked in dlgSelectAdultLink, 0 for none.
    void SetParentDenLeaderSID(std::int16_t sid) { mPickedAdultSID = sid; }

protected:
    void load() override;
    void endRoutine() const override;

    void FillRecord() override;
    void ClearRecord() override;
    void SaveRecord() override;
    void EnableFields() override;
    void DisableFields() override;

    void setDefaults() override;
    void finishNew() override;
    void cmdDeleteAward_Click() override;
    void deleteAwards() override { DeleteAwardsOfScout(); }

    [[nodiscard]] QString findStatement() const override;
    [[nodiscard]] QString denCriterion(std::int16_t den) const override;
    [[nodiscard]] QString awardStatement(std::int16_t person) const override;
    void fillAwardRow(widgets::TextGrid& grid, int row, const store::Recordset& award) override;
    [[nodiscard]] QString personName() const override;
    void LoadDenLists() override;
    void showFindDialog() override;
    [[nodiscard]] QString listMiddle(const QString& initial) const override;

private:
    void bindFields();
    void bindParents();
    void setFieldsEnabled(bool enabled);
    [[nodiscard]] bool PickDenLeader();
    void OpenScouts() { openSet(); }
    void DeleteAwardsOfScout();
    void comDen_Change();
    void cmdEditAward_Click();

    std::unique_ptr<Ui::frmScouts> ui;
    std::int16_t mDenSID = 0; ///< 0 for a stored record without a den, -1 if the text of comDen is no den's
    std::int16_t mPickedAdultSID = 0;
    DenLeaderBox* m_parent1Leader = nullptr;
    DenLeaderBox* m_parent2Leader = nullptr;
};

} // namespace orlo
