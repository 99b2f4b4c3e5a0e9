#include "widgets/Calendar.h"

#include "platform/RuntimeError.h"

#include <QKeyEvent>
#include <QTableView>
#include <QTextCharFormat>

namespace orlo::widgets
{

Calendar::Calendar(QWidget* parent) : QCalendarWidget(parent)
{
    setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    setFirstDayOfWeek(Qt::Sunday);
    setVerticalHeaderFormat(NoVerticalHeader);
    // The weekend's red is hard to read on a light ground and on a dark one.
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday})
        setWeekdayTextFormat(day, {});
    setDateEditEnabled(false); // Enter takes the marked day, never one that is half typed
    if (auto* days = findChild<QTableView*>())
        days->installEventFilter(this);
    connect(this, &QCalendarWidget::activated, this, &Calendar::doubleClicked);
}

int Calendar::day() const
{
    const QDate date = selectedDate();
    return date.year() == yearShown() && date.month() == monthShown() ? date.day() : 0;
}

void Calendar::setDay(int day)
{
    const QDate date(yearShown(), monthShown(), day);
    if (!date.isValid())
        throw platform::RuntimeError(platform::InvalidProcedureCall);
    setSelectedDate(date);
}

bool Calendar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            event->ignore(); // belongs to the form's default button
            return true;
        }
    }
    return QCalendarWidget::eventFilter(watched, event);
}

} // namespace orlo::widgets
