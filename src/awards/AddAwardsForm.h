#pragma once

#include "awards/AwardList.h"
#include "widgets/Form.h"

class QLineEdit;
namespace orlo::widgets
{
class CheckListBox;
class ListBox;
} // namespace orlo::widgets

namespace orlo
{

class PersonShown;

/// Gives several awards on one date to the person shown by the record form below; base of the dialogs for scouts and
/// adults. Checking an award adds it to the selected ones, removing it there unchecks it.
class AddAwardsForm : public widgets::Form
{
    Q_OBJECT

public:
    /// Sets the form whose person gets the awards; it outlives the dialog.
    void giveTo(PersonShown& shown) { m_shown = &shown; }

protected:
    /// Where the awards of one kind of person are stored.
    struct Holder {
        QString table;
        QString keyField;
    };

    explicit AddAwardsForm(Holder holder);

    /// Connects the controls that both dialogs have; the button that adds is named differently in each.
    void bindControls(QPushButton* add);
    void load() override;

private:
    void lbAwardList_ItemCheck();
    void lbSelected_DblClick();
    void cmdSelectSelected_Click();
    void cmdSelectAll_Click();
    void cmdAdd_Click();

    [[nodiscard]] std::int16_t awardSID(const QString& text) const;
    void removeText(const QString& text);
    void removeEntries(bool all);
    void uncheck(const QString& text);
    [[nodiscard]] bool addAwards();

    Holder m_holder;
    PersonShown* m_shown = nullptr;
    QLineEdit* m_date = nullptr;
    widgets::CheckListBox* m_catalogue = nullptr;
    widgets::ListBox* m_selected = nullptr;
    std::vector<ListEntry> mAwards; ///< in the query's order, unlike the sorted lists
};

} // namespace orlo
