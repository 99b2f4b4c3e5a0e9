#include "awards/AssignScreen.h"

#include <QProcess>

using namespace orlo;
using namespace orlo::test::assign;

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

const QString Wolf = QStringLiteral("Wolf Den 3");
const QString Bear = QStringLiteral("Bear Den 1");
const QString Empty = QStringLiteral("Empty Den 5");
const QString BearPin = QStringLiteral("Bear Pin");
const QString Day = QStringLiteral("2/5/26");

} // namespace

class tst_assign : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<test::AppFolder>();
        m_file = m_folder->path() + QStringLiteral("/Quorrel11.mdb");
        QCOMPARE(sqlite(m_file, People), QStringList());
    }
    void cleanup() { m_folder.reset(); }
    void packLists();
    void denLists_data();
    void denLists();
    void typedDenListsNobody();
    void marksFollowEverywhere();
    void nobodyTwice_data();
    void nobodyTwice();
    void otherTypeLosesItsMark();
    void unselectOnDenTab();
    void assignButton();
    void missing_data();
    void missing();
    void badDate_data();
    void badDate();
    void assignment();
    void clearAll_data();
    void clearAll();
    void oldAwardIsGone_data();
    void oldAwardIsGone();
    void failures_data();
    void failures();

private:
    [[nodiscard]] QStringList scoutAwards() const
    {
        return sqlite(m_file, "Select Scout_SID, Insignia_SID, Date_Assigned, Year, Month, Quantity, Assigned_SID "
                              "From Assigned_Awards_Scouts Order By Assigned_SID");
    }
    [[nodiscard]] QStringList adultAwards() const
    {
        return sqlite(m_file, "Select * From Assigned_Awards_Adults Order By Adult_SID");
    }

    std::unique_ptr<test::AppFolder> m_folder;
    QString m_file;
};

void tst_assign::packLists()
{
    const QString scouts =
        QStringLiteral("|Abe Adams|NA|4, |Bob Adams|1|3, |Bob Adams|3|2, |Kim Lee|NA|6, |Ann Young|3|1");
    const QString adults = QStringLiteral("|Flo Gray|NA|3, |Ed Hall|1|2, |Dora King|3|1");
    Screen screen;
    QCOMPARE(rowsOf(screen.pack), scouts);
    QCOMPARE(screen.pack.text(0, 1), QStringLiteral("Scout Name"));
    screen.list("optListOfAdults");
    QCOMPARE(rowsOf(screen.pack), adults);
    QCOMPARE(screen.pack.text(0, 1), QStringLiteral("Adult Name"));
    // Coming back to the tab reads the list again.
    database().execute(QStringLiteral("Update Adults Set Active = 'N' Where Adult_SID = 2"));
    screen.tab(1);
    screen.tab(0);
    QCOMPARE(rowsOf(screen.pack), QStringLiteral("|Flo Gray|NA|3, |Dora King|3|1"));
    screen.list("optListOfScouts");
    QCOMPARE(rowsOf(screen.pack), scouts);
}

void tst_assign::denLists_data()
{
    QTest::addColumn<QString>("den");
    QTest::addColumn<QString>("scouts");
    QTest::addColumn<QString>("adults");
    // Flo Gray leads den 3 and isn't listed: an adult's own den alone counts.
    QTest::newRow("both") << Wolf << QStringLiteral("|Bob Adams|3|2, |Ann Young|3|1")
                          << QStringLiteral("|Dora King|3|1");
    QTest::newRow("other den") << Bear << QStringLiteral("|Bob Adams|1|3") << QStringLiteral("|Ed Hall|1|2");
    QTest::newRow("no number") << QStringLiteral("Webelos Den ") << QStringLiteral("|Kim Lee||6") << QString();
    QTest::newRow("nobody") << Empty << QString() << QString();
}

void tst_assign::denLists()
{
    QFETCH(QString, den);
    Screen screen;
    screen.tab(1);
    screen.pick(screen.den, Bear);
    screen.pick(screen.den, den);
    QStringList dens;
    for (int i = 0; i < screen.den.listCount(); ++i)
        dens += screen.den.list(i);
    QCOMPARE(dens, (QStringList{QStringLiteral("Webelos Den "), Bear, Wolf, Empty}));
    QTEST(rowsOf(screen.scouts), "scouts");
    QTEST(rowsOf(screen.adults), "adults");
}

