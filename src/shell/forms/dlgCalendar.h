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

/// The calendar that picks a date for a date field; the result is in gCalendarDate.
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

/// Makes a text box a date field: a double click, F4, or a click on its icon opens the calendar, and the picked date
/// replaces the text. Then `picked` runs, if set.
void openCalendarOnDoubleClick(QLineEdit* field, std::function<void()> picked = {});

} // namespace orlo
