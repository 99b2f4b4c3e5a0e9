#include "platform/Conversion.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Pack.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/BoundGrid.h"
#include "widgets/ComboBox.h"
#include "widgets/ListBox.h"
#include "widgets/TextGrid.h"
#include "widgets/Twips.h"

#include <QLineEdit>
#include <QTabWidget>

#include <optional>

using namespace orlo;
using test::press;
using test::rows;

namespace
{

// The pack with its own titles, and awards.
const QString People = QString(test::Pack) + R"(
Delete From Den_Titles; Insert Into Den_Titles Values ('Den Leader', 1), ('Helper', Null);
Delete From Pack_Positions; Insert Into Pack_Positions Values ('Cook', 7), ('Chair', 2);
Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned) Values (1, 1, '2026-05-02'),
    (1, 1, '2026-05-02'), (1, 1, '2025-05-02'), (1, 2, '2026-05-02'), (1, 9, '2026-05-02'), (2, 1, '2026-05-02'))";

struct Screen : test::RecordScreen {
    Screen() : RecordScreen("frmAdults") {}
    widgets::ListBox& list = get<widgets::ListBox>("lbAdults");
    widgets::BoundGrid& grid = get<widgets::BoundGrid>("dbgDenAssignment");
    widgets::TextGrid& awards = get<widgets::TextGrid>("fgAdultsAwards");
    QTabWidget& tab = get<QTabWidget>("tabAdult");

    // In addition to the usual words: "position:0" and "award:1" make a row of these grids current, "page:0" turns to a
    // page.
    void go(const QString& script) const
    {
        run(script, [&](const QString& word) {
            const int number = word.section(':', 1).toInt();
            if (word.startsWith("position:"))
                grid.setCurrentIndex(grid.model()->index(number, 0));
            else if (word.startsWith("award:"))
                awards.setRow(number);
            else if (word.startsWith("page:"))
                tab.setCurrentIndex(number);
            else
                press(form, word);
        });
    }
};

} // namespace

// What the screen and its dialogs show is in tst_pictures.
class tst_adults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.emplace();
        test::copyLayouts();
        test::fill(People);
        platform::setToday(QDate(2026, 11, 24));
    }

    // Every field goes to its own column and back; also what an adult of an older version, without dates and years,
    // contains after any save.
    void fields()
    {
        const Screen screen;
        QCOMPARE(screen.lostFields("adults/fields.txt", "Adults Where Adult_SID = 4"), "");
        screen.go("@1 First=Rob s");
        QCOMPARE(rows("Select Birth_Date, Pack_Start_Date, Years_In_Scouts, Years_In_Other_Pack, Email, Note, "
                      "Assigned_Den_SID From Adults Where Adult_SID = 2"),
                 "1/1/1001/Null/0/0///Null");
    }
    // The program continues after a failure of the rebuild.
    void trappedFailure()
    {
        test::fill("Alter Table Adults Rename Column Active To Was");
        const auto told = test::dismissReport();
        const Screen screen;
        QVERIFY(told->text.contains("\n3061\n"));
        QCOMPARE(screen.list.listCount(), 0);
        QCOMPARE(screen.shown()["live"], "First Previous Next Last New Delete");
    }
    // What ends the program; no position is damaged by it.
    void failures_data() { test::tableOf("adults/adults_failures.txt"); }
    void failures()
    {
        QTEST(test::failureInChild(test::cell("sql"), [] { Screen().go(test::cell("script")); }), "number");
        QCOMPARE(test::count("Leader_Den_Assignments") + test::count("Leader_Pack_Assn"), 7);
    }

    void noDens()
    {
        test::fill("Delete From Dens");
        const auto told = test::answerNext();
        const Screen screen;
        QCOMPARE(told->title + ": " + told->text,
                 "Selection Error: There is no Active Den(s) available to select from. Please create or activate "
                 "Den(s) in the Den From.");
        QCOMPARE(screen.list.listCount(), 3);
    }

    // Another program's layout would make the wrong position be deleted.
    void foreignLayout()
    {
        const QString file = m_folder->path() + "/DenAssign.grd";
        QByteArray lines = test::contents(file);
        test::write(file, lines.replace("Den_SID", "~").replace("Leader_SID", "Den_SID").replace("~", "Leader_SID"));
        const auto told = test::answerNext();
        const Screen screen;
        screen.go("@1");
        QVERIFY(told->title == "Grid Layout" &&
                told->text.contains("Den_SID, Leader_SID, Leader_Pack_Assn, in this order"));
        QString position;
        for (int column = 0; column < 6; ++column)
            position += '/' + screen.grid.model()->index(0, column).data().toString();
        QCOMPARE(position, "//3/Wolf/2/2/N/A");
    }

    // The awards' keys are beyond the right edge, whatever is pressed.
    void keysOutOfSight()
    {
        const Screen screen;
        screen.go("@1 page:1");
        screen.form.resize(1100, 600);
        for (auto key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Right, Qt::Key_End})
            QTest::keyClick(&screen.awards, key);
        QVERIFY(!screen.awards.text(1, 3).isEmpty());
        QCOMPARE(screen.awards.columnWidth(3), widgets::twipsToPixels(2000, &screen.awards));
        QCOMPARE(screen.awards.columnViewportPosition(3), screen.awards.viewport()->width());
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_adults)

#include "tst_adults.moc"
