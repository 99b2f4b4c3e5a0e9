#pragma once

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

/// Keeps the one row of the pack's own table: its number and its charter organization.
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
    std::int16_t mPackCount = 0;
    bool mPackNew = false; ///< from a load on an empty table until the first save
};

} // namespace orlo
