#pragma once

#include "shell/forms/AwardPage.h"
#include "shell/forms/DenList.h"
#include "shell/forms/FilterControls.h"
#include "shell/forms/FindRequest.h"
#include "shell/forms/PersonShown.h"
#include "shell/forms/RecordForm.h"

#include <vector>

class QTabWidget;

namespace orlo::widgets
{
class ListBox;
}

namespace orlo
{

/// A record form on people: what the scouts' and the adults' form have in common.
///
/// Beside the record stands a list of all records. Row n of the list is record n of the set, by position alone; a click
/// in the list, by the user or by code, brings that record on screen. One routine, SetNavButtons, finds the ends of the
/// set, so the buttons' handlers needn't. Filters by view and den and an order choice decide which people are listed, a
/// dialog finds people by name, and one page of the record shows the awards.
class PeopleForm : public RecordForm, public PersonShown, public FindRequest
{
    Q_OBJECT

public:
    /// The key of the den that a den list shows under this text; -1 for none and for "".
    [[nodiscard]] virtual std::int16_t GetDenSID(const QString& denName) const = 0;
    /// "Wolf Den 3" of a den's key, "" for a den that isn't there.
    [[nodiscard]] QString GetDenName(std::int16_t denSID) const;
    /// The person of the current record of the set.
    [[nodiscard]] std::int16_t currentPerson() const override;
    void ReloadAwardGrid() override;
    /// Fills the list from the set and selects its first row.
    virtual void PopulateNavLB();

protected:
    /// How the screen calls one of its people, and what it says where there is nothing to show.
    struct Words {
        QString noun; ///< "Scout" for the table Scouts with the key Scout_SID
        QString nothingFound;
        QString noDens;
    };
    /// The controls that each of the two forms calls by a name of its own.
    struct NamedControls {
        widgets::ListBox* list;
        QTabWidget* tabs;
        widgets::TextGrid* awards;
        QLabel* personName;
        QLabel* noteName;
    };

    explicit PeopleForm(const Words& words);

    /// Connects the controls that both forms have.
    void bindControls(const NamedControls& named);

    // ---- The routines, by their names

    void cmdFirst_Click() override;
    void cmdPrevious_Click() override;
    void cmdNext_Click() override;
    void cmdLast_Click() override;
    void cmdNew_Click() override;
    void cmdSave_Click() override;
    void cmdDelete_Click() override;
    void cmdCancel_Click() override;
    void cmdFind_Click();
    void list_Click();
    virtual void cmdDeleteAward_Click() = 0;

    void SetNavButtons() override;
    /// Makes a row the list's current one, 1-based. It counts as a click when the row changes.
    void SelectListRow(int position);
    /// Ends SaveRecord, the record having been written: a new one gets its row, and the screen shows what was stored.
    void finishSaveRecord();
    /// Opens the set anew through the filters and fills the list.
    virtual void openSet();

    [[nodiscard]] QWidget* fieldInView() const override;
    /// Brings cmdNew, cmdDelete and the extra buttons back, the new-record state having ended.
    void enableRecordButtons();

    /// The filters as they are set. Raises as GetDenSID().
    [[nodiscard]] PeopleFilter filter() const;
    /// Opens the dens in number order and keeps their keys. False, after the message, where there are none.
    [[nodiscard]] bool readDens();
    [[nodiscard]] FilterControls& filters() { return *m_filters; }

    /// Gives the award grid its columns from left to right, of which `stretched` takes the width that the others leave,
    /// and the page the name of the current record, if there is one.
    void SetUpAwardGrid(const std::vector<AwardPage::Column>& columns, int stretched);
    /// Adds the awards of the current record to the grid.
    void LoadAwardRows() { m_awardPage->addAwards(awardStatement(currentPerson())); }
    /// Has cmdAddAward open the dialog that gives awards to the person on screen.
    template <class Dialog>
    void giveAwardsBy()
    {
        connect(&button("cmdAddAward"), &QPushButton::clicked, this, [this] {
            auto& dialog = widgets::Instance<Dialog>::get();
            dialog.giveTo(*this);
            dialog.showWaiting();
        });
    }

    // ---- What the two forms do in a way of their own

    /// Reloads what hangs off the record on screen and FillRecord doesn't reload.
    virtual void reloadDependants() {}
    /// Sets the defaults of a new record, its controls having been emptied.
    virtual void setDefaults() = 0;
    /// Ends cmdNew, the new-record state having begun.
    virtual void finishNew() {}
    /// Deletes the awards of the record that is about to be deleted.
    virtual void deleteAwards() = 0;
    /// Brings the den filter up to date.
    virtual void LoadDenLists() = 0;
    /// The criterion that leaves a den's people.
    [[nodiscard]] virtual QString denCriterion(std::int16_t den) const = 0;
    virtual void showFindDialog() = 0;
    [[nodiscard]] virtual QString findStatement() const = 0;
    /// What stands between first and last name in a list row.
    [[nodiscard]] virtual QString listMiddle(const QString& initial) const;
    /// The statement that gives a person's awards, the oldest first.
    [[nodiscard]] virtual QString awardStatement(std::int16_t person) const = 0;
    virtual void fillAwardRow(widgets::TextGrid& grid, int row, const store::Recordset& award) = 0;
    /// The name on the page of the awards.
    [[nodiscard]] virtual QString personName() const;

    DenRows m_dens;
    NameCriteria m_names;
    std::optional<AwardPage> m_awardPage;

private:
    void showCurrent();
    void showEmpty();
    void enableRecord();
    void enableExtraButtons(bool on);
    [[nodiscard]] bool confirmDelete();
    void tabs_Click();

    Words m_words;
    widgets::ListBox* m_list = nullptr;
    QTabWidget* m_tabs = nullptr;
    std::optional<FilterControls> m_filters;
    int m_openings = 0;
};

} // namespace orlo
