#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "shell/frame/mdiPendrake.h"
#include "store/repair/Repair.h"
#include "store/schema/Schema.h"
#include "store/upkeep/basDataUpdate.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Repeats.h"
#include "support/Sqlite.h"
#include "widgets/Application.h"
#include "widgets/DriveList.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <cstdio>
#include <map>

using namespace orlo;
using test::sqlite;

// Kill -9 at random moments of work on the whole file.

namespace
{

// The child's work on the files in a folder, which is also the root of a drive.
void update()
{
    test::answerNext();
    (void)UpdateDatabaseFile();
}

void press(const char* form, const char* button)
{
    test::control<QPushButton>(screenOf(form).get(), button).click();
}

void repair()
{
    database().close();
    store::DBEngine::repairDatabase(databasePath(), store::schema::versions());
    openDatabase(databasePath());
}

// Several days, each with its copy.
void copies()
{
    for (int day = 0; day < 60; ++day) {
        platform::setToday(QDate(2026, 1, 1).addDays(day));
        database().execute(QString("Update Adults Set MI = '%1' Where Adult_SID = 1").arg(day % 10));
    }
}

int child(const QStringList& arguments)
{
    const QByteArray name = arguments[0].toLatin1();
    const QString folder = arguments[1];
    gAppPath = folder;
    gOldDbName = "\\Quorrel.mdb";
    gDbName = "\\Quorrel11.mdb";
    QDir::setCurrent(folder);
    platform::setVolumes([folder] { return QList<platform::Drive>{{folder, 1LL << 40}}; });
    if (name != "update")
        openDatabase(databasePath());
    mdiPendrake::handOverDataForms();
    const std::map<QByteArray, std::function<void()>> works{
        {"update", update},
        {"copies", copies},
        {"repair", repair},
        {"backup", [] { press("frmDataBackup", "cmdBack"); }},
        {"restore", [] { press("frmRestorBackup", "cmdRestore"); }}};
    widgets::Application::setQuitOnLastWindowClosed(false);
    if (name == "backup" || name == "restore") {
        test::answerNext(QMessageBox::Yes);
        test::answerNext();
    }
    std::puts("begun");
    std::fflush(stdout);
    works.at(name)();
    return 0;
}

} // namespace

class tst_cutoff : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        gOldDbName = "\\Quorrel.mdb";
        gDbName = "\\Quorrel11.mdb";
        const QByteArray count = "With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < ";
        const QByteArray rows =
            count + "300) Insert Into Adults (Adult_SID, Last_Name, Assigned_Den_SID) Select i, 'Berg', i % 9 From n;" +
            count + "200) Insert Into Scouts (Scout_SID, Last_Name) Select i, 'Å ' || i From n;" + count +
            "200) Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned) "
            "Select i, 1 + i % 7, '2025-06-07' From n;";
        make("1.0", store::schema::V10, rows);
        make("older", store::schema::V11, rows + "Delete From Scouts");
        make("1.1", store::schema::V11, rows);
        m_whole["damaged"] = test::withoutRootOf(file("made"), "Scouts");
        gAppPath = m_folder.path();
        test::copyLayouts();
    }

    void update()
    {
        kill({{"1.0", "Quorrel.mdb"}, {"older", "Quorrel11.mdb"}}, [&](bool cut) {
            if (QFile::exists(file("Quorrel.mdb"))) {
                QVERIFY(cut);
                // The way back, as the user does it: the safety copy replaces the old file, whatever else is there.
                const bool copied = QFile::exists(file("QuorrelOld_10.mdb"));
                QVERIFY(bytes(copied ? "QuorrelOld_10.mdb" : "Quorrel.mdb") == m_whole["1.0"]);
                if (copied && random(2) == 0) // sometimes the other way: the file as the kill left it is sound
                    QCOMPARE(sqlite(file("Quorrel.mdb"), "Pragma integrity_check"), QStringList("ok"));
                put("Quorrel.mdb", m_whole["1.0"]);
                test::answerNext();
                QVERIFY(UpdateDatabaseFile());
                gDatabase.reset();
            }
            QCOMPARE(look("Quorrel11.mdb"), "ok 300|300|200|200");
        });
    }

    // Loading the forms that are unloaded empties the purchase list, so the contents of the files are compared, not the
    // bytes.
    void backup()
    {
        kill({{"1.1", "Quorrel11.mdb"}, {"older", "Quorrel11_Backup"}}, [&](bool cut) {
            QCOMPARE(look("Quorrel11.mdb"), m_contents["1.1"]);
            const QString made = look("Quorrel11_Backup");
            QVERIFY2(made == m_contents["1.1"] || (cut && made == m_contents["older"]), qPrintable(made));
        });
    }

    void restore()
    {
        kill({{"1.1", "Quorrel11_Backup"}, {"older", "Quorrel11.mdb"}}, [&](bool cut) {
            QVERIFY(bytes("Quorrel11_Backup") == m_whole["1.1"]);
            const QString now = look("Quorrel11.mdb");
            QVERIFY2(now == m_contents["1.1"] || (cut && now == m_contents["older"]), qPrintable(now));
        });
    }

    void repair()
    {
        kill({{"damaged", "Quorrel11.mdb"}}, [&](bool cut) {
            QVERIFY((cut && bytes("Quorrel11.mdb") == m_whole["damaged"]) ||
                    bytes("Quorrel11 (damaged).mdb") == m_whole["damaged"]);
            store::DBEngine::repairDatabase(file("Quorrel11.mdb"), store::schema::versions());
            QCOMPARE(look("Quorrel11.mdb"), "ok 0|300|200|200");
        });
    }

    // Whatever has a copy's name is complete; anything else is gone after the next copies.
    void copies()
    {
        QDir folder(file("copies"));
        folder.removeRecursively(); // from other work
        qsizetype seen = 0;
        kill({{"1.1", "Quorrel11.mdb"}}, [&](bool) {
            QCOMPARE(look("Quorrel11.mdb"), m_contents["1.1"]);
            const QStringList names = folder.entryList({"2026-[01][0-9]-[0-9][0-9]"}, QDir::Dirs);
            for (const QString& name : names)
                QCOMPARE(look("copies/" + name + "/Quorrel11_Backup"), m_contents["1.1"]);
            QVERIFY(names.size() <= 7 + 4 + 12 + 1); // cut off before the thinning
            seen += names.size();
            folder.removeRecursively();
        });
        QVERIFY2(seen > 24, qPrintable(QString::number(seen)));
    }

