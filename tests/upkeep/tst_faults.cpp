#include "shell/forms/Module1.h"
#include "store/engine/Value.h"
#include "store/repair/Repair.h"
#include "store/schema/Schema.h"
#include "store/upkeep/basDataUpdate.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Sqlite.h"
#include "support/System.h"
#include "support/Table.h"
#include "widgets/Application.h"

#include <QFile>
#include <QProcess>

#include <cstdio>

using namespace orlo;
using test::sqlite;

namespace
{

// Another process that runs statements on a file and then waits, its file open, until it is killed with the object.
struct Other {
    Other(const QString& path, const QString& sql)
    {
        process.start(QCoreApplication::applicationFilePath(), test::childArguments({path, sql}));
        if (!process.waitForReadyRead())
            test::fail(process.readAllStandardError());
    }
    ~Other() { process.kill(), process.waitForFinished(); }
    QProcess process;
};

int child(const QStringList& arguments)
{
    sqlite3* file = nullptr;
    sqlite3_open(arguments[0].toUtf8().constData(), &file);
    if (sqlite3_exec(file, arguments[1].toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        return 1;
    std::puts("done");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

void save()
{
    auto scouts = database().openRecordset("Scouts");
    scouts.addNew();
    scouts.setValue(u"Scout_SID", 9);
    scouts.setValue(u"Note", QString(300'000, u'x'));
    scouts.update();
}

void repair()
{
    store::DBEngine::repairDatabase(databasePath(), store::schema::versions());
}

const QMap<QString, std::function<void()>> Works{
    {"start", [] { openDatabase(databasePath()); }},
    {"update", [] { test::answerNext(), (void)UpdateDatabaseFile(); }},
    {"save", save},
    {"repair", repair},
    {"copy", [] { gFileSystem.copyFile(databasePath(), gAppPath + "\\Quorrel11_Backup", true); }},
    {"over", [] { gFileSystem.copyFile(QCoreApplication::applicationFilePath(), databasePath(), true); }}};

// An application folder that also has a file of version 1.0; neither is open.
struct Folder : test::AppFolder {
    QString old = path() + "/Quorrel.mdb";
    QString now = path() + "/Quorrel11.mdb";
    QString copy = path() + "/QuorrelOld_10.mdb";

    Folder()
    {
        gDatabase.reset();
        auto made = store::DBEngine::createDatabase(old);
        store::createSchema(made, store::schema::V10);
        made.close();
        const QByteArray count = "With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < 500) ";
        for (const QString& file : {old, now})
            sqlite(file, count + "Insert Into Adults (Adult_SID, City) Select i, 'third' From n");
    }
};

} // namespace

class tst_faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Each work fails with the number, and the file still has its contents.
    void worksUnderFaults_data() { test::tableOf("upkeep/faults.txt"); }
    void worksUnderFaults()
    {
        const QString fault = test::cell("fault and work").section(' ', 0, 0);
        const QString work = test::cell("fault and work").section(' ', 1);
        const Folder folder;
        const QString file = work == "update" ? folder.old : folder.now;
        if (fault == "damaged") // a page of a table without rows, on a disk without room for the new file
            test::write(file, test::withoutRootOf(file, "Dens"));
        if (work == "save")
            openDatabase(databasePath());
        std::optional<Other> other;
        std::optional<test::Forbidden> forbidden;
        if (fault == "locked")
            other.emplace(file, "Begin Exclusive; Insert Into Adults (Adult_SID) Values (999)");
        else if (fault == "full" || fault == "damaged")
            test::limitFiles(fault == "full" ? QFileInfo(file).size() : 100'000);
        else
            forbidden.emplace(file, fault == "file" ? test::Forbidden::File : test::Forbidden::Folder);
        const int number = test::failureNumber(Works[work]);
        forbidden.reset();
        test::limitFiles(-1);
        other.reset();
        gDatabase.reset();
        QTEST(QString::number(number) + ' ' + platform::standardDescription(number), "told");
        QTEST(widgets::Application::reportOf(platform::RuntimeError(number)).section("close. ", 1), "closing");
        widgets::setClosingWords({});
        if (fault == "damaged")
            repair();
        QCOMPARE(sqlite(file, "Select Count(*) From Adults; Pragma integrity_check").join(' '), "500 ok");
    }

    // The journal that a killed run left beside the old file is rolled back before the safety copy is made, unless the
    // user put the safety copy back.
    void journal_data() { test::tableOf("upkeep/faults_journal.txt"); }
    void journal()
    {
        const Folder folder;
        QVERIFY(QFile::copy(folder.old, folder.copy));
        Other(folder.old, "Pragma cache_size=1; Pragma synchronous=Off; Pragma locking_mode=Exclusive;"
                          "Update Adults Set City = 'first'; Begin; Update Adults Set City = 'other'");
        QVERIFY(QFile::exists(folder.old + "-journal"));
        if (QTest::currentDataTag() == QByteArray("put back"))
            QVERIFY(QFile::remove(folder.old) && QFile::copy(folder.copy, folder.old));
        test::answerNext();
        QVERIFY(UpdateDatabaseFile());
        for (const QString& path : {folder.copy, folder.now})
            QTEST(sqlite(path, "Pragma integrity_check; Select Distinct City From Adults").join(' ').remove("ok "),
                  "left");
    }
};

ORLO_TEST(tst_faults, child)

#include "tst_faults.moc"
