#include "support/Main.h"
#include "support/Picture.h"
#include "support/RecordScreen.h"
#include "support/Table.h"

#include <optional>

using namespace orlo;

// What the screen shows is in tst_pictures.
class tst_assign : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.emplace();
        test::fill(test::contents(test::fileOfTests("awards/people.sql")));
    }

    void badDate_data()
    {
        test::table({"way"}, "Tab\npress:qt_tabwidget_tabbar,1\ncmdAssignAward\ncmdClearAll\ncmdUnSelAll\nx\n"
                             "optListOfAdults\npress:cboAward");
    }
    void badDate()
    {
        const test::RecordScreen screen(Form);
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
        QTEST(test::failureInChild(refuse, [] { test::RecordScreen(Form).run(test::cell("script")); }), "number");
        QTEST(QString::number(test::count("Assigned_Awards_Scouts")), "scouts");
        QTEST(QString::number(test::count("Assigned_Awards_Adults")), "adults");
    }

private:
    static constexpr const char* Form = "frmAssignInsignias";
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_assign)

#include "tst_assign.moc"