void tst_assign::typedDenListsNobody()
{
    Screen screen;
    screen.tab(1);
    screen.den.setFocus();
    QTest::keyClicks(&screen.den, Wolf);
    QTest::keyClick(&screen.den, Qt::Key_Return);
    QCOMPARE(screen.den.text(), Wolf);
    QCOMPARE(screen.scouts.rows(), 1);
    screen.pick(screen.den, Wolf);
    QCOMPARE(screen.scouts.rows(), 3);
    screen.den.setFocus();
    screen.den.lineEdit()->selectAll();
    QTest::keyClicks(&screen.den, Bear);
    QTest::keyClick(&screen.den, Qt::Key_Tab);
    QCOMPARE(screen.scouts.rows(), 3);
}

void tst_assign::marksFollowEverywhere()
{
    Screen screen;
    screen.choose(screen.pack, 1);
    screen.choose(screen.pack, 4);
    QCOMPARE(marked(screen.pack), QStringLiteral("4 1"));
    screen.tab(1);
    screen.pick(screen.den, Wolf);
    QCOMPARE(marked(screen.scouts), QStringLiteral("1"));
    QCOMPARE(marked(screen.adults), QString()); // adult 1 is somebody else
    screen.choose(screen.adults, 1);
    screen.pick(screen.den, Bear);
    QCOMPARE(marked(screen.scouts) + marked(screen.adults), QString());
    screen.click("cmdSelAllByDenScouts");
    QCOMPARE(marked(screen.scouts), QStringLiteral("3"));
    screen.pick(screen.den, Wolf);
    QCOMPARE(marked(screen.scouts) + marked(screen.adults), QStringLiteral("11"));
    screen.tab(0);
    QCOMPARE(marked(screen.pack), QStringLiteral("4 3 1"));
    screen.list("optListOfAdults");
    QCOMPARE(marked(screen.pack), QStringLiteral("1"));
    QCOMPARE(rowsOf(screen.selected), QStringLiteral("|Ann Young|3|Scout|1, |Abe Adams|NA|Scout|4, "
                                                     "|Dora King|3|Adult|1, |Bob Adams|1|Scout|3"));
    screen.tab(1); // the den's lists are read again for the den chosen before
    QCOMPARE(marked(screen.scouts) + marked(screen.adults), QStringLiteral("11"));
    screen.tab(0);
    screen.click("cmdUnSelAll");
    QCOMPARE(rowsOf(screen.selected) + marked(screen.pack), QString());
    screen.tab(1);
    QCOMPARE(marked(screen.scouts) + marked(screen.adults), QString());
}

void tst_assign::nobodyTwice_data()
{
    QTest::addColumn<QStringList>("steps");
    const auto steps = [](const char* texts) { return QString::fromLatin1(texts).split(u' '); };
    QTest::newRow("row again") << steps("row row");
    QTest::newRow("row, all") << steps("row all");
    QTest::newRow("all, row") << steps("all row");
    QTest::newRow("all again") << steps("all all");
    QTest::newRow("after a refill") << steps("row lists row all");
    QTest::newRow("pack, den") << steps("row denRow denAll");
    QTest::newRow("den, pack") << steps("denAll row all");
    QTest::newRow("den row again") << steps("denRow denRow denAll denAll");
}

void tst_assign::nobodyTwice()
{
    QFETCH(QStringList, steps);
    Screen screen;
    for (const QString& step : steps) {
        const bool onDen = step.startsWith(QLatin1String("den"));
        screen.tab(onDen ? 1 : 0);
        if (onDen)
            screen.pick(screen.den, Wolf);
        if (step == QLatin1String("row"))
            screen.choose(screen.pack, 1);
        else if (step == QLatin1String("denRow"))
            screen.choose(screen.scouts, 1);
        else if (step == QLatin1String("lists")) {
            screen.list("optListOfAdults");
            screen.list("optListOfScouts");
        } else
            screen.click(onDen ? "cmdSelAllByDenScouts" : "cmdSelectAllSel");
    }
    QCOMPARE(rowsOf(screen.selected).count(QStringLiteral("|Ann Young|3|Scout|1")), 1);
    QStringList people = rowsOf(screen.selected).split(QStringLiteral(", "));
    QCOMPARE(people.removeDuplicates(), 0);
    if (steps.contains(QStringLiteral("all")))
        QCOMPARE(people.size(), 5);
}

