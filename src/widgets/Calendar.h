#pragma once

#include <QCalendarWidget>

class QSpinBox;
class QTableView;

namespace orlo::widgets
{

/// A month calendar in US English, weeks from Sunday.
class Calendar : public QCalendarWidget
{
    Q_OBJECT

public:
    explicit Calendar(QWidget* parent = nullptr);

    /// Applies a year that is being typed; call before reading a date.
    void endYearEdit();
    /// The day picked last, whichever month is shown.
    [[nodiscard]] QDate value() const { return selectedDate(); }
    /// Picks a date and shows its month.
    void setValue(QDate date) { setSelectedDate(date); }

    /// The picked day in the month shown; 0 if no day was picked since the month was turned.
    [[nodiscard]] int day() const;
    /// Picks a day of the month shown. Raises 5 for a day that it doesn't have.
    void setDay(int day);

    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

Q_SIGNALS:
    /// Emitted after a double click on a day, which is then picked.
    void doubleClicked();

private:
    QTableView* m_days;
    QSpinBox* m_year;
    bool m_dayClicked = false; // the last press was on a day; one of a neighbouring month shows that month
};

} // namespace orlo::widgets
