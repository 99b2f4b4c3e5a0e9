#pragma once

#include "widgets/Form.h"

#include <memory>

namespace Ui
{
class dlgError;
}

namespace orlo
{

/// Shows the failure that CriticalError took up, and enters it in the event log.
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
