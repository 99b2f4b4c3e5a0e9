#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class frmRestorBackup;
}

namespace orlo
{

/// Replaces the database file with a backup from a folder that the user picks.
class frmRestorBackup : public widgets::Form
{
    Q_OBJECT

public:
    frmRestorBackup();
    ~frmRestorBackup() override;

private:
    void RestoreDatabase();
    void copyBackup();

    void cmdRestore_Click();

    std::unique_ptr<Ui::frmRestorBackup> ui;
};

} // namespace orlo
