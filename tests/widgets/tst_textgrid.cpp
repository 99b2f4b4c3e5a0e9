#include "support/Failure.h"
#include "support/Main.h"
#include "widgets/TextGrid.h"
#include "widgets/Twips.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <ctime>

using namespace orlo;
using widgets::TextGrid;

namespace
{

// Rows "1" to "n" in column 1.
void fill(TextGrid& grid, int count)
{
    grid.setRows(1);
    grid.setRows(count + 1);
    for (int row = 1; row <= count; ++row)
        grid.setText(row, 1, QString::number(row));
}

QString shownRows(const TextGrid& grid)
{
    QString rows;
    for (int row = 0; row < grid.model()->rowCount(); ++row)
        rows += grid.model()->index(row, 1).data().toString() + u';';
    return rows;
}

} // namespace

class tst_textgrid : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreWhereTheyBelong()
    {
        TextGrid grid;
        const QAbstractItemModelTester tester(grid.model());
        fill(grid, 3);
        grid.setText(0, 1, "Name");
        grid.setText(2, 0, "X");
        grid.setCols(4);
        grid.setText(2, 3, "sid");
        QCOMPARE(grid.model()->headerData(1, Qt::Horizontal).toString(), "Name");
        QCOMPARE(grid.model()->index(1, 0).data().toString() + grid.text(2, 3), "Xsid");
        grid.setText(0, 2, "Den");
        grid.setText(2, 2, "7");
        const QModelIndex read = grid.model()->index(1, 1); // a row is read aloud completely, except its mark and keys
        QCOMPARE(read.data(Qt::AccessibleDescriptionRole).toString(), "marked, Den: 7");
        QCOMPARE(read.siblingAtRow(0).data(Qt::AccessibleDescriptionRole).toString(), QString());
        QCOMPARE(grid.model()->headerData(0, Qt::Horizontal, Qt::AccessibleTextRole).toString(), "Mark");
        grid.setCols(3);
        grid.setCols(4);
        QCOMPARE(grid.text(2, 3) + grid.text(3, 1), "3");
        grid.removeRow(2);
        QCOMPARE(grid.text(2, 0), QString());
        QCOMPARE(shownRows(grid), "1;3;");
        {
            const widgets::RedrawHold outer(grid);
            {
                const widgets::RedrawHold inner(grid);
                fill(grid, 2);
            }
            grid.removeRow(1);
            grid.setText(grid.addRow(), 1, "added");
            QCOMPARE(grid.model()->rowCount(), 2); // views keep what they knew
            grid.addRow();
        }
        QCOMPARE(shownRows(grid), "2;added;;");
    }

    void refusals()
    {
        TextGrid grid;
        fill(grid, 2);
        QCOMPARE(test::failureNumber([&] { return grid.text(3, 0); }), 9);
        QCOMPARE(test::failureNumber([&] { grid.setText(0, 2, QString()); }), 9);
        QCOMPARE(test::failureNumber([&] { grid.setText(-1, 0, QString()); }), 9);
        QCOMPARE(test::failureNumber([&] { grid.setRow(3); }), 9);
        QCOMPARE(test::failureNumber([&] { grid.setColWidth(2, 100); }), 9);
        QCOMPARE(test::failureNumber([&] { grid.fitCol(2, QString()); }), 9);
        QCOMPARE(test::failureNumber([&] { grid.removeRow(3); }), 9);
        QCOMPARE(test::failureNumber([&] { grid.removeRow(0); }), 5);
        QCOMPARE(test::failureNumber([&] { grid.setRows(0); }), 5);
        QCOMPARE(test::failureNumber([&] { grid.setCols(0); }), 5);
        grid.removeRow(1);
        QCOMPARE(test::failureNumber([&] { grid.removeRow(1); }), 5);
        QCOMPARE(grid.text(1, 1), "2");
    }

    void currentRow()
    {
        for (const bool held : {false, true}) {
            TextGrid grid;
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

    void widthsAndHeights()
    {
        TextGrid grid;
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
        grid.setText(0, 0, "I"); // behind the room that a heading has
        const QImage heading = grid.horizontalHeader()->grab().toImage();
        QVERIFY(heading.pixelColor(3, heading.height() / 2).lightness() > 128);
        grid.resize(800, 200);
        QTRY_COMPARE(grid.horizontalHeader()->length(), grid.viewport()->width());
        grid.resize(60, 200);
        QTRY_COMPARE(grid.columnWidth(1), widgets::twipsToPixels(960, &grid));

        const int line = grid.rowHeight(0);
        grid.setHeadingHeight(720);
        QCOMPARE(grid.horizontalHeader()->height(), widgets::twipsToPixels(720, &grid));
        grid.setHeadingHeight(15);
        QVERIFY(grid.horizontalHeader()->height() >= line);
        grid.setColWidth(2, 800);
        grid.setText(0, 2, "Scout or Adult or anybody");
        QVERIFY(grid.horizontalHeader()->height() >= 2 * grid.fontMetrics().height()); // wraps and isn't cut off
        grid.setFont(QFont("DejaVu Sans", 40));
        QVERIFY(grid.columnWidth(0) > grid.fontMetrics().horizontalAdvance("X"));
        QVERIFY(grid.columnWidth(2) > grid.fontMetrics().horizontalAdvance("anybody"));
    }

    // A quadratic step anywhere would take minutes at this size.
    void manyRows()
    {
        constexpr int Count = 200'000;
        const std::clock_t start = std::clock(); // processor time, whatever else the machine does
        TextGrid grid;
        grid.show();
        std::optional<widgets::RedrawHold> hold(grid);
        grid.setRows(Count / 2 + 1);
        for (int row = 1; row <= Count; ++row) {
            if (row > Count / 2)
                grid.setRow(grid.addRow());
            grid.setText(row, 1, "text");
        }
        hold.reset();
        QCOMPARE(grid.model()->rowCount(), Count);
        QCOMPARE(grid.row(), Count);
        const auto seconds = (std::clock() - start) / CLOCKS_PER_SEC;
        QVERIFY2(seconds < 20, qPrintable(QString::number(seconds)));
    }
};

ORLO_TEST(tst_textgrid)

#include "tst_textgrid.moc"
