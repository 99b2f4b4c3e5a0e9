#include "support/TestApp.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>

#include <sqlite3.h>

#include <cstdio>

using namespace orlo;

namespace
{

constexpr int Kills = 100;
constexpr int MostRows = 2000;      // far more than a child gets to before its end
constexpr int LongestDelay = 30000; // microseconds from the first row on

using File = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

// The file as another program sees it.
File open(const QString& path)
{
    sqlite3* file = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &file, SQLITE_OPEN_READWRITE, nullptr);
    return {file, &sqlite3_close};
}

// The first column of a statement's rows, or what the engine complains about.
QStringList texts(sqlite3* file, const char* statement)
{
    QStringList lines;
    char* error = nullptr;
    sqlite3_exec(
        file, statement,
        [](void* to, int, char** cells, char**) {
            *static_cast<QStringList*>(to) += QString::fromUtf8(cells[0]);
            return 0;
        },
        &lines, &error);
    if (error)
        lines = {QString::fromUtf8(error)};
    sqlite3_free(error);
    return lines;
}

// The child: gives one award to person after person, the way of the bulk assignment, and tells every row that the
// engine has acknowledged.
int assign(const QString& path)
{
    auto file = store::DBEngine::openDatabase(path);
    for (int scout = 1; scout <= MostRows; ++scout) {
        auto awards = file.openRecordset(QStringLiteral("Select * From Assigned_Awards_Scouts Where Insignia_SID = 0"));
        awards.addNew();
        awards.setValue(u"Scout_SID", QString::number(scout));
        awards.setValue(u"Insignia_SID", 7);
        awards.setValue(u"Date_Assigned", QStringLiteral("2/5/2026"));
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
    void acknowledgedRowsSurvive();
};

void tst_kill::acknowledgedRowsSurvive()
{
    const test::AppFolder folder;
    gDatabase.reset();
    const QString path = folder.path() + QStringLiteral("/Quorrel11.mdb");
    QRandomGenerator random(20260205);
    int rows = 0;
    int unfinished = 0; // kills that left a journal to roll back
    for (int kill = 1; kill <= Kills; ++kill) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--assign"), path});
        QVERIFY2(child.waitForReadyRead(20000), child.readAllStandardError().constData());
        QElapsedTimer timer;
        timer.start();
        const qint64 delay = random.bounded(LongestDelay) * 1000LL;
        while (timer.nsecsElapsed() < delay)
            QThread::usleep(50);
        child.kill();
        QVERIFY(child.waitForFinished(20000));
        QCOMPARE(child.exitStatus(), QProcess::CrashExit); // it was cut off and hadn't ended by itself
        const int acknowledged = int(child.readAllStandardOutput().count('\n'));
        QVERIFY(acknowledged > 0);
        unfinished += QFile::exists(path + QStringLiteral("-journal"));

        const File file = open(path);
        QCOMPARE(texts(file.get(), "Pragma integrity_check"), QStringList{QStringLiteral("ok")});
        const int found = texts(file.get(), "Select Count(*) From Assigned_Awards_Scouts").value(0).toInt();
        QVERIFY2(
            found >= rows + acknowledged && found <= rows + acknowledged + 1,
            qPrintable(
                QStringLiteral("%1 rows of kill %2, %3 acknowledged").arg(found - rows).arg(kill).arg(acknowledged)));
        // Whole rows only, every person of this run once and without a gap, every key once.
        QCOMPARE(texts(file.get(),
                       "Select Count(*) From Assigned_Awards_Scouts Where Insignia_SID Is Not 7 Or Year Is "
                       "Not 2026 Or Month Is Not 2 Or Date_Assigned Is Not '2026-02-05' Or Scout_SID Is Null"),
                 QStringList{QStringLiteral("0")});
        QCOMPARE(texts(file.get(), "Select Count(Distinct Assigned_SID) From Assigned_Awards_Scouts").value(0).toInt(),
                 found);
        const auto run =
            QStringLiteral("Select Count(Distinct Scout_SID) || ' ' || Max(Scout_SID) From (Select Scout_SID From "
                           "Assigned_Awards_Scouts Order By Assigned_SID Limit -1 Offset %1)")
                .arg(rows);
        QCOMPARE(texts(file.get(), run.toLatin1().constData()), QStringList{QStringLiteral("%1 %1").arg(found - rows)});
        rows = found;
    }
    // Without kills in the middle of a row the test would have tried nothing.
    QVERIFY2(unfinished > Kills / 10, qPrintable(QString::number(unfinished)));
}

int main(int argc, char** argv)
{
    widgets::Application application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--assign"))
        return assign(arguments.value(2));
    tst_kill tests;
    return QTest::qExec(&tests, argc, argv);
}

#include "tst_kill.moc"
