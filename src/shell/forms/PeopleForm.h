#pragma once

#include "shell/forms/ListForm.h"
#include "shell/forms/PersonShown.h"
#include "shell/forms/RecordField.h"

#include <vector>

class QLineEdit;

namespace orlo::widgets
{
class ComboBox;
class TextGrid;
class OptionButton;
} // namespace orlo::widgets

namespace orlo
{

/// A list form on people: what the scouts' and the adults' form have in common. Filters by view and den and an order
/// choice decide which people are listed, a dialog finds people by name, and one page of the record shows the awards.
class PeopleForm : public ListForm, public PersonShown
{
    Q_OBJECT

public:
    // How the find dialog hands over what the user asked for.
    void SetFind(bool find);
    void SetSelectAll(bool selectAll);
    void SetFindNames(const QString& first, const QString& last, const QString& initial);

    /// The key of the den that a den list shows under this text; -1 for none and for "".
    [[nodiscard]] virtual std::int16_t GetDenSID(const QString& denName) const = 0;
    /// "Wolf Den 3" of a den's key, "" for a den that isn't there.
    [[nodiscard]] virtual QString GetDenName(std::int16_t denSID) const;
    /// The person of the current record of the set.
    [[nodiscard]] std::int16_t currentPerson() const override;
    void ReloadAwardGrid() override;

    /// Fills the list from the set and selects its first row.
    virtual void PopulateNavLB();

protected:
    /// What the people forms have beside the controls of every list form.
    struct FilterControls {
        widgets::OptionButton* optActive;
        widgets::OptionButton* optInactive;
        widgets::OptionButton* optActive_Inactive;
        widgets::OptionButton* optOrderLastName;
        widgets::OptionButton* optOrderFirstName;
        widgets::ComboBox* cmbSelectedDens;
        QWidget* pagNote;

        template <class Ui>
        explicit FilterControls(const Ui& ui)
            : optActive(ui.optActive), optInactive(ui.optInactive), optActive_Inactive(ui.optActive_Inactive),
              optOrderLastName(ui.optOrderLastName), optOrderFirstName(ui.optOrderFirstName),
              cmbSelectedDens(ui.cmbSelectedDens), pagNote(ui.pagNote)
        {
        }
    };

    struct AwardControls {
        widgets::TextGrid* grid;
        QLabel* name;
    };
    /// A column of an award grid, its width in twips; 0 hides it.
    struct AwardHeading {
        int width;
        Qt::Alignment alignment;
        QString heading;
    };

    /// "Scout" for the form of the table Scouts with the key Scout_SID.
    explicit PeopleForm(const QString& noun);

    void bindFilters(const FilterControls& controls);
    void bindAwards(const AwardControls& controls);

    void cmdNext_Click() override;
    void cmdLast_Click() override;
    [[nodiscard]] bool confirmDelete() override;
    void deleteAwards() override;
    void openSet() override;
    /// The statement of the view and den filters and the order.
    [[nodiscard]] QString setStatement() const;
    /// The criteria of the view and den filters, behind those that `start` begins with.
    [[nodiscard]] QString BuildViewCriteria(const QString& start) const;
    /// " Order by ... " of the order option.
    [[nodiscard]] QString BuildOrderClause() const;
    /// True if the den filter names a den.
    [[nodiscard]] bool filtersByDen() const;
    /// What the find criteria on names add up to, each part after the first joined by " and "; "" without any.
    [[nodiscard]] QString nameCriteria() const;
    virtual void cmdFind_Click();
    [[nodiscard]] QString newRowText() const override;

    /// Opens the dens in number order and keeps their keys. False, after the message, where there are none.
    [[nodiscard]] bool readDens();
    /// Fills the den filter with the dens read last and "<All>", and gives it its text back.
    void rebuildDenFilter();
    /// The key of the row of a den list that equals the text; -1 for none and for "".
    [[nodiscard]] std::int16_t denOfRow(const widgets::ComboBox& list, const QString& denName) const;
    /// Without the blanks behind it.
    [[nodiscard]] static QString rightTrimmed(QString text);
    /// Gives the award grid its columns from left to right, of which `stretched` takes the width that the others leave,
    /// and the page the name of the current record, if there is one.
    void SetUpAwardGrid(const std::vector<AwardHeading>& columns, int stretched);
    /// Cuts the award grid back to its heading row.
    void cutAwardGrid();
    /// Adds the awards of the current record to the grid.
    void LoadAwardRows();
    /// An award as the grid shows it: its name and type.
    [[nodiscard]] static QString awardText(const store::Recordset& award);

    // What the two forms do in a way of their own.

    [[nodiscard]] virtual QString findStatement() const = 0;
    /// The criterion that leaves a den's people.
    [[nodiscard]] virtual QString denCriterion(std::int16_t den) const = 0;
    /// The statement that gives a person's awards, the oldest first.
    [[nodiscard]] virtual QString awardStatement(std::int16_t person) const = 0;
    virtual void fillAwardRow(widgets::TextGrid& grid, int row, const store::Recordset& award) = 0;
    /// The name on the page of the awards.
    [[nodiscard]] virtual QString personName() const;
    /// Brings the den filter up to date.
    virtual void LoadDenLists() = 0;
    virtual void showFindDialog() = 0;
    /// What the message says when a find, or the list of dens, has no rows.
    [[nodiscard]] virtual QString nothingFoundText() const = 0;
    [[nodiscard]] virtual QString noDensText() const = 0;
    /// The initial between first and last name in a list row.
    [[nodiscard]] virtual QString middlePart(const QString& initial) const = 0;

    std::vector<RecordField> m_fields;  ///< in the order of a save; the form writes the keys behind them
    std::vector<std::int16_t> mDenSIDs; ///< by row of the den lists
    QStringList m_denTexts;
    QString mFindFirst;
    QString mFindLast;
    QString mFindMI;
    bool mFindRequested = false;
    bool mSelectAllRequested = false;

private:
    void enableRecord();
    void tabs_Click();

    QString m_noun;
    AwardControls m_awards{};
    std::optional<FilterControls> m_filters;
    int m_openings = 0;
};

} // namespace orlo
