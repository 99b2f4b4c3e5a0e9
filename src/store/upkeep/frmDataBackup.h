#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class frmDataBackup;
}

namespace orlo
{

/// Copies the database file to a folder that the user picks.
class frmDataBackup : public widgets::Form
{
    Q_OBJECT

public:
    frmDataBackup();
    ~frmDataBackup() override;

private:
    void BackupDatabase();
    void copyDatabase();
    static void reopenDatabase();

    void cmdBack_Click();

    std::unique_ptr<Ui::frmDataBackup> ui;
};

} // namespace orlo
