#include "platform/Conversion.h"
#include "support/Main.h"
#include "support/Picture.h"
#include "support/RecordScreen.h"
#include "support/Table.h"

#include <QLineEdit>

#include <optional>

using namespace orlo;

namespace
{

constexpr auto Awards = R"(
INSERT INTO Purchase_List (Award_Name, Quantity) VALUES ('left over', 3);
INSERT INTO Insignias (Insignia_SID, Insignia_Name, Insignia_Type)
  VALUES (1, 'Wolf', 'Badge'), (2, 'Bear', 'Badge'), (3, 'Bear', 'Pin');
INSERT INTO Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Quantity)
  VALUES (1, 1, '2026-02-01', 3), (1, 1, '2026-02-28', NULL), (1, 2, '2026-02-10', NULL), (1, 3, '2026-02-10', NULL),
    (1, 1, '2026-01-31', NULL), (1, 1, '2026-03-01', NULL);
INSERT INTO Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned)
  VALUES (1, 1, '2026-02-10'), (1, 99, '2026-02-10');)";

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
        const test::RecordScreen screen("frmCreatePurchaseList");
        QCOMPARE(test::count("Purchase_List"), 0);
        screen.click("cmdCreate");
        screen.get<QLineEdit>("txtStartDate").setText(test::cell("start"));
        screen.get<QLineEdit>("txtEndDate").setText(test::cell("end"));
        screen.run(test::cell("said").isEmpty() ? "" : "ok");
        screen.click("cmdCreate");
        QTEST(screen.said(), "said");
        QCOMPARE(test::pictureOf(screen.form).filter("dbgAssigned").join('|'),
                 "dbgAssignedPurchases: [Quantity/Award Name/Award Type:" +
                     test::cell("rows").replace("@", "; *1//; 1/Bear/Badge; 1/Bear/Pin; 5/Wolf/Badge") + ']');
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_purchaselist)

#include "tst_purchaselist.moc"
