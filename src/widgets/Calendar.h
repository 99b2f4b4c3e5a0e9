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

    /// Shows the year that is being typed, if one is; to be called before a date is read.
    void endYearEdit();
    /// The day picked last, whichever month is shown.
    [[nodiscard]] QDate value() const { return selectedDate(); }
    /// Picks a date and shows its month.
    void setValue(QDate date) { setSelectedDate(date); }

    /// The picked day of the shown month, 0 where the month was turned to and no day picked in it.
    [[nodiscard]] int day() const;
    /// Picks a day of the shown month. Raises 5 for a day that the month doesn't have.
    void setDay(int day);

    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

Q_SIGNALS:
    /// A double click on a day, which is then the picked one.
    void doubleClicked();

private:
    QTableView* m_days;
    QSpinBox* m_year;
    bool m_dayClicked = false; // the last press was on a day, perhaps on one of a month beside, which is shown since
};

} // namespace orlo::widgets
