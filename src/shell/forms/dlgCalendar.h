#pragma once

#include "widgets/Form.h"

#include <memory>

class QLineEdit;
namespace Ui
{
class dlgCalendar;
}

namespace orlo
{

/// The month calendar in which a date is picked for a date field; the answer lies in gCalendarDate.
class dlgCalendar : public widgets::Form
{
    Q_OBJECT

public:
    dlgCalendar();
    ~dlgCalendar() override;

protected:
    void load() override;

private:
    void cmdSelectDate_Click();
    void takeDate();

    std::unique_ptr<Ui::dlgCalendar> ui;
};

/// Makes a text box a date field: a double click, F4, or a click on its sign opens the calendar, and a date picked
/// there replaces the text. Then `picked` runs, where the form has something to do.
void openCalendarOnDoubleClick(QLineEdit* field, std::function<void()> picked = {});

} // namespace orlo
