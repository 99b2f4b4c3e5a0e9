#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class dlgError;
}

namespace orlo
{

/// Shows the failure taken up by CriticalError, and writes it to the event log.
class dlgError : public widgets::Form
{
    Q_OBJECT

public:
    dlgError();
    ~dlgError() override;

protected:
    void load() override;

private:
    std::unique_ptr<Ui::dlgError> ui;
};

} // namespace orlo
