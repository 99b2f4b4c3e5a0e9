#include "support/Main.h"
#include "support/Picture.h"
#include "support/RecordScreen.h"
#include "support/Table.h"

#include <optional>

using namespace orlo;

namespace
{

constexpr const char* People = R"(
Insert Into Dens (Den_SID, Den_Number, Den_Type, Active) Values
    (1, 3, 'Wolf', 'Y'), (2, 1, 'Bear', 'Y'), (3, 2, 'Tiger', 'N'), (4, Null, 'Webelos', 'Y'), (5, 5, 'Empty', 'Y');
Insert Into Scouts (Scout_SID, First_Name, Last_Name, MI, Assigned_Den_SID, Active) Values
    (1, 'Ann', 'Young', Null, 1, 'Y'), (2, 'Bob', 'Adams', 'C', 1, 'Y'), (3, 'Bob', 'Adams', 'A', 2, 'Y'),
    (4, 'Abe', 'Adams', 'Z', Null, 'Y'), (5, 'Zed', 'Aaron', Null, 1, 'N'), (6, 'Kim', 'Lee', Null, 4, 'Y');
Insert Into Adults (Adult_SID, First_Name, Last_Name, Assigned_Den_SID, Active) Values
    (1, 'Dora', 'King', 1, 'Y'), (2, 'Ed', 'Hall', 2, 'Y'), (3, 'Flo', 'Gray', 0, 'Y'), (5, 'Gus', 'Aaron', 1, 'N');
Insert Into Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title) Values (3, 1, 'Den Leader');
Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type) Values
    (1, 'Wolf', 'Badge'), (2, 'Bear', 'Pin'), (3, 'Bear', 'Badge'))";

struct Screen : test::RecordScreen {
    Screen() : RecordScreen("frmAssignInsignias") {}
};

} // namespace

// What the screen shows is in tst_pictures.
class tst_assign : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.emplace();
        test::fill(People);
    }

    void badDate_data()
    {
        test::table({"way"}, "Tab\npress:qt_tabwidget_tabbar,1\ncmdAssignAward\ncmdClearAll\ncmdUnSelAll\nx\n"
                             "optListOfAdults\npress:cboAward");
    }
    void badDate()
    {
        const Screen screen;
        screen.run("fgSelectFrom!0 cboAward^ cboAward:1 AssignDate=2/30/2026 ok");
        const QStringList before = test::pictureOf(screen.form);
        screen.run(test::cell("way"));
        QVERIFY(screen.said().contains("Invalid Date format"));
        screen.form.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&screen.form));
        QCOMPARE(test::pictureOf(screen.form), before); // the date has the focus
        QCOMPARE(test::count("Assigned_Awards_Scouts"), 0);
        screen.run("AssignDate= Tab"); // an empty date lets the focus leave
        QVERIFY(!screen.get("txtAssignDate").hasFocus());
    }

    // A den without scouts keeps the count of the previous den; if a row is refused, those before it stay.
    void failures_data() { test::tableOf("awards/assign_failures.txt"); }
    void failures()
    {
        const QString refuse = "Create Unique Index Once On Assigned_Awards_Adults (Adult_SID, Insignia_SID);"
                               "Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID) Values (2, 2)";
        QTEST(test::failureInChild(refuse, [] { Screen().run(test::cell("script")); }), "number");
        QTEST(QString::number(test::count("Assigned_Awards_Scouts")), "scouts");
        QTEST(QString::number(test::count("Assigned_Awards_Adults")), "adults");
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_assign)

#include "tst_assign.moc"
