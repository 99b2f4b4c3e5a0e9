#pragma once

#include "awards/frmAssignInsignias.h"
#include "support/Sqlite.h"
#include "support/TestApp.h"
#include "widgets/ComboBox.h"
#include "widgets/OptionButton.h"
#include "widgets/TextGrid.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>

namespace orlo::test::assign
{

/// A grid's rows below the header, cells parted by bars, rows by blanks after commas.
inline QString rowsOf(const widgets::TextGrid& grid)
{
    QStringList lines;
    for (int row = 1; row < grid.rows(); ++row) {
        QStringList cells;
        for (int col = 0; col < grid.cols(); ++col)
            cells += grid.text(row, col);
        lines += cells.join(u'|');
    }
    return lines.join(", ");
}

/// The keys of the marked rows.
inline QString marked(const widgets::TextGrid& grid)
{
    QStringList keys;
    for (int row = 1; row < grid.rows(); ++row)
        if (grid.text(row, 0) == QLatin1String("X"))
            keys += grid.text(row, grid.cols() - 1);
    return keys.join(u' ');
}

/// The open form, worked by mouse and keys.
struct Screen {
    frmAssignInsignias& form = widgets::Instance<frmAssignInsignias>::get();
    widgets::TextGrid& pack = control<widgets::TextGrid>(form, "fgSelectFrom");
    widgets::TextGrid& scouts = control<widgets::TextGrid>(form, "fgSelScoutsFromByDen");
    widgets::TextGrid& adults = control<widgets::TextGrid>(form, "fgSelAdultsFromByDen");
    widgets::TextGrid& selected = control<widgets::TextGrid>(form, "fgSelected");
    widgets::ComboBox& den = control<widgets::ComboBox>(form, "comDen");
    widgets::ComboBox& award = control<widgets::ComboBox>(form, "cboAward");
    QLineEdit& date = control<QLineEdit>(form, "txtAssignDate");
    QPushButton& assign = control<QPushButton>(form, "cmdAssignAward");

    Screen()
    {
        form.showForm();
        if (!QTest::qWaitForWindowActive(&form))
            qFatal("the form doesn't become active");
    }
    void click(const char* button) { QTest::mouseClick(&control<QPushButton>(form, button), Qt::LeftButton); }
    void tab(int number)
    {
        QTabBar& bar = *control<QTabWidget>(form, "SSTabAssignInsignias").tabBar();
        QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(number).center());
    }
    void list(const char* option)
    {
        auto& button = control<widgets::OptionButton>(form, option);
        QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
    }
    // Opens the list by key and picks the entry; any other text closes the list without a choice.
    void pick(widgets::ComboBox& box, const QString& entry)
    {
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_F4);
        const int row = box.findText(entry);
        if (row >= 0)
            box.view()->setCurrentIndex(box.model()->index(row, 0));
        QTest::keyClick(box.view(), row >= 0 ? Qt::Key_Return : Qt::Key_Escape);
    }
    // Double clicks the row whose key stands in the last column; of working rows the given one.
    void choose(widgets::TextGrid& grid, int sid)
    {
        for (int row = 1; row < grid.rows(); ++row)
            if (grid.text(row, grid.cols() - 1) == QString::number(sid))
                return chooseRow(grid, row);
        QFAIL("nobody of that number is listed");
    }
    void chooseRow(widgets::TextGrid& grid, int row)
    {
        const QModelIndex cell = grid.model()->index(row - 1, 1);
        grid.scrollTo(cell);
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(cell).center());
    }
    // The people chosen; the assign button must be enabled exactly as long as there are any.
    [[nodiscard]] QString chosen() const
    {
        return rowsOf(selected) + (assign.isEnabled() == (selected.rows() > 1) ? "" : " and the button is wrong");
    }
    // The marks of the den's scouts and of its adults.
    [[nodiscard]] QString denMarks() const { return marked(scouts) + u'/' + marked(adults); }
    void order(const QString& awardText, const QString& dateText)
    {
        pick(award, awardText);
        date.setFocus();
        date.selectAll();
        QTest::keyClicks(&date, dateText);
    }
};

} // namespace orlo::test::assign
