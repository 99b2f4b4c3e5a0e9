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

/// Shows the program's name, version and notices.
class frmAbout : public widgets::Form
{
    Q_OBJECT

public:
    frmAbout();
    ~frmAbout() override;

    /// Starts the system information tool named in the machine's registry; shows a message if there is none. A failing
    /// start is ignored. No control of the form leads here.
    static void StartSysInfo();
    /// A registry value below HKEY_LOCAL_MACHINE; nothing if the key, the value or the registry doesn't exist.
    [[nodiscard]] static std::optional<QString> GetKeyValue(const QString& key, const QString& name);

protected:
    void load() override;

private:
    std::unique_ptr<Ui::frmAbout> ui;
};

} // namespace orlo
