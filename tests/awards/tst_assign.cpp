#include "awards/AssignScreen.h"
#include "support/Table.h"

#include <QProcess>

using namespace orlo;
using namespace orlo::test::assign;
using test::sqlite;

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

const QString Wolf = "Wolf Den 3";
const QString Bear = "Bear Den 1";
const QString Empty = "Empty Den 5";
const QString BearPin = "Bear Pin";
const QString Day = "2/5/26";

} // namespace

class tst_assign : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<test::AppFolder>();
        m_file = m_folder->path() + "/Quorrel11.mdb";
        QCOMPARE(sqlite(m_file, People), QStringList());
    }
    void cleanup() { m_folder.reset(); }
    void packLists()
    {
        const QString scouts = "|Abe Adams|NA|4, |Bob Adams|1|3, |Bob Adams|3|2, |Kim Lee|NA|6, |Ann Young|3|1";
        Screen screen;
        QCOMPARE(screen.pack.text(0, 1) + rowsOf(screen.pack), "Scout Name" + scouts);
        screen.list("optListOfAdults");
        QCOMPARE(screen.pack.text(0, 1) + rowsOf(screen.pack),
                 "Adult Name|Flo Gray|NA|3, |Ed Hall|1|2, |Dora King|3|1");
        // Coming back to the tab reads the list again.
        database().execute("Update Adults Set Active = 'N' Where Adult_SID = 2");
        screen.tab(1);
        screen.tab(0);
        QCOMPARE(rowsOf(screen.pack), "|Flo Gray|NA|3, |Dora King|3|1");
        screen.list("optListOfScouts");
        QCOMPARE(rowsOf(screen.pack), scouts);
    }

    void denLists()
    {
        Screen screen;
        const auto type = [&](const QString& den, Qt::Key end) {
            screen.den.setFocus();
            screen.den.lineEdit()->selectAll();
            QTest::keyClicks(&screen.den, den);
            QTest::keyClick(&screen.den, end);
            return screen.den.text();
        };
        screen.tab(1);
        QCOMPARE(type(Wolf, Qt::Key_Return), Wolf);
        QCOMPARE(screen.scouts.rows(), 1); // a typed den lists nobody
        // Flo Gray leads den 3 and isn't listed: an adult's own den alone counts.
        for (const auto& [den, scouts, adults] : {std::tuple(Wolf, "|Bob Adams|3|2, |Ann Young|3|1", "|Dora King|3|1"),
                                                  {Bear, "|Bob Adams|1|3", "|Ed Hall|1|2"},
                                                  {"Webelos Den ", "|Kim Lee||6", ""},
                                                  {Empty, "", ""}}) {
            screen.pick(screen.den, den);
            type(Bear, Qt::Key_Tab);
            QCOMPARE(rowsOf(screen.scouts), scouts);
            QCOMPARE(rowsOf(screen.adults), adults);
        }
        QStringList dens;
        for (int i = 0; i < screen.den.listCount(); ++i)
            dens += screen.den.list(i);
        QCOMPARE(dens, (QStringList{"Webelos Den ", Bear, Wolf, Empty}));
    }

    void marksFollowEverywhere()
    {
        Screen screen;
        screen.choose(screen.pack, 1);
        screen.choose(screen.pack, 4);
        QCOMPARE(marked(screen.pack), "4 1");
        screen.tab(1);
        screen.pick(screen.den, Wolf);
        QCOMPARE(screen.denMarks(), "1/"); // adult 1 is somebody else
        screen.choose(screen.adults, 1);
        screen.pick(screen.den, Bear);
        QCOMPARE(screen.denMarks(), "/");
        screen.click("cmdSelAllByDenScouts");
        QCOMPARE(screen.denMarks(), "3/");
        screen.pick(screen.den, Wolf);
        QCOMPARE(screen.denMarks(), "1/1");
        screen.tab(0);
        QCOMPARE(marked(screen.pack), "4 3 1");
        screen.list("optListOfAdults");
        QCOMPARE(marked(screen.pack), "1");
        QCOMPARE(screen.chosen(), "|Ann Young|3|Scout|1, |Abe Adams|NA|Scout|4, "
                                  "|Dora King|3|Adult|1, |Bob Adams|1|Scout|3");
        screen.tab(1); // the den's lists are read again for the den chosen before
        QCOMPARE(screen.denMarks(), "1/1");
        screen.tab(0);
        screen.click("cmdUnSelAll");
        QCOMPARE(screen.chosen() + marked(screen.pack), QString());
        screen.tab(1);
        QCOMPARE(screen.denMarks(), "/");
    }

    void nobodyTwice_data()
    {
        test::table({"steps"}, "row row\nrow all\nall row\nall all\nrow lists row all\nrow denRow denAll\n"
                               "denAll row all\ndenRow denRow denAll denAll");
    }
    void nobodyTwice()
    {
        QFETCH(QString, steps);
        Screen screen;
        for (const QString& step : steps.split(u' ')) {
            const bool onDen = step.startsWith("den");
            screen.tab(onDen ? 1 : 0);
            if (onDen)
                screen.pick(screen.den, Wolf);
            if (step == "row")
                screen.choose(screen.pack, 1);
            else if (step == "denRow")
                screen.choose(screen.scouts, 1);
            else if (step == "lists") {
                screen.list("optListOfAdults");
                screen.list("optListOfScouts");
            } else
                screen.click(onDen ? "cmdSelAllByDenScouts" : "cmdSelectAllSel");
        }
        QStringList people = screen.chosen().split(", ");
        QCOMPARE(people.removeDuplicates(), 0);
        if (steps.contains("all"))
            QCOMPARE(people.size(), 5);
    }

    void otherTypeLosesItsMark()
    {
        Screen screen;
        screen.choose(screen.pack, 1);
        screen.list("optListOfAdults");
        screen.choose(screen.pack, 1);
        screen.choose(screen.pack, 2);
        screen.chooseRow(screen.selected, 1);
        QCOMPARE(marked(screen.pack), "2");
        screen.choose(screen.pack, 1);
        QCOMPARE(screen.chosen(), "|Dora King|3|Adult|1, |Ed Hall|1|Adult|2, |Dora King|3|Adult|1");
    }

    void unselectOnDenTab()
    {
        Screen screen;
        screen.choose(screen.pack, 3);
        screen.tab(1);
        screen.pick(screen.den, Wolf);
        screen.choose(screen.scouts, 1);
        screen.choose(screen.adults, 1);
        screen.choose(screen.selected, 3); // of another den
        QCOMPARE(screen.chosen(), "|Ann Young|3|Scout|1, |Dora King|3|Adult|1");
        QCOMPARE(screen.denMarks(), "1/1");
        screen.chooseRow(screen.selected, 1);
        QCOMPARE(screen.chosen(), "|Dora King|3|Adult|1");
        QCOMPARE(screen.denMarks(), "/1");
        screen.choose(screen.scouts, 1);
        screen.chooseRow(screen.selected, 1);
        QCOMPARE(screen.chosen(), "|Ann Young|3|Scout|1");
        QCOMPARE(screen.denMarks(), "1/");
        screen.chooseRow(screen.selected, 1);
        QCOMPARE(screen.chosen(), QString());
    }

    void missing_data()
    {
        test::table({"award", "date", "text", "focus"}, R"(
                     |        | An Award needs to be selected!          | cboAward
                     | 2/5/26 | An Award needs to be selected!          | cboAward
            Bear Pin |        | An Assigned Date needs to be entered!   | cmdAssignAward
        )");
    }
    void missing()
    {
        QFETCH(QString, award);
        QFETCH(QString, date);
        Screen screen;
        screen.click("cmdSelectAllSel");
        screen.order(BearPin, Day);
        screen.date.clear();
        screen.order(award, date); // a list that is left without a choice is empty
        const auto told = test::answerNext();
        screen.click("cmdAssignAward");
        QTEST(told->text, "text");
        QCOMPARE(told->title, "Error");
        QTEST(screen.form.focusWidget()->objectName(), "focus");
        QCOMPARE(screen.award.text() + u'|' + screen.date.text(), award + u'|' + date);
        QVERIFY(scoutAwards().isEmpty());
    }

    void badDate_data()
    {
        test::table({"way"},
                    "Tab\nden's page\ncmdAssignAward\ncmdClearAll\ncmdUnSelAll\ncmdExit\noptListOfAdults\ncboAward");
    }
    void badDate()
    {
        QFETCH(QString, way);
        Screen screen;
        screen.choose(screen.pack, 4);
        screen.order(BearPin, "2/30/2026");
        const auto told = test::answerNext();
        if (way == "Tab")
            QTest::keyClick(&screen.date, Qt::Key_Tab);
        else if (way == "den's page")
            screen.tab(1);
        else if (way.startsWith("opt"))
            screen.list(qPrintable(way));
        else
            QTest::mouseClick(&test::control<QWidget>(screen.form, qPrintable(way)), Qt::LeftButton);
        QVERIFY(told->text.startsWith("Invalid Date format"));
        screen.form.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&screen.form));
        QVERIFY(screen.date.hasFocus());
        QCOMPARE(screen.date.text() + screen.award.text() + screen.pack.text(0, 1), "2/30/2026Bear PinScout Name");
        QCOMPARE(test::control<QTabWidget>(screen.form, "SSTabAssignInsignias").currentIndex(), 0);
        QCOMPARE(screen.chosen(), "|Abe Adams|NA|Scout|4");
        QVERIFY(scoutAwards().isEmpty());
        screen.date.clear(); // an empty date lets go
        QTest::keyClick(&screen.date, Qt::Key_Tab);
        QVERIFY(!screen.date.hasFocus());
    }

    void assignment()
    {
        Screen screen;
        screen.choose(screen.pack, 4);
        screen.choose(screen.pack, 1);
        screen.list("optListOfAdults");
        screen.choose(screen.pack, 1);
        const QString people = screen.chosen();
        QStringList scouts;
        QStringList adults;
        // The second run gives the same award again, and nothing minds; so does a third with another one.
        for (const int run : {1, 2, 3}) {
            const QString written = run < 3 ? "2|2026-02-05|2026|2" : "3|1999-12-31|1999|12";
            screen.order(run < 3 ? BearPin : "Bear Badge", run < 3 ? Day : "12/31/1999");
            screen.click("cmdAssignAward");
            for (const int sid : {4, 1})
                scouts += QStringLiteral("%1|%2|Null|%3").arg(sid).arg(written).arg(scouts.size() + 1);
            adults += "1|" + written;
            QCOMPARE(scoutAwards(), scouts);
            QCOMPARE(adultAwards(), adults);
            QCOMPARE(screen.award.listCount(), 0);
            QCOMPARE(screen.award.text() + screen.date.text(), QString());
            QCOMPARE(screen.chosen(), people);
            QCOMPARE(marked(screen.pack), "1");
            QCOMPARE(toldWithoutAward(screen), "An Award needs to be selected!");
            QCOMPARE(scoutAwards(), scouts);
        }
    }

    void clearAll()
    {
        for (const int tab : {0, 1}) {
            Screen screen;
            screen.click("cmdSelectAllSel");
            screen.tab(1);
            screen.pick(screen.den, Wolf);
            screen.click("cmdSelAllByDenAdults");
            screen.tab(tab);
            screen.order(BearPin, Day);
            screen.click("cmdClearAll");
            QCOMPARE(screen.award.listCount(), 0);
            QCOMPARE(screen.award.text() + screen.date.text() + screen.chosen(), QString());
            QCOMPARE(tab == 0 ? marked(screen.pack) + u'/' : screen.denMarks(), "/");
            QCOMPARE(tab == 0 ? screen.pack.rows() : screen.scouts.rows(), tab == 0 ? 6 : 3);
            // The count went back, too: the next choice is the first one.
            screen.tab(0);
            screen.choose(screen.pack, 3);
            QCOMPARE(screen.chosen(), "|Bob Adams|1|Scout|3");
            QCOMPARE(toldWithoutAward(screen), "An Award needs to be selected!");
            QVERIFY(scoutAwards().isEmpty());
            widgets::Form::unloadAll();
        }
    }

    void failures_data()
    {
        // A den without scouts leaves the count of the den before it; a refused row keeps those before it.
        test::table({"way", "report", "scouts", "adults"}, R"(
            selectStale   | Run-time error '9'    | 0 | 0
            unselectStale | Run-time error '9'    | 0 | 0
            typedDen      | Run-time error '3075' | 0 | 0
            refusedRow    | Run-time error       | 5 | 1
        )");
    }
    void failures()
    {
        QFETCH(QString, way);
        QFETCH(QString, report);
        const QStringList trigger =
            sqlite(m_file, "Create Trigger Refuse Before Insert On Assigned_Awards_Adults When New.Adult_SID = 2 "
                           "Begin Select Raise(Abort, 'no'); End");
        QCOMPARE(trigger, QStringList());
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {"--fail", m_folder->path(), way});
        QVERIFY(child.waitForFinished(20000));
        QCOMPARE(child.exitCode(), 1);
        const QByteArray said = child.readAllStandardError();
        QVERIFY2(said.contains(report.toUtf8()), said.constData());
        QTEST(QString::number(scoutAwards().size()), "scouts");
        QTEST(QString::number(adultAwards().size()), "adults");
    }

