#pragma once

#include "shell/forms/AwardPage.h"
#include "shell/forms/DenList.h"
#include "shell/forms/FindDialog.h"
#include "shell/forms/PeopleFilter.h"
#include "shell/forms/PersonShown.h"
#include "shell/forms/RecordField.h"
#include "shell/forms/RecordForm.h"

#include <vector>

class QLineEdit;
class QTabWidget;

namespace orlo::widgets
{
class ComboBox;
class ListBox;
class OptionButton;
} // namespace orlo::widgets

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
    ~PeopleForm() override;

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
    };
    /// What the people forms have beside the controls of every record form.
    struct PeopleControls {
        widgets::ListBox* list;
        QTabWidget* tabs;
        QWidget* pagNote;
        QPushButton* cmdFind;
        QPushButton* cmdAddAward;
        QPushButton* cmdDeleteAward;
        widgets::OptionButton* optActive;
        widgets::OptionButton* optInactive;
        widgets::OptionButton* optActive_Inactive;
        widgets::OptionButton* optOrderLastName;
        widgets::OptionButton* optOrderFirstName;
        widgets::ComboBox* cmbSelectedDens;
        QLineEdit* txtFirst;
        QLineEdit* txtMi;
        QLineEdit* txtLast;
    };

    explicit PeopleForm(const Words& words);

    /// Takes the controls of the form and connects those that both forms have.
    template <class Ui>
    void bindControls(const Ui& ui, const NamedControls& named)
    {
        RecordForm::bindControls({ui, ui.txtFirst});
        bindPeople({.list = named.list,
                    .tabs = named.tabs,
                    .pagNote = ui.pagNote,
                    .cmdFind = ui.cmdFind,
                    .cmdAddAward = ui.cmdAddAward,
                    .cmdDeleteAward = ui.cmdDeleteAward,
                    .optActive = ui.optActive,
                    .optInactive = ui.optInactive,
                    .optActive_Inactive = ui.optActive_Inactive,
                    .optOrderLastName = ui.optOrderLastName,
                    .optOrderFirstName = ui.optOrderFirstName,
                    .cmbSelectedDens = ui.cmbSelectedDens,
                    .txtFirst = ui.txtFirst,
                    .txtMi = ui.txtMi,
                    .txtLast = ui.txtLast},
                   named);
    }

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
    /// True if the den filter names a den.
    [[nodiscard]] bool filtersByDen() const;
    /// Opens the dens in number order and keeps their keys. False, after the message, where there are none.
    [[nodiscard]] bool readDens();
    /// Fills the den filter with the dens read last and "<All>", and gives it its text back.
    void rebuildDenFilter();

    /// Gives the award grid its columns from left to right, of which `stretched` takes the width that the others leave,
    /// and the page the name of the current record, if there is one.
    void SetUpAwardGrid(const std::vector<AwardPage::Column>& columns, int stretched);
    /// Adds the awards of the current record to the grid.
    void LoadAwardRows();

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

    std::vector<RecordField> m_fields; ///< in the order of a save; the form writes the keys after them
    DenRows m_dens;
    NameCriteria m_names;
    std::optional<AwardPage> m_awardPage;

private:
    void bindPeople(const PeopleControls& controls, const NamedControls& named);
    void showCurrent();
    void showEmpty();
    void enableRecord();
    void enableExtraButtons(bool on);
    [[nodiscard]] bool confirmDelete();
    [[nodiscard]] QString newRowText() const;
    void tabs_Click();

    Words m_words;
    std::optional<PeopleControls> m_people;
    int m_openings = 0;
    QString m_justOpened; // the set's statement while its den lists are loaded
};

} // namespace orlo
