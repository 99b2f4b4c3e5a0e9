#include "widgets/Calendar.h"

#include "platform/RuntimeError.h"
#include "widgets/Glyphs.h"

#include <QKeyEvent>
#include <QSpinBox>
#include <QTableView>
#include <QTextCharFormat>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace orlo::widgets
{

Calendar::Calendar(QWidget* parent)
    : QCalendarWidget(parent), m_days(findChild<QTableView*>()), m_year(findChild<QSpinBox*>())
{
    setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    setFirstDayOfWeek(Qt::Sunday);
    setMinimumDate(QDate(100, 1, 1)); // no field takes an earlier one
    setVerticalHeaderFormat(NoVerticalHeader);
    // Red weekends are hard to read on both light and dark grounds.
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday})
        setWeekdayTextFormat(day, {});
    setDateEditEnabled(false); // Enter takes the marked day, never a half-typed one
    m_days->setAccessibleName(QStringLiteral("Days"));
    for (const auto& [part, name] : {std::pair("qt_calendar_prevmonth", QStringLiteral("Previous month")),
                                     {"qt_calendar_nextmonth", QStringLiteral("Next month")},
                                     {"qt_calendar_monthbutton", QStringLiteral("Month")},
                                     {"qt_calendar_yearbutton", QStringLiteral("Change the year")},
                                     {"qt_calendar_yearedit", QStringLiteral("Year")}})
        if (auto* control = findChild<QWidget*>(QLatin1String(part)))
            control->setAccessibleName(name);
    for (const auto& [button, glyph] :
         {std::pair("qt_calendar_prevmonth", Glyph::Previous), {"qt_calendar_nextmonth", Glyph::Next}})
        findChild<QToolButton*>(QLatin1String(button))->setIcon(glyphIcon(glyph, QPalette::HighlightedText));
    for (QObject* watched : std::initializer_list<QObject*>{m_days, m_days->viewport(), m_year})
        watched->installEventFilter(this);
    connect(this, &QCalendarWidget::clicked, this, [this] { m_dayClicked = true; });
}

void Calendar::endYearEdit()
{
    if (!m_year->isVisible())
        return;
    m_year->interpretText();
    Q_EMIT m_year->editingFinished();
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

// The names of the days are cut to their letter where the columns haven't room for them.
void Calendar::resizeEvent(QResizeEvent* event)
{
    constexpr int Days = 7;
    constexpr int RoomBeside = 8; // pixels
    QCalendarWidget::resizeEvent(event);
    int widest = 0;
    for (int day = 1; day <= Days; ++day)
        widest = std::max(widest, fontMetrics().horizontalAdvance(locale().dayName(day, QLocale::ShortFormat)));
    setHorizontalHeaderFormat(width() < Days * (widest + RoomBeside) ? SingleLetterDayNames : ShortDayNames);
}

bool Calendar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
        if (enter && watched == m_days) {
            event->ignore(); // belongs to the form's default button
            return true;
        }
        if (enter && watched == m_year) {
            endYearEdit();
            m_days->setFocus();
            return true;
        }
    } else if (watched == m_days->viewport()) {
        if (event->type() == QEvent::MouseButtonPress)
            m_dayClicked = false;
        else if (event->type() == QEvent::MouseButtonDblClick && std::exchange(m_dayClicked, false)) {
            Q_EMIT doubleClicked();
            return true;
        }
    }
    return QCalendarWidget::eventFilter(watched, event);
}

} // namespace orlo::widgets