private:
    static QString toldWithoutAward(Screen& screen)
    {
        screen.date.setText(Day);
        const auto told = test::answerNext();
        screen.click("cmdAssignAward");
        return told->text;
    }
    [[nodiscard]] QStringList scoutAwards() const
    {
        return sqlite(m_file, "Select Scout_SID, Insignia_SID, Date_Assigned, Year, Month, Quantity, Assigned_SID "
                              "From Assigned_Awards_Scouts Order By Assigned_SID");
    }
    [[nodiscard]] QStringList adultAwards() const
    {
        return sqlite(m_file, "Select * From Assigned_Awards_Adults Order By rowid");
    }

    std::unique_ptr<test::AppFolder> m_folder;
    QString m_file;
};

// The child process of failures(): works the form on the parent's file until it ends with the run-time's report.
static int failOnScreen(const QString& folder, const QString& way)
{
    gAppPath = folder;
    gOldDbName = "\\Quorrel.mdb";
    gDbName = "\\Quorrel11.mdb";
    gDatabase = std::make_unique<store::Database>(store::DBEngine::openDatabase(databasePath()));
    test::answerNext();
    Screen screen;
    if (way == "refusedRow") {
        screen.click("cmdSelectAllSel");
        screen.list("optListOfAdults");
        screen.click("cmdSelectAllSel");
        screen.order(BearPin, Day);
        screen.click("cmdAssignAward");
    } else if (way == "typedDen") {
        screen.tab(1);
        screen.den.setFocus();
        QTest::keyClicks(&screen.den, Wolf);
        screen.tab(0);
        screen.tab(1);
    } else {
        screen.choose(screen.pack, 3);
        screen.tab(1);
        screen.pick(screen.den, Wolf);
        screen.pick(screen.den, Empty);
        way == "selectStale" ? screen.click("cmdSelAllByDenScouts") : screen.chooseRow(screen.selected, 1);
    }
    return 0;
}

int main(int argc, char** argv)
{
    widgets::Application application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--fail")
        return failOnScreen(arguments.value(2), arguments.value(3));
    tst_assign tests;
    return QTest::qExec(&tests, argc, argv);
}

#include "tst_assign.moc"
