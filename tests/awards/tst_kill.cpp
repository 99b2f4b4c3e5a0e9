#include "support/Sqlite.h"
#include "support/TestApp.h"

#include <QProcess>
#include <QRandomGenerator>

#include <cstdio>

using namespace orlo;

namespace
{

constexpr int Kills = 100;
constexpr int MostRows = 2000;          // far more than a child gets to before its end
constexpr quint32 LongestDelay = 30000; // microseconds from the first row on

// The child: gives one award to person after person, the way of the bulk assignment, and tells every row that the
// engine has acknowledged.
int assign(const QString& path)
{
    auto file = store::DBEngine::openDatabase(path);
    for (int scout = 1; scout <= MostRows; ++scout) {
        auto awards = file.openRecordset("Select * From Assigned_Awards_Scouts Where Insignia_SID = 0");
        awards.addNew();
        awards.setValue(u"Scout_SID", QString::number(scout));
        awards.setValue(u"Insignia_SID", 7);
        awards.setValue(u"Date_Assigned", u"2/5/2026");
        awards.setValue(u"Year", 2026);
        awards.setValue(u"Month", 2);
        awards.update();
        std::puts("row");
        std::fflush(stdout);
    }
    return 0;
}

} // namespace

class tst_kill : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void acknowledgedRowsSurvive()
    {
        const test::AppFolder folder;
        gDatabase.reset();
        const QString path = folder.path() + "/Quorrel11.mdb";
        QRandomGenerator random(20260205);
        int rows = 0;
        int unfinished = 0; // kills that left a journal to roll back
        for (int kill = 1; kill <= Kills; ++kill) {
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(), {"--assign", path});
            QVERIFY2(child.waitForReadyRead(20000), child.readAllStandardError().constData());
            QThread::usleep(random.bounded(LongestDelay));
            child.kill();
            QVERIFY(child.waitForFinished(20000));
            QCOMPARE(child.exitStatus(), QProcess::CrashExit); // it was cut off and hadn't ended by itself
            const int acknowledged = int(child.readAllStandardOutput().count('\n'));
            QVERIFY(acknowledged > 0);
            unfinished += QFile::exists(path + "-journal");

            QCOMPARE(test::sqlite(path, "Pragma integrity_check"), QStringList{"ok"});
            const QStringList keys = test::sqlite(path, "Select Distinct Assigned_SID From Assigned_Awards_Scouts");
            const auto found = int(keys.size());
            QVERIFY2(found >= rows + acknowledged && found <= rows + acknowledged + 1,
                     qPrintable(
                         QString("%1 rows of kill %2, %3 acknowledged").arg(found - rows).arg(kill).arg(acknowledged)));
            // Whole rows only, every person of this run once and without a gap, every key once.
            QStringList run = test::sqlite(path, "Select Scout_SID, Insignia_SID, Date_Assigned, Year, Month From "
                                                 "Assigned_Awards_Scouts Order By Assigned_SID");
            QCOMPARE(run.size(), found);
            for (int scout = 1; scout <= found - rows; ++scout)
                QCOMPARE(run[rows + scout - 1], QString("%1|7|2026-02-05|2026|2").arg(scout));
            rows = found;
        }
        // Without kills in the middle of a row the test would have tried nothing.
        QVERIFY2(unfinished > Kills / 10, qPrintable(QString::number(unfinished)));
    }
};

int main(int argc, char** argv)
{
    widgets::Application application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--assign")
        return assign(arguments.value(2));
    tst_kill tests;
    return QTest::qExec(&tests, argc, argv);
}

#include "tst_kill.moc"
