#include "platform/Conversion.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"

#include <QApplication>
#include <QLineEdit>
#include <QTableView>

#include <optional>

using namespace orlo;

namespace
{

struct Screen : test::RecordScreen {
    Screen() : RecordScreen("frmCreatePurchaseList") {}
};

constexpr auto Awards = R"(
INSERT INTO Purchase_List (Award_Name, Quantity) VALUES ('left over', 3);
INSERT INTO Insignias (Insignia_SID, Insignia_Name, Insignia_Type)
  VALUES (1, 'Wolf', 'Badge'), (2, 'Bear', 'Badge'), (3, 'Bear', 'Pin');
INSERT INTO Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Quantity)
  VALUES (1, 1, '2026-02-01', 3), (1, 1, '2026-02-28', NULL), (1, 2, '2026-02-10', NULL), (1, 3, '2026-02-10', NULL),
    (1, 1, '2026-01-31', NULL), (1, 1, '2026-03-01', NULL);
INSERT INTO Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned)
  VALUES (1, 1, '2026-02-10'), (1, 99, '2026-02-10');)";

// A grid's captions and rows: cells separated by slashes, rows by a comma and a blank.
QString shown(const Screen& screen, const char* grid)
{
    const auto& model = *screen.get<QTableView>(grid).model();
    QStringList lines;
    for (int row = -1; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells += (row < 0 ? model.headerData(column, Qt::Horizontal) : model.index(row, column).data()).toString();
        lines += cells.join(u'/');
    }
    return lines.join(", ");
}

} // namespace

class tst_purchaselist : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        platform::setToday(QDate(2026, 2, 14));
        m_folder.emplace();
    }

    // The month's list is made first; a refused range leaves it (@) unchanged.
    void sums_data() { test::tableOf("reports/purchaselist_sums.txt"); }
    void sums()
    {
        test::fill(Awards);
        const Screen screen;
        QCOMPARE(test::count("Purchase_List"), 0);
        screen.click("cmdCreate");
        screen.get<QLineEdit>("txtStartDate").setText(test::cell("start"));
        screen.get<QLineEdit>("txtEndDate").setText(test::cell("end"));
        screen.run(test::cell("said").isEmpty() ? "" : "ok");
        screen.click("cmdCreate");
        QTEST(screen.said(), "said");
        QCOMPARE(shown(screen, "dbgAssignedPurchases"),
                 "Quantity/Award Name/Award Type" +
                     test::cell("rows").replace("@", ", 1//, 1/Bear/Badge, 1/Bear/Pin, 5/Wolf/Badge"));
    }

    void otherListStays()
    {
        {
            const Screen screen;
            auto& view = screen.get<QTableView>("dbgOtherPurchaseList");
            view.setCurrentIndex(view.model()->index(view.model()->rowCount() - 1, 0));
            view.setFocus();
            QTest::keyClicks(&view, "4");
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QTest::keyClicks(QApplication::focusWidget(), "Pie tins");
            screen.click("cmdCreate"); // the focus leaves the grid, which writes the row
            QCOMPARE(test::rows("Select Quantity, Item_Name From Other_Purchase_List"), "4/Pie tins");
            screen.click("cmdCancel");
        }
        const Screen again;
        QCOMPARE(shown(again, "dbgOtherPurchaseList"), "Quantity/Item to Purchase, 4/Pie tins, /");
        again.click("cmdClearOtherList");
        QCOMPARE(test::count("Other_Purchase_List"), 0);
        QCOMPARE(shown(again, "dbgOtherPurchaseList"), "Quantity/Item to Purchase, /");
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_purchaselist)

#include "tst_purchaselist.moc"
