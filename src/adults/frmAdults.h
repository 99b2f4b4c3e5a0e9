#pragma once

#include "shell/forms/PeopleForm.h"
#include "widgets/GridLayout.h"

#include <memory>

namespace Ui
{
class frmAdults;
}
namespace orlo::widgets
{
class DataControl;
}

namespace orlo
{

/// The adults: a list of those in view, and one adult's record, with positions, awards and a note.
class frmAdults : public PeopleForm
{
    Q_OBJECT

public:
    frmAdults();
    ~frmAdults() override;

    /// The current record's adult.
    [[nodiscard]] std::int16_t GetAdultSID() const { return currentPerson(); }
    [[nodiscard]] std::int16_t GetDenSID(const QString& denName) const override;
    /// What dlgFindAdult searches for: beginnings of names and a den, -1 for any; empty texts don't count.
    void SetFindData(const QString& first, const QString& last, const QString& initial, std::int16_t den);
    void PopulateNavLB() override;
    /// Shows the current adult's positions again.
    void PopulateDenAssignments();
    /// The selected position: its den as "Wolf Den 3", its title and its key as a pack position. Returns the den's key,
    /// 0 for a pack position.
    std::int16_t GetDenText(QString& denText, QString& title, QString& packKey) const;

protected:
    void load() override;

    void FillRecord() override;
    void ClearRecord() override;
    void SaveRecord() override;
    void EnableFields() override { setFieldsEnabled(true); }
    void DisableFields() override;

    void openSet() override;
    void reloadDependants() override { PopulateDenAssignments(); }
    void setDefaults() override;
    void finishNew() override { mAssignedDen = -1; }
    void cmdDeleteAward_Click() override;
    void deleteAwards() override;

    [[nodiscard]] QString findStatement() const override;
    [[nodiscard]] QString denCriterion(std::int16_t den) const override;
    void LoadDenLists() override;
    void showFindDialog() override;
    [[nodiscard]] QString awardStatement(std::int16_t person) const override;
    void fillAwardRow(widgets::TextGrid& grid, int row, const store::Recordset& award) override;

private:
    void bindFields();
    void bindPositions();
    void setFieldsEnabled(bool enabled);
    void applyPositionLayout();
    [[nodiscard]] QStringList positionKeys() const;
    void cmdAddDenAssn_Click();
    void cmdEditDenAssn_Click();
    void cmdDelDenAssn_Click();
    void deletePosition();

    std::unique_ptr<Ui::frmAdults> ui;
    widgets::DataControl* dataDenAssignments;
    widgets::StoredLayout m_positionLayout;
    std::int16_t m_positionsOf = 0; // the adult whose positions are shown
    std::int16_t mFindDen = -1;
    std::int16_t mAssignedDen = 0; // no den: Leader_Den_Assignments says who belongs to one
};

} // namespace orlo
