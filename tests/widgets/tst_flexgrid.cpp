#include "widgets/Failure.h"
#include "widgets/FlexGrid.h"
#include "widgets/Twips.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QTest>

#include <array>

using namespace orlo;
using widgets::FlexGrid;

namespace
{

// Rows "1" to "n" in column 1.
void fill(FlexGrid& grid, int count)
{
    grid.setRows(1);
    grid.setRows(count + 1);
    for (int row = 1; row <= count; ++row)
        grid.setText(row, 1, QString::number(row));
}

QStringList shownRows(const FlexGrid& grid)
{
    QStringList rows;
    for (int row = 0; row < grid.model()->rowCount(); ++row)
        rows += grid.model()->index(row, 1).data().toString();
    return rows;
}

QPoint middleOf(FlexGrid& grid, int row)
{
    return grid.visualRect(grid.model()->index(row - 1, 1)).center();
}

} // namespace

class tst_flexgrid : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreWhereTheyBelong();
    void refusals();
    void currentRow();
    void doubleClick();
    void tabbingPastChoosesNoRow();
    void widthsAndHeights();
    void manyRows();
};

void tst_flexgrid::textsAreWhereTheyBelong()
{
    FlexGrid grid;
    const QAbstractItemModelTester tester(grid.model());
    fill(grid, 3);
    grid.setText(0, 1, QStringLiteral("Name"));
    grid.setText(2, 0, QStringLiteral("X"));
    grid.setCols(4);
    grid.setText(2, 3, QStringLiteral("sid"));
    QCOMPARE(grid.model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Name"));
    QCOMPARE(grid.model()->index(1, 0).data().toString(), QStringLiteral("X"));
    QCOMPARE(grid.text(2, 3), QStringLiteral("sid"));
    grid.setCols(3);
    grid.setCols(4);
    QCOMPARE(grid.text(2, 3), QString());
    QCOMPARE(grid.text(3, 1), QStringLiteral("3"));
    grid.removeRow(2);
    QCOMPARE(grid.text(2, 0), QString());
    QCOMPARE(shownRows(grid), (QStringList{QStringLiteral("1"), QStringLiteral("3")}));
    {
        const widgets::RedrawHold outer(grid);
        {
            const widgets::RedrawHold inner(grid);
            fill(grid, 2);
        }
        grid.removeRow(1);
        grid.setText(grid.addRow(), 1, QStringLiteral("added"));
        QCOMPARE(grid.model()->rowCount(), 2); // views keep what they knew
        grid.addRow();
    }
    QCOMPARE(shownRows(grid), (QStringList{QStringLiteral("2"), QStringLiteral("added"), QString()}));
}

void tst_flexgrid::refusals()
{
    FlexGrid grid;
    fill(grid, 2);
    const auto outside = std::to_array<std::function<void()>>({
        [&] { static_cast<void>(grid.text(3, 0)); },
        [&] { grid.setText(0, 2, QString()); },
        [&] { grid.setText(-1, 0, QString()); },
        [&] { grid.setRow(3); },
        [&] { grid.setColWidth(2, 100); },
        [&] { grid.removeRow(3); },
    });
    for (const auto& action : outside)
        QCOMPARE(test::failureNumber(action), 9);
    QCOMPARE(test::failureNumber([&] { grid.removeRow(0); }), 5);
    QCOMPARE(test::failureNumber([&] { grid.setRows(0); }), 5);
    QCOMPARE(test::failureNumber([&] { grid.setCols(0); }), 5);
    grid.removeRow(1);
    QCOMPARE(test::failureNumber([&] { grid.removeRow(1); }), 5);
    QCOMPARE(grid.text(1, 1), QStringLiteral("2"));
}

void tst_flexgrid::currentRow()
{
    for (const bool held : {false, true}) {
        FlexGrid grid;
        grid.show();
        fill(grid, 5);
        QCOMPARE(grid.row(), 0);
        const auto after = [&](const std::function<void()>& change) {
            std::optional<widgets::RedrawHold> hold;
            if (held)
                hold.emplace(grid);
            change();
            const int inside = grid.row();
            hold.reset();
            return inside == grid.row() ? inside : -1;
        };
        QCOMPARE(after([&] { grid.setRow(4); }), 4);
        QVERIFY(grid.selectionModel()->isRowSelected(3, {}));
        QCOMPARE(after([&] { grid.removeRow(5); }), 4);
        QCOMPARE(after([&] { grid.removeRow(4); }), 3);
        QCOMPARE(after([&] { grid.removeRow(1); }), 2);
        QCOMPARE(after([&] { grid.addRow(); }), 2);
        QCOMPARE(after([&] { fill(grid, 3); }), 0);
        QVERIFY(!grid.selectionModel()->hasSelection());
    }
}

void tst_flexgrid::doubleClick()
{
    FlexGrid grid;
    fill(grid, 4);
    grid.resize(400, 300);
    grid.show();
    QList<int> rows;
    connect(&grid, &FlexGrid::rowDoubleClicked, &grid, [&] { rows += grid.row(); });
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, middleOf(grid, 3));
    QTest::mouseDClick(grid.viewport(), Qt::RightButton, {}, middleOf(grid, 1));
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, QPoint(20, grid.viewport()->height() - 2));
    QTest::mouseDClick(grid.horizontalHeader()->viewport(), Qt::LeftButton);
    grid.setRow(2);
    QTest::keyClick(&grid, Qt::Key_Space);
    grid.setRow(0);
    QTest::keyClick(&grid, Qt::Key_Space);
    QCOMPARE(rows, (QList<int>{3, 2}));
}