void tst_assign::otherTypeLosesItsMark()
{
    Screen screen;
    screen.choose(screen.pack, 1);
    screen.list("optListOfAdults");
    screen.choose(screen.pack, 1);
    screen.choose(screen.pack, 2);
    screen.chooseRow(screen.selected, 1);
    QCOMPARE(marked(screen.pack), QStringLiteral("2"));
    QCOMPARE(rowsOf(screen.selected), QStringLiteral("|Dora King|3|Adult|1, |Ed Hall|1|Adult|2"));
    screen.choose(screen.pack, 1);
    QCOMPARE(rowsOf(screen.selected), QStringLiteral("|Dora King|3|Adult|1, |Ed Hall|1|Adult|2, |Dora King|3|Adult|1"));
    screen.order(BearPin, Day);
    screen.click("cmdAssignAward");
    QCOMPARE(adultAwards(),
             (QStringList{QStringLiteral("1|2|2026-02-05|2026|2"), QStringLiteral("1|2|2026-02-05|2026|2"),
                          QStringLiteral("2|2|2026-02-05|2026|2")}));
    QVERIFY(scoutAwards().isEmpty());
}

void tst_assign::unselectOnDenTab()
{
    Screen screen;
    screen.choose(screen.pack, 3);
    screen.tab(1);
    screen.pick(screen.den, Wolf);
    screen.choose(screen.scouts, 1);
    screen.choose(screen.adults, 1);
    screen.choose(screen.selected, 3); // of another den
    QCOMPARE(rowsOf(screen.selected), QStringLiteral("|Ann Young|3|Scout|1, |Dora King|3|Adult|1"));
    QCOMPARE(marked(screen.scouts) + marked(screen.adults), QStringLiteral("11"));
    screen.chooseRow(screen.selected, 1);
    QCOMPARE(rowsOf(screen.selected), QStringLiteral("|Dora King|3|Adult|1"));
    QCOMPARE(marked(screen.scouts), QString());
    QCOMPARE(marked(screen.adults), QStringLiteral("1"));
    screen.choose(screen.scouts, 1);
    screen.chooseRow(screen.selected, 1);
    QCOMPARE(rowsOf(screen.selected), QStringLiteral("|Ann Young|3|Scout|1"));
    QCOMPARE(marked(screen.scouts), QStringLiteral("1"));
    QCOMPARE(marked(screen.adults), QString());
}

void tst_assign::assignButton()
{
    Screen screen;
    QVERIFY(!screen.assign.isEnabled());
    screen.choose(screen.pack, 4);
    QVERIFY(screen.assign.isEnabled());
    screen.choose(screen.pack, 1);
    screen.chooseRow(screen.selected, 2);
    QVERIFY(screen.assign.isEnabled());
    screen.chooseRow(screen.selected, 1);
    QVERIFY(!screen.assign.isEnabled());
    QCOMPARE(marked(screen.pack), QString());
    screen.click("cmdSelectAllSel");
    QVERIFY(screen.assign.isEnabled());
    screen.click("cmdUnSelAll");
    QVERIFY(!screen.assign.isEnabled());
    screen.tab(1);
    screen.pick(screen.den, Wolf);
    screen.click("cmdSelAllByDenAdults");
    QVERIFY(screen.assign.isEnabled());
    QCOMPARE(rowsOf(screen.selected), QStringLiteral("|Dora King|3|Adult|1"));
    screen.chooseRow(screen.selected, 1);
    QVERIFY(!screen.assign.isEnabled());
}

void tst_assign::missing_data()
{
    QTest::addColumn<QString>("award");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("focus");
    const QString award = QStringLiteral("An Award needs to be selected!");
    const QString box = QStringLiteral("cboAward");
    QTest::newRow("no award") << QString() << Day << award << box;
    QTest::newRow("neither") << QString() << QString() << award << box;
    QTest::newRow("no date") << BearPin << QString() << QStringLiteral("An Assigned Date needs to be entered!")
                             << QStringLiteral("cmdAssignAward");
}

void tst_assign::missing()
{
    QFETCH(QString, award);
    QFETCH(QString, date);
    Screen screen;
    screen.click("cmdSelectAllSel");
    screen.order(award, date);
    const auto told = test::answerNext();
    screen.click("cmdAssignAward");
    QTEST(told->text, "text");
    QCOMPARE(told->title, QStringLiteral("Error"));
    QTEST(screen.form.focusWidget()->objectName(), "focus");
    QCOMPARE(screen.award.text(), award);
    QCOMPARE(screen.date.text(), date);
    QVERIFY(scoutAwards().isEmpty());
}

