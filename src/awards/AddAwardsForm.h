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

/// Gives several awards on one date to the person on screen in the record form below: what the dialogs for scouts and
/// for adults have in common. Checking an award puts it among the selected ones, taking it out of these unchecks it.
class AddAwardsForm : public widgets::Form
{
    Q_OBJECT

public:
    /// Names the form whose person gets the awards; it outlives the dialog.
    void giveTo(PersonShown& shown) { m_shown = &shown; }

protected:
    /// Where the awards of one kind of person are kept.
    struct Holder {
        QString table;
        QString keyField;
    };

    explicit AddAwardsForm(Holder holder);

    /// Connects the controls that both dialogs have; the button that adds has a name of its own in each.
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
    std::vector<ListEntry> mAwards; ///< in the query's order, which isn't that of the sorted lists
};

} // namespace orlo
