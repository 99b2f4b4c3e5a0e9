#include "awards/AddAwardsForm.h"
#include "shell/forms/Module1.h"
#include "shell/forms/PersonShown.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "store/opening/OpenFile.h"
#include "support/Main.h"
#include "support/Pack.h"
#include "support/RecordScreen.h"
#include "support/Repeats.h"
#include "support/Sqlite.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTest>
#include <QThread>

#include <cstdio>
#include <map>

using namespace orlo;

namespace
{

constexpr int MaxTimes = 20'000; // far more than a child reaches before its end

// What a child does again and again, for the n-th time. Every row that the engine acknowledged is there for good.

// Gives one award to person after person, as the bulk assignment does.
void assign(int n)
{
    auto awards = database().openRecordset("Select * From Assigned_Awards_Scouts Where Insignia_SID = 0");
    awards.addNew();
    awards.setValue(u"Scout_SID", n);
    awards.setValue(u"Insignia_SID", 7);
    awards.setValue(u"Date_Assigned", u"2/5/2026");
    awards.setValue(u"Year", 2026);
    awards.setValue(u"Month", 2);
    awards.update();
}

void saveScout(int n)
{
    const QWidget& form = screenOf("frmScouts").get();
    test::control<QPushButton>(form, "cmdNew").click();
    test::control<QLineEdit>(form, "txtFirst").setText(QString::number(n));
    test::control<QLineEdit>(form, "txtPackStartDate").setText("2/5/2026");
    test::control<QPushButton>(form, "cmdSave").click();
}

// Adds the catalogue's two awards to the scout on screen.
void addAwards(int)
{
    QWidget& form = screenOf("frmAddAwardsToScout").get();
    dynamic_cast<AddAwardsForm&>(form).giveTo(dynamic_cast<PersonShown&>(screenOf("frmScouts").get()));
    test::control<QPushButton>(form, "cmdSelectAll").click();
    test::control<QLineEdit>(form, "txtAssignedDate").setText("2/5/2026");
    test::control<QPushButton>(form, "cmdAddToScout").click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

const QByteArray Awards =
    "Select Scout_SID, Insignia_SID, Date_Assigned, Year, Month From Assigned_Awards_Scouts Order By Assigned_SID";
const QByteArray Scouts =
    "Select First_Name, Active, Birth_Date, Pack_Start_Date From Scouts Where Scout_SID > 4 Order By Scout_SID";

struct Work {
    void (*step)(int);
    QByteArray select;
    int rowsEach;
    QString row; // %1 counts a run's times, or the rows of one time if it has several
};
const std::map<QByteArray, Work> Works{{"assign", {assign, Awards, 1, "%1|7|2026-02-05|2026|2"}},
                                       {"saveScout", {saveScout, Scouts, 1, "%1|Y|1001-01-01|2026-02-05"}},
                                       {"addAwards", {addAwards, Awards, 2, "3|%1|2026-02-05|2026|2"}}};

// The child: works, and reports each time that it has finished.
int child(const QStringList& arguments)
{
    const QByteArray name = arguments[0].toLatin1();
    gAppPath = arguments[1];
    gDbName = "\\Quorrel11.mdb";
    gDatabase = std::make_unique<store::Database>(store::openFile(databasePath()));
    for (int n = 1; n <= MaxTimes; ++n) {
        Works.at(name).step(n);
        std::puts("done");
        std::fflush(stdout);
    }
    return 0;
}

} // namespace

class tst_kill : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void acknowledgedRowsSurvive_data()
    {
        QTest::addColumn<QByteArray>("work");
        for (const auto& [name, work] : Works)
            QTest::newRow(name.constData()) << name;
    }
    void acknowledgedRowsSurvive()
    {
        QFETCH(QByteArray, work);
        const auto& [step, select, rowsEach, row] = Works.at(work);
        const test::AppFolder folder;
        gDatabase.reset();
        test::fill(test::Pack);
        const QString path = folder.path() + "/Quorrel11.mdb";
        QRandomGenerator random(20260205);
        const int kills = test::repeats("ORLO_KILLS", 30);
        int rows = 0;
        int unfinished = 0; // kills that left a journal to roll back
        for (int kill = 1; kill <= kills; ++kill) {
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(), test::childArguments({work, folder.path()}));
            QVERIFY2(child.waitForReadyRead(20000), child.readAllStandardError().constData());
            QThread::usleep(random.bounded(30'000U));
            while (kill % 2 == 1 && child.state() == QProcess::Running && !test::isHot(path + "-journal"))
                child.waitForFinished(0); // few fall into a write by themselves
            child.kill();
            QVERIFY(child.waitForFinished(20000));
            QCOMPARE(child.exitStatus(), QProcess::CrashExit); // it was killed and hadn't ended normally
            const int acknowledged = int(child.readAllStandardOutput().count('\n')) * rowsEach;
            QVERIFY(acknowledged > 0);
            unfinished += test::isHot(path + "-journal");

            QCOMPARE(test::sqlite(path, "Pragma integrity_check"), QStringList{"ok"});
            const QStringList found = test::sqlite(path, select);
            const int added = int(found.size()) - rows;
            QVERIFY2(added >= acknowledged && added <= acknowledged + rowsEach,
                     qPrintable(QString("%1 rows of kill %2, %3 acknowledged").arg(added).arg(kill).arg(acknowledged)));
            // Whole rows only, in their order and without a gap.
            for (int n = 0; n < added; ++n)
                QCOMPARE(found[rows + n], row.arg(rowsEach == 1 ? n + 1 : n % rowsEach + 1));
            rows = int(found.size());
        }
        // Without kills in the middle of a row the test would have tested nothing.
        QVERIFY2(unfinished > kills / 10, qPrintable(QString::number(unfinished)));
    }
};

ORLO_TEST(tst_kill, child)

#include "tst_kill.moc"