void tst_assign::badDate_data()
{
    QTest::addColumn<QString>("way");
    for (const char* way : {"cmdAssignAward", "cmdClearAll", "cmdUnSelAll", "cmdExit", "key", "tab", "list", "award"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void tst_assign::badDate()
{
    QFETCH(QString, way);
    Screen screen;
    screen.choose(screen.pack, 4);
    screen.order(BearPin, QStringLiteral("2/30/2026"));
    const auto told = test::answerNext();
    if (way == QLatin1String("key"))
        QTest::keyClick(&screen.date, Qt::Key_Tab);
    else if (way == QLatin1String("tab"))
        screen.tab(1);
    else if (way == QLatin1String("list"))
        screen.list("optListOfAdults");
    else if (way == QLatin1String("award"))
        QTest::mouseClick(&screen.award, Qt::LeftButton);
    else
        screen.click(way.toLatin1().constData());
    QVERIFY(told->text.startsWith(QStringLiteral("Invalid Date format")));
    screen.form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&screen.form));
    QVERIFY(screen.date.hasFocus());
    QCOMPARE(screen.date.text(), QStringLiteral("2/30/2026"));
    QCOMPARE(screen.award.text(), BearPin);
    QCOMPARE(screen.pack.text(0, 1), QStringLiteral("Scout Name"));
    QCOMPARE(test::control<QTabWidget>(screen.form, "SSTabAssignInsignias").currentIndex(), 0);
    QCOMPARE(rowsOf(screen.selected), QStringLiteral("|Abe Adams|NA|Scout|4"));
    QVERIFY(scoutAwards().isEmpty());
    screen.date.clear(); // an empty date lets go
    QTest::keyClick(&screen.date, Qt::Key_Tab);
    QVERIFY(!screen.date.hasFocus());
}

void tst_assign::assignment()
{
    Screen screen;
    screen.choose(screen.pack, 4);
    screen.choose(screen.pack, 1);
    screen.list("optListOfAdults");
    screen.choose(screen.pack, 1);
    const QString people = rowsOf(screen.selected);
    QStringList scouts;
    QStringList adults;
    // The second run gives the same award again, and nothing minds; so does a third with another one.
    for (const auto& [award, date, written] : {std::tuple(BearPin, Day, QStringLiteral("2|2026-02-05|2026|2")),
                                               std::tuple(BearPin, Day, QStringLiteral("2|2026-02-05|2026|2")),
                                               std::tuple(QStringLiteral("Bear Badge"), QStringLiteral("12/31/1999"),
                                                          QStringLiteral("3|1999-12-31|1999|12"))}) {
        screen.order(award, date);
        screen.click("cmdAssignAward");
        for (const int sid : {4, 1})
            scouts += QStringLiteral("%1|%2|Null|%3").arg(sid).arg(written).arg(scouts.size() + 1);
        adults += QStringLiteral("1|") + written;
        QCOMPARE(scoutAwards(), scouts);
        QCOMPARE(sqlite(m_file, "Select * From Assigned_Awards_Adults Order By rowid"), adults);
        QCOMPARE(screen.award.listCount(), 0);
        QCOMPARE(screen.award.text() + screen.date.text(), QString());
        QCOMPARE(rowsOf(screen.selected), people);
        QCOMPARE(marked(screen.pack), QStringLiteral("1"));
        QVERIFY(screen.assign.isEnabled());
    }
}

void tst_assign::clearAll_data()
{
    QTest::addColumn<int>("tab");
    QTest::newRow("pack") << 0;
    QTest::newRow("den") << 1;
}

void tst_assign::clearAll()
{
    QFETCH(int, tab);
    Screen screen;
    screen.click("cmdSelectAllSel");
    screen.tab(1);
    screen.pick(screen.den, Wolf);
    screen.click("cmdSelAllByDenAdults");
    screen.tab(tab);
    screen.order(BearPin, Day);
    screen.click("cmdClearAll");
    QCOMPARE(screen.award.listCount(), 0);
    QCOMPARE(screen.award.text() + screen.date.text() + rowsOf(screen.selected), QString());
    QVERIFY(!screen.assign.isEnabled());
    QCOMPARE(tab == 0 ? marked(screen.pack) : marked(screen.scouts) + marked(screen.adults), QString());
    QCOMPARE(tab == 0 ? screen.pack.rows() : screen.scouts.rows(), tab == 0 ? 6 : 3);
    // The count went back, too: the next choice is the first one.
    screen.tab(0);
    screen.choose(screen.pack, 3);
    QVERIFY(screen.assign.isEnabled());
    QCOMPARE(rowsOf(screen.selected), QStringLiteral("|Bob Adams|1|Scout|3"));
}

void tst_assign::oldAwardIsGone_data()
{
    QTest::addColumn<QString>("emptiedBy");
    for (const char* way : {"assignment", "Clear All", "opening the list"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void tst_assign::oldAwardIsGone()
{
    QFETCH(QString, emptiedBy);
    Screen screen;
    screen.choose(screen.pack, 4);
    screen.order(BearPin, Day);
    if (emptiedBy == QLatin1String("assignment"))
        screen.click("cmdAssignAward");
    else if (emptiedBy == QLatin1String("Clear All")) {
        screen.click("cmdClearAll");
        screen.choose(screen.pack, 4);
    } else
        screen.pick(screen.award, QString()); // leaves it without a choice
    const auto before = scoutAwards();
    screen.date.setText(Day);
    const auto told = test::answerNext();
    screen.click("cmdAssignAward");
    QCOMPARE(told->text, QStringLiteral("An Award needs to be selected!"));
    QCOMPARE(scoutAwards(), before);
    screen.pick(screen.award, QStringLiteral("Wolf Badge"));
    screen.click("cmdAssignAward");
    QCOMPARE(scoutAwards().size(), before.size() + 1);
    QVERIFY(scoutAwards().last().startsWith(QStringLiteral("4|1|")));
}

void tst_assign::failures_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<QByteArray>("report");
    QTest::addColumn<int>("scouts");
    // A den without scouts leaves the count of the den before it.
    QTest::newRow("select all by an old count")
        << QStringLiteral("selectStale") << QByteArray("Run-time error '9'") << 0;
    QTest::newRow("unselect by an old count")
        << QStringLiteral("unselectStale") << QByteArray("Run-time error '9'") << 0;
    QTest::newRow("den typed, never chosen") << QStringLiteral("typedDen") << QByteArray("Run-time error '3075'") << 0;
    QTest::newRow("refused row keeps those before it")
        << QStringLiteral("refusedRow") << QByteArray("Run-time error '") << 5;
}

void tst_assign::failures()
{
    QFETCH(QString, way);
    QFETCH(QByteArray, report);
    QCOMPARE(sqlite(m_file, "Create Trigger Refuse Before Insert On Assigned_Awards_Adults When New.Adult_SID = 2 "
                            "Begin Select Raise(Abort, 'no'); End"),
             QStringList());
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--fail"), m_folder->path(), way});
    QVERIFY(child.waitForFinished(20000));
    QCOMPARE(child.exitCode(), 1);
    const QByteArray said = child.readAllStandardError();
    QVERIFY2(said.contains(report), said.constData());
    QTEST(int(scoutAwards().size()), "scouts");
    QCOMPARE(adultAwards().size(), way == QLatin1String("refusedRow") ? 1 : 0);
}

// The child process of failures(): works the form on the parent's file until it ends with the run-time's report.
static int failOnScreen(const QString& folder, const QString& way)
{
    gAppPath = folder;
    gOldDbName = QStringLiteral("\\Quorrel.mdb");
    gDbName = QStringLiteral("\\Quorrel11.mdb");
    gDatabase = std::make_unique<store::Database>(store::DBEngine::openDatabase(databasePath()));
    test::answerNext();
    Screen screen;
    if (way == QLatin1String("refusedRow")) {
        screen.click("cmdSelectAllSel");
        screen.list("optListOfAdults");
        screen.click("cmdSelectAllSel");
        screen.order(BearPin, Day);
        screen.click("cmdAssignAward");
        return 0;
    }
    if (way == QLatin1String("unselectStale"))
        screen.choose(screen.pack, 3);
    screen.tab(1);
    if (way == QLatin1String("typedDen")) {
        screen.den.setFocus();
        QTest::keyClicks(&screen.den, Wolf);
        screen.tab(0);
        screen.tab(1);
        return 0;
    }
    screen.pick(screen.den, Wolf);
    screen.pick(screen.den, Empty);
    if (way == QLatin1String("selectStale"))
        screen.click("cmdSelAllByDenScouts");
    else
        screen.chooseRow(screen.selected, 1);
    return 0;
}

int main(int argc, char** argv)
{
    widgets::Application application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--fail"))
        return failOnScreen(arguments.value(2), arguments.value(3));
    tst_assign tests;
    return QTest::qExec(&tests, argc, argv);
}

#include "tst_assign.moc"
