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

/// What the scouts' and the adults' form have in common.
///
/// A list of all records stands beside the current one. Row n of the list is record n of the set, by position alone; a
/// click in the list, by the user or by code, shows that record. SetNavButtons alone finds the ends of the set, so the
/// buttons' handlers needn't. Filters for view and den and a choice of order decide who is listed, a dialog finds
/// people by name, and one page shows a person's awards.
class PeopleForm : public RecordForm, public PersonShown, public FindRequest
{
    Q_OBJECT

public:
    /// The key of the den that the den list shows under this text; -1 if there is none, and for "".
    [[nodiscard]] virtual std::int16_t GetDenSID(const QString& denName) const = 0;
    /// "Wolf Den 3" for a den's key; "" if there is no such den.
    [[nodiscard]] QString GetDenName(std::int16_t denSID) const;
    /// The current record's person.
    [[nodiscard]] std::int16_t currentPerson() const override;
    void ReloadAwardGrid() override;
    /// Fills the list from the set and selects the first row.
    virtual void PopulateNavLB();

protected:
    /// The form's word for a person, and its messages for empty results.
    struct Words {
        QString noun; ///< "Scout" stands for table Scouts and key Scout_SID
        QString nothingFound;
        QString noDens;
    };
    /// The controls that the two forms name differently.
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
    /// Selects a row of the list, from 1. Counts as a click if the row changes.
    void SelectListRow(int position);
    /// Ends SaveRecord after writing: adds a row for a new record and shows what was stored.
    void finishSaveRecord();
    /// Opens the set again through the filters and fills the list.
    virtual void openSet();

    [[nodiscard]] QWidget* fieldInView() const override;
    /// Ends the new-record state: enables cmdNew, cmdDelete and the extra buttons.
    void enableRecordButtons();

    /// The current filters. Raises as GetDenSID().
    [[nodiscard]] PeopleFilter filter() const;
    /// Reads the dens in number order, with their keys. False, after a message, if there are none.
    [[nodiscard]] bool readDens();
    [[nodiscard]] FilterControls& filters() { return *m_filters; }

    /// Sets the award grid's columns; `stretched` takes the remaining width. Shows the current record's name, if there
    /// is one, on the awards' page.
    void SetUpAwardGrid(const std::vector<AwardPage::Column>& columns, int stretched);
    /// Adds the current record's awards to the grid.
    void LoadAwardRows() { m_awardPage->addAwards(awardStatement(currentPerson())); }
    /// Makes cmdAddAward open the dialog that gives awards to the person on screen.
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

    /// Reloads what belongs to the record but isn't reloaded by FillRecord.
    virtual void reloadDependants() {}
    /// Sets a new record's defaults, after its controls were cleared.
    virtual void setDefaults() = 0;
    /// Called at the end of cmdNew, in the new-record state.
    virtual void finishNew() {}
    /// Deletes the awards of a record about to be deleted.
    virtual void deleteAwards() = 0;
    /// Updates the den filter.
    virtual void LoadDenLists() = 0;
    /// The criterion that selects a den's people.
    [[nodiscard]] virtual QString denCriterion(std::int16_t den) const = 0;
    virtual void showFindDialog() = 0;
    [[nodiscard]] virtual QString findStatement() const = 0;
    /// The text between first and last name in a list row.
    [[nodiscard]] virtual QString listMiddle(const QString& initial) const;
    /// The statement that selects a person's awards, oldest first.
    [[nodiscard]] virtual QString awardStatement(std::int16_t person) const = 0;
    virtual void fillAwardRow(widgets::TextGrid& grid, int row, const store::Recordset& award) = 0;
    /// The name shown on the awards' page.
    [[nodiscard]] virtual QString personName() const;

    DenRows m_dens;
    NameCriteria m_names;
    std::optional<AwardPage> m_awardPage;

private:
    void showCurrent();
    void showEmpty();
    void tellWhyEmpty();
    void enableRecord();
    void enableExtraButtons(bool on);
    [[nodiscard]] bool confirmDelete();
    void tabs_Click();

    Words m_words;
    widgets::ListBox* m_list = nullptr;
    QTabWidget* m_tabs = nullptr;
    std::optional<FilterControls> m_filters;
    int m_openings = 0;
    QString m_justOpened; // the set's statement while its den lists are loaded
};

} // namespace orlo
