#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class dlgError;
}

namespace orlo
{

/// Shows the failure taken up by CriticalError, and writes it to the event log. Its details can be copied; the web site
/// in its text is a link.
class dlgError : public widgets::Form
{
    Q_OBJECT

public:
    dlgError();
    ~dlgError() override;

protected:
    void load() override;

private:
    void copyDetails();
    void openWebSite(const QUrl& address);

    std::unique_ptr<Ui::dlgError> ui;
};

} // namespace orlo
