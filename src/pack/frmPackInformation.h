#pragma once

#include "shell/forms/RecordField.h"
#include "shell/forms/RecordsetVariable.h"
#include "widgets/Form.h"

#include <cstdint>
#include <memory>

namespace Ui
{
class frmPackInformation;
}

namespace orlo
{

/// The only row of the pack's table: its number and charter organization.
class frmPackInformation : public widgets::Form
{
    Q_OBJECT

public:
    frmPackInformation();
    ~frmPackInformation() override;

protected:
    void load() override;

private:
    void showRecord();
    void SavePackInfo();
    void promptSaveChanges();

    void cmdSave_Click();
    void cmdCancel_Click();
    void cmdExit_Click();

    std::unique_ptr<Ui::frmPackInformation> ui;
    // The enabled state of cmdSave is the changed flag.
    RecordsetVariable rsPack;
    RecordField m_number;
    RecordField m_name;
    std::int16_t mPackCount = 0;
    bool mPackNew = false; ///< from loading an empty table until the first save
};

} // namespace orlo
