#include "store/upkeep/basDataUpdate.h"
#include "support/Failure.h"
#include "support/RecordScreen.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QFile>

#include <csignal>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace orlo;
using test::sqlite;

namespace
{

// Another process that runs statements on a file and then is there, its file open, until it is killed with the object.
class Other
{
public:
    Other(const QString& path, const QByteArray& sql)
    {
        int done[2] = {};
        if (pipe(done) != 0 || (m_id = fork()) < 0)
            qFatal("no process");
        if (m_id == 0) {
            sqlite3* file = nullptr;
            sqlite3_open(path.toUtf8().constData(), &file);
            const bool well = sqlite3_exec(file, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
            (void)!write(done[1], well ? "y" : "n", 1);
            for (;;)
                pause();
        }
        char well = 0;
        if (read(done[0], &well, 1) != 1 || well != 'y')
            qFatal("%s", sql.constData());
        close(done[0]), close(done[1]);
    }
    ~Other() { kill(m_id, SIGKILL), waitpid(m_id, nullptr, 0); }
    Other(const Other&) = delete;
    Other& operator=(const Other&) = delete;

private:
    pid_t m_id = 0;
};

void limitFiles(rlim_t most)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{most, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limit);
}

void save()
{
    auto scouts = database().openRecordset("Scouts");
    scouts.addNew();
    scouts.setValue(u"Scout_SID", 9);
    scouts.setValue(u"Note", QString(100'000, u'x'));
    scouts.update();
}

} // namespace

class tst_faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Each work on a file with two adults; it fails with the number, and what was in the folder is there and sound.
    void system_data()
    {
        test::table({"situation", "work", "fault", "told"}, R"(
locked at start      | start  | locked | 3050
read-only at start   | start  | file   | 3050
update of a locked   | update | locked | 3050
full disk, update    | update | full   | 75
read-only, update    | update | file   | 3050
folder, update       | update | folder | 70
save into a locked   | save   | locked | 3050
full disk, save      | save   | full   | 75
folder, save         | save   | folder | 3050
repair of a locked   | repair | locked | 3050
full disk, repair    | repair | full   | 75
folder, repair       | repair | folder | 3050
full, damaged        | mend   | full   | 75
folder, damaged      | mend   | folder | 75
backup of a locked   | copy   | locked | 70
over a locked one    | over   | locked | 70
)");
    }
    void system()
    {
        QFETCH(QString, work);
        QFETCH(QString, fault);
        const test::AppFolder folder;
        const bool old = work == "update";
        const QString file = folder.path() + (old ? "/Quorrel.mdb" : "/Quorrel11.mdb");
        if (old) {
            database().close();
            QVERIFY(QFile::rename(databasePath().replace('\\', '/'), file));
            auto made = (QFile::remove(file), store::DBEngine::createDatabase(file));
            store::createSchema10(made);
            made.close();
        }
        sqlite(file, "Insert Into Adults (Adult_SID, Last_Name) Values (1, 'Å'), (2, 'B')");
        if (work == "mend")
            damage(file);
        if (work != "save")
            gDatabase.reset();
        const QMap<QString, std::function<void()>> works{
            {"start", [] { openDatabase(databasePath()); }},
            {"update", [] { test::answerNext(), (void)UpdateDatabaseFile(); }},
            {"save", save},
            {"repair", [] { store::DBEngine::repairDatabase(databasePath()); }},
            {"mend", [] { store::DBEngine::repairDatabase(databasePath()); }},
            {"copy", [] { gFileSystem.copyFile(databasePath(), gAppPath + "\\B", true); }},
            {"over", [] { gFileSystem.copyFile("/proc/self/exe", databasePath(), true); }}};
        std::optional<Other> other;
        if (fault == "locked")
            other.emplace(file, "Begin Exclusive; Insert Into Adults (Adult_SID) Values (3)");
        else if (fault == "full")
            limitFiles(rlim_t(work == "mend" ? 100'000 : QFileInfo(file).size()));
        else {
            QFile::setPermissions(folder.path(), QFile::Permissions(fault == "file" ? 0x7777 : 0x5555));
            QFile::setPermissions(file, QFile::Permissions(fault == "file" ? 0x4444 : 0x6666));
            (void)!setresuid(65534, 65534, 0); // root may write everywhere
        }
        const int number = test::failureNumber([&] { return works[work](), 0; });
        (void)!setresuid(0, 0, 0);
        limitFiles(RLIM_INFINITY);
        other.reset();
        gDatabase.reset();
        QTEST(QString::number(number), "told");
        if (work == "mend")
            store::DBEngine::repairDatabase(databasePath());
        QCOMPARE(sqlite(file, "Select Adult_SID From Adults; Pragma integrity_check").join(' '), "1 2 ok");
    }

    // What a killed run left beside the old file: it is rolled back before the safety copy is made, unless the user put
    // the safety copy back.
    void journal_data()
    {
        test::table({"situation", "restored", "changed"}, R"(
as the kill left it | no  | first
put back            | yes |
)");
    }
    void journal()
    {
        QFETCH(QString, restored);
        const test::AppFolder folder;
        database().close();
        const QString file = folder.path() + "/Quorrel.mdb";
        const QString copy = folder.path() + "/QuorrelOld_10.mdb";
        auto made = store::DBEngine::createDatabase(file);
        store::createSchema10(made);
        made.close();
        sqlite(file, "With Recursive n(i) As (Values(1) Union All Select i + 1 From n Where i < 500) Insert Into Adults "
                     "(Adult_SID, Last_Name, City) Select i, Hex(Zeroblob(20)), '' From n");
        QVERIFY(QFile::copy(file, copy));
        Other(file, "Pragma cache_size=1; Pragma synchronous=Off; Pragma locking_mode=Exclusive; Update Adults Set "
                    "City = 'first'; Begin; Update Adults Set City = 'other'");
        QVERIFY(QFile::exists(file + "-journal"));
        if (restored == "yes")
            QVERIFY(QFile::remove(file) && QFile::copy(copy, file));
        test::answerNext();
        QVERIFY(UpdateDatabaseFile());
        for (const QString& path : {copy, folder.path() + "/Quorrel11.mdb"}) {
            QCOMPARE(sqlite(path, "Pragma integrity_check").join(' '), "ok");
            QTEST(sqlite(path, "Select Distinct City From Adults").join(' '), "changed");
        }
    }

private:
    // Loses the page of a table without rows.
    static void damage(const QString& path)
    {
        const int page = sqlite(path, "Select rootpage From sqlite_master Where name = 'Dens'")[0].toInt();
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek((page - 1) * 4096));
        file.write(QByteArray(4096, '\0'));
    }
};

ORLO_TEST_MAIN(tst_faults)

#include "tst_faults.moc"