void tst_flexgrid::tabbingPastChoosesNoRow()
{
    FlexGrid grid;
    fill(grid, 2);
    grid.show();
    QVERIFY(QTest::qWaitForWindowActive(&grid));
    grid.setFocus(Qt::TabFocusReason);
    QCOMPARE(grid.row(), 0);
    QTest::keyClick(&grid, Qt::Key_Down);
    QCOMPARE(grid.row(), 1);
}

void tst_flexgrid::widthsAndHeights()
{
    FlexGrid grid;
    grid.setCols(4);
    fill(grid, 2);
    grid.resize(600, 200);
    grid.show();
    grid.setColWidth(0, 200);
    grid.setColWidth(2, 1440);
    grid.setColWidth(3, 0);
    grid.setStretchColumn(1);
    QCOMPARE(grid.columnWidth(2), grid.logicalDpiX());
    QVERIFY(grid.isColumnHidden(3));
    QCOMPARE(grid.horizontalHeader()->length(), grid.viewport()->width());
    grid.resize(800, 200);
    QTRY_COMPARE(grid.horizontalHeader()->length(), grid.viewport()->width());
    grid.resize(60, 200);
    QTRY_COMPARE(grid.columnWidth(1), widgets::twipsToPixels(960, &grid));

    const int line = grid.rowHeight(0);
    grid.setRowHeight(0, 720);
    QCOMPARE(grid.horizontalHeader()->height(), widgets::twipsToPixels(720, &grid));
    grid.setRowHeight(0, 15);
    QVERIFY(grid.horizontalHeader()->height() >= line);
    grid.setColWidth(2, 800);
    grid.setText(0, 2, QStringLiteral("Scout or Adult or anybody"));
    QVERIFY(grid.horizontalHeader()->height() >= 2 * grid.fontMetrics().height()); // wraps and is not cut off
}

// A quadratic step anywhere takes minutes at this size.
void tst_flexgrid::manyRows()
{
    constexpr int Count = 200'000;
    QElapsedTimer clock;
    clock.start();
    for (const bool oneByOne : {false, true}) {
        FlexGrid grid;
        grid.setCols(5);
        grid.show();
        {
            const widgets::RedrawHold hold(grid);
            if (!oneByOne)
                grid.setRows(Count + 1);
            for (int row = 1; row <= Count; ++row) {
                if (oneByOne)
                    grid.setRow(grid.addRow());
                for (int col = 1; col < 5; ++col)
                    grid.setText(row, col, QStringLiteral("text"));
            }
        }
        QCOMPARE(grid.model()->rowCount(), Count);
        QCOMPARE(grid.row(), oneByOne ? Count : 0);
    }
    QVERIFY2(clock.elapsed() < 20'000, qPrintable(QString::number(clock.elapsed())));
}

QTEST_MAIN(tst_flexgrid)

#include "tst_flexgrid.moc"
