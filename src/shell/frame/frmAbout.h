#pragma once

#include "widgets/Form.h"

#include <memory>
#include <optional>

namespace Ui
{
class frmAbout;
}

namespace orlo
{

/// Shows the program's name, its version and its notices.
class frmAbout : public widgets::Form
{
    Q_OBJECT

public:
    frmAbout();
    ~frmAbout() override;

    /// Starts the system information tool that the machine's registry names; tells if there is none. A tool that
    /// doesn't start is passed over in silence. No control of the form leads here.
    static void StartSysInfo();
    /// A value of a registry key below HKEY_LOCAL_MACHINE; none where the key, the value or the registry is missing.
    [[nodiscard]] static std::optional<QString> GetKeyValue(const QString& key, const QString& name);

protected:
    void load() override;

private:
    std::unique_ptr<Ui::frmAbout> ui;
};

} // namespace orlo
