#pragma once

#include "shell/ListForm.h"

#include <vector>

namespace orlo::widgets
{
class ComboBox;
class FlexGrid;
class OptionButton;
} // namespace orlo::widgets

namespace orlo
{

/// A list form on people: what the scouts' and the adults' form have in common. Filters by view and den and an order
/// choice decide which people are listed, a dialog finds people by name, and one page of the record shows the awards.
class PeopleForm : public ListForm
{
    Q_OBJECT

public:
    // How the find dialog hands over what the user asked for.
    void SetFind(bool find);
    void SetSelectAll(bool selectAll);
    void SetFindNames(const QString& first, const QString& last, const QString& initial);

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

    using ListForm::ListForm;

    void bindFilters(const FilterControls& controls);

    void openSet() override;
    /// " Order by ... " of the order option.
    [[nodiscard]] QString BuildOrderClause() const;
    /// True if the den filter names a den.
    [[nodiscard]] bool filtersByDen() const;
    /// What the find criteria on names add up to, each part after the first joined by " and "; "" without any.
    [[nodiscard]] QString nameCriteria() const;
    void cmdFind_Click();
    [[nodiscard]] QString newRowText() const override;

    /// Opens the dens in number order and keeps their keys. False, after the message, where there are none.
    [[nodiscard]] bool readDens();
    /// Fills the den filter with the dens read last and "<All>", and gives it its text back.
    void rebuildDenFilter();
    /// "Wolf Den 3" of a record of Dens.
    [[nodiscard]] static QString denText(const store::Recordset& den);
    /// A date for a date field as it is written: "mm/dd/yyyy", or the text itself where it is no date.
    [[nodiscard]] static QString dateText(const QString& typed);
    /// The text of a date field of the current record, "" for the date that marks a missing one.
    [[nodiscard]] QString birthDateText(QStringView field) const;
    /// Without the blanks behind it.
    [[nodiscard]] static QString rightTrimmed(QString text);
    /// Cuts an award grid back to its heading row.
    static void cutGrid(widgets::FlexGrid& grid);

    // What the two forms do in a way of their own.

    /// The statement of the view and den filters and the order.
    [[nodiscard]] virtual QString setStatement() const = 0;
    [[nodiscard]] virtual QString findStatement() const = 0;
    /// Brings the den filter up to date.
    virtual void LoadDenLists() = 0;
    virtual void showFindDialog() = 0;
    /// What the message says when a find, or the list of dens, has no rows.
    [[nodiscard]] virtual QString nothingFoundText() const = 0;
    [[nodiscard]] virtual QString noDensText() const = 0;
    /// The initial between first and last name in a list row.
    [[nodiscard]] virtual QString middlePart(const QString& initial) const = 0;

    [[nodiscard]] const FilterControls& filters() const { return *m_filters; }

    std::vector<std::int16_t> mDenSIDs; ///< by row of the den lists
    QStringList m_denTexts;
    QString mFindFirst;
    QString mFindLast;
    QString mFindMI;
    bool mFindRequested = false;
    bool mSelectAllRequested = false;

private:
    void tabs_Click();

    std::optional<FilterControls> m_filters;
};

} // namespace orlo