private:
    [[nodiscard]] QString file(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QByteArray bytes(const QString& name) const { return test::contents(file(name)); }
    // Whether the file is sound, and how many den positions, adults, scouts and awards it holds.
    [[nodiscard]] QString look(const QString& name) const
    {
        return sqlite(file(name), "Pragma integrity_check; Select (Select Count(*) From Leader_Den_Assignments), "
                                  "(Select Count(*) From Adults), (Select Count(*) From Scouts), (Select Count(*) From "
                                  "Assigned_Awards_Scouts)")
            .join(' ');
    }
    // The files that exist; journals only if they have something to roll back.
    [[nodiscard]] QStringList names() const
    {
        QStringList found = test::filesBelow(m_folder.path());
        found.removeIf([](const QString& name) { return name.endsWith("-journal") && !test::isHot(name); });
        return found;
    }
    void put(const QString& name, const QByteArray& content) const { test::write(file(name), content); }
    void make(const QString& name, int version, const QByteArray& sql)
    {
        QFile::remove(file("made"));
        auto made = store::DBEngine::createDatabase(file("made"));
        store::createSchema(made, version);
        made.close();
        sqlite(file("made"), "Begin;" + sql + ";Commit");
        m_whole[name] = bytes("made");
        m_contents[name] = look("made");
    }
    [[nodiscard]] quint32 random(quint32 below) { return m_random.bounded(below); }

    // Lays out the files, lets a child do the work of the test's name, kills it at any moment, and checks what it left;
    // this is repeated until some kills fell in unfinished work. The first run isn't killed.
    template <class Check>
    void kill(const QMap<QString, QString>& files, const Check& check)
    {
        qint64 time = 0; // ms that the whole work takes
        const int kills = test::repeats("ORLO_KILLS", 12);
        int between = 0;
        QStringList end;
        for (int i = 0; (i <= kills || (between == 0 && i <= 10 * kills)) && !QTest::currentTestFailed(); ++i) {
            QDir folder(m_folder.path());
            for (const QString& old : folder.entryList({"Quorrel*"}, QDir::Files))
                folder.remove(old);
            for (auto at = files.cbegin(); at != files.cend(); ++at)
                put(at.value(), m_whole[at.key()]);
            const QStringList begun = names();
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(),
                        test::childArguments({QTest::currentTestFunction(), m_folder.path()}));
            QVERIFY2(child.waitForReadyRead(20000), child.readAllStandardError().constData());
            QElapsedTimer since;
            since.start();
            if (i > kills) // all fell beside the work: as soon as anything is seen of it
                while (names() == begun && since.elapsed() < time)
                    QThread::usleep(50);
            else if (i > 0)
                QThread::usleep(random(quint32(time) * 1000));
            if (i > 0)
                child.kill();
            QVERIFY(child.waitForFinished(20000));
            if (i == 0)
                time = since.elapsed(), end = names();
            between += names() != begun && names() != end;
            check(i > 0);
        }
        qInfo("%d kills in between", between);
        QVERIFY(between > 0 || QTest::currentTestFailed());
    }

    QTemporaryDir m_folder;
    QMap<QString, QByteArray> m_whole;
    QMap<QString, QString> m_contents;
    QRandomGenerator m_random{20261124};
};

ORLO_TEST(tst_cutoff, child)

#include "tst_cutoff.moc"
