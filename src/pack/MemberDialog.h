#pragma once

#include "widgets/Form.h"

#include <cstdint>
#include <vector>

namespace orlo::widgets
{
class ListBox;
}

namespace orlo
{

/// Offers people for the den on frmDenInfo and assigns those selected; base of the dialogs for scouts and adults.
class MemberDialog : public widgets::Form
{
    Q_OBJECT

protected:
    explicit MemberDialog(QString keyField);

    void bindControls(widgets::ListBox* list, QPushButton* cmdSelect, QPushButton* cmdCancel);
    void load() override;

    /// The statement that selects the people offered.
    [[nodiscard]] virtual QString query() const = 0;
    /// Assigns one person to the den.
    virtual void assign(std::int16_t person) = 0;

    std::int16_t mDenSID = 0;

private:
    void cmdSelect_Click();

    QString m_keyField;
    widgets::ListBox* m_list = nullptr;
    std::vector<std::int16_t> mRowSIDs; ///< by row of the list
};

} // namespace orlo
