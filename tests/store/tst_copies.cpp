#include "platform/Conversion.h"
#include "platform/FileSystem.h"
#include "store/copies/CopyPlan.h"
#include "store/copies/KeptCopies.h"
#include "store/schema/Schema.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Sqlite.h"
#include "support/System.h"
#include "support/Table.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

using namespace orlo;
using namespace orlo::store;
using orlo::test::contents;
using orlo::test::sqlite;

namespace
{

QDateTime clockTime;

// Opens the file of a folder, says so, and when told to changes it like a program with automatic copies.
int child(const QStringList& arguments)
{
    Database database = DBEngine::openDatabase(arguments[0] + "/Quorrel11.mdb");
    keepCopies(database);
    std::puts("ready");
    std::fflush(stdout);
    (void)std::getchar();
    database.execute("Update Dens Set Den_Name = Den_Name & 'x'");
    return 0;
}

} // namespace

class tst_copies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        clockTime = QDateTime(QDate(2026, 6, 7), QTime(14, 5));
        platform::setToday(clockTime.date());
        Database made = DBEngine::createDatabase(file());
        createSchema(made);
        made.execute("Insert Into Dens (Den_SID, Den_Name) Values (1, 'a')");
        made.close();
    }
    void cleanup()
    {
        platform::setVolumes({});
        platform::setToday({});
        test::limitFiles(-1);
        test::failReads(0, 0);
    }

    void kept_data() { test::cases({"names", "today", "kept"}, "store/copies.txt"); }
    void kept()
    {
        QStringList names;
        const QStringList words = test::cell("names").simplified().split(u' ');
        for (qsizetype i = 0; i < words.size(); ++i) {
            const bool weekly = words[i] == "weekly";
            if (!weekly && words[i] != "daily") {
                names += QString(words[i]).replace(u'_', u' ');
                continue;
            }
            const QDate last = QDate::fromString(words[i + 2], Qt::ISODate);
            for (QDate day = QDate::fromString(words[i + 1], Qt::ISODate); day <= last; day = day.addDays(1))
                if (!weekly || day.dayOfWeek() == 1)
                    names += day.toString(Qt::ISODate);
            i += 2;
        }
        const QDate today = QDate::fromString(test::cell("today").trimmed(), Qt::ISODate);
        const QStringList left = keptOf(names, today);
        QCOMPARE(QString(left.join(u'|')).replace(u' ', u'_').replace(u'|', u' ').remove("2026-"),
                 test::cell("kept").simplified());
        QStringList daily; // thinned day by day, the same is left, apart from today's copies
        names.sort();
        for (const QString& name : names)
            daily = keptOf(daily + QStringList(name), std::min(today, dayOfCopy(name)));
        QCOMPARE(keptOf(daily, today), left);
    }

    void copies_data() { test::cases({"steps", "copies"}, "store/copysteps.txt"); }
    void copies()
    {
        std::optional<Database> database;
        std::unique_ptr<KeptCopies> keeper;
        const QByteArray first = contents(file());
        const auto open = [&](bool anew = true) {
            database.emplace(DBEngine::openDatabase(file()));
            if (anew)
                keeper = std::make_unique<KeptCopies>(file(), [] { return clockTime; });
            keeper->begin();
            database->watchChanges(
                [&keeper](Database& changing, const Change& change) { return keeper->beforeChange(changing, change); });
        };
        open();
        for (const QString& step : test::cell("steps").simplified().split(u' ')) {
            if (step == "change")
                database->execute("Update Dens Set Den_Name = Den_Name & 'b'");
            else if (step == "remove")
                database->execute("Delete From Adults Where Adult_SID = 7");
            else if (step == "list")
                database->execute("Delete From PURCHASE_list");
            else if (step == "another")
                sqlite(file(), "Update Dens Set Den_Name = Den_Name || 'c'");
            else if (step == "replace")
                keeper->beforeReplacement(*database);
            else if (step == "reopen")
                open();
            else if (step == "back" || step == "again" || step == "closed") {
                database.reset();
                if (step != "again")
                    orlo::test::write(file(), first);
                if (step == "closed")
                    keeper->beforeReplacement();
                open(false);
            } else if (step == "full")
                platform::setVolumes([] { return QList<platform::Drive>{{QDir::rootPath(), 0}}; });
            else if (step == "free")
                platform::setVolumes({});
            else
                clockTime = step.startsWith(u'+') ? clockTime.addSecs(step.toInt() * 60)
                                                  : QDateTime::fromString(step.sliced(6), Qt::ISODate);
            platform::setToday(clockTime.date());
        }
        QCOMPARE(made(), test::cell("copies").simplified());
    }

    void obstacles_data() { test::cases({"folders", "left", "made", "logged"}, "store/obstacles.txt"); }
    void obstacles()
    {
        const QString what = QTest::currentDataTag();
        const QDir folder(m_folder->filePath("copies"));
        for (const QString& name : test::cell("folders").simplified().split(u' ', Qt::SkipEmptyParts)) {
            const QString copy = folder.filePath(QString(name).replace(u'_', u' '));
            QVERIFY(QDir().mkpath(copy) && QFile::copy(file(), copy + "/Quorrel11_Backup"));
        }
        if (what.startsWith("a file called"))
            orlo::test::write(folder.path(), "mine");
        else if (what.startsWith("a link")) {
            QVERIFY(what.endsWith("nowhere") || QDir().mkpath(m_folder->filePath("elsewhere")));
            if (!QFile::link(m_folder->filePath("elsewhere"), folder.path()) ||
                !QFileInfo(folder.path()).isSymbolicLink())
                test::skip("there are no such links here");
        } else if (what.startsWith("room"))
            platform::setVolumes([this, what, folder] {
                if (what.endsWith("meanwhile")) // another program makes it
                    (void)(QDir().mkpath(folder.filePath("2026-06-07")) &&
                           QFile::copy(file(), folder.filePath("2026-06-07/Quorrel11_Backup")));
                const qint64 less = what.endsWith(folder.exists("2026-06-07") ? "less" : "0");
                return QList<platform::Drive>{{QDir::rootPath(), 10 * QFileInfo(file()).size() - less}};
            });
        else if (what.endsWith("name"))
            QVERIFY(QDir().mkpath(folder.path()) && (orlo::test::write(folder.filePath("2026-06-07"), "mine"), true));
        else if (what.endsWith("killed")) {
            for (const auto& [minutes, name] : {std::pair(12, "2026-06-06.99999.part"),
                                                {8, "2026-06-07.99998.part"},
                                                {12, "2026-06-06.1.mine.part"},
                                                {12, "mine.1.part"}}) {
                const QDateTime then = QDateTime::currentDateTime().addSecs(-60LL * minutes);
                if (QProcess::execute("touch", {"-t", then.toString("yyyyMMddHHmm"), folder.filePath(name)}) != 0)
                    test::skip("a folder's time can't be set here");
            }
        } else if (what.startsWith("notes")) {
            orlo::test::write(folder.filePath("2026-06-07 01.00/note"), "mine");
            orlo::test::write(folder.filePath("2026-06-07 00.10/.note"), "mine");
            QVERIFY(folder.mkpath("2026-06-07 00.20/more"));
        } else if (what.endsWith("without one"))
            QVERIFY(folder.mkpath("2026-06-07/Quorrel11_Backup"));
        Database database = DBEngine::openDatabase(file());
        KeptCopies keeper(file(), [] { return clockTime; });
        sqlite3* tool = nullptr;
        if (what.startsWith("a tool's")) { // the newest rows aren't in the file, or none can be read
            sqlite3_open(file().toUtf8().constData(), &tool);
            sqlite3_exec(tool, what.endsWith("log") ? "Pragma journal_mode=WAL; Delete From Dens" : "Begin Exclusive",
                         nullptr, nullptr, nullptr);
        }
        std::optional<Database> other;
        std::optional<Transaction> half;
        if (what.startsWith("another")) { // its change isn't finished yet, so ours can't be either
            other.emplace(DBEngine::openDatabase(file()));
            half.emplace(*other);
            other->execute("Update Dens Set Den_Name = 'half'");
        }
        if (what.contains("full"))
            test::limitFiles(QFileInfo(file()).size() / 2);
        test::failReads(100'000, what.startsWith("a page") ? 100'512 : 0);
        if (what.endsWith("replacement"))
            keeper.beforeReplacement(database);
        const QDeadlineTimer limit(2000);
        const bool done = keeper.beforeChange(database, {what.startsWith("notes") || what.endsWith("deletion")});
        test::limitFiles(-1);
        QCOMPARE(QString(done                                                ? "yes"
                         : what.startsWith("a tool's") && limit.hasExpired() ? "late"
                                                                             : "no"),
                 test::cell("made").trimmed());
        const QStringList left = folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(QString(left.join(u'|')).replace(u' ', u'_').replace(u'|', u' '), test::cell("left").simplified());
        QVERIFY(!what.startsWith("another") || made() == "06-07=a");
        // A copy that failed isn't tried again with the next change, even if nothing is in its way any more; if another
        // program had the file, it is soon afterwards.
        half.reset();
        sqlite3_close(tool);
        platform::setVolumes({});
        QCOMPARE(keeper.beforeChange(database, {}), done);
        QCOMPARE(folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot), left);
        clockTime = clockTime.addSecs(6);
        QCOMPARE(keeper.beforeChange(database, {}), done || what == "a tool's lock");
        QCOMPARE(orlo::test::logged().join('\n').replace(m_folder->path(), "%"), test::cell("logged").trimmed());
    }

    // A copy is the file as it was, with the same size and permissions, and flushed; a restore accepts it as it is.
    void copyIsWhole()
    {
        sqlite(file(),
               "Insert Into Scouts (Scout_SID, Note) With Recursive N(i) As (Select 1 Union All Select i + 1 From N "
               "Where i < 5000) Select i, hex(randomblob(200)) From N");
        QFile::setPermissions(file(), QFile::ReadOwner | QFile::WriteOwner);
        Database database = DBEngine::openDatabase(file());
        KeptCopies keeper(file(), [] { return clockTime; });
        const auto reading = database.openRecordset("Scouts");
        (void)database.beginReading();
        const int flushes = test::folderFlushes();
        QVERIFY(keeper.beforeChange(database, {}));
        QVERIFY(flushes < 0 || test::folderFlushes() >= flushes + 3);
        QCOMPARE(test::putInPlaceUnflushed(), QStringList());
        database.close();
        const QString copy = m_folder->filePath("copies/2026-06-07/Quorrel11_Backup");
        QVERIFY(contents(copy) == contents(file()));
        QCOMPARE(QFileInfo(copy).permissions(), QFileInfo(file()).permissions());
    }

    // Two programs start the day at the same moment: one copy, and both changes.
    void twoPrograms()
    {
        const int rounds = 10;
        for (int round = 0; round < rounds; ++round) {
            std::array<QProcess, 2> programs;
            for (QProcess& program : programs) {
                program.start(QCoreApplication::applicationFilePath(), test::childArguments({m_folder->path()}));
                QVERIFY(program.waitForReadyRead(20000));
            }
            for (QProcess& program : programs)
                program.write("\n");
            for (QProcess& program : programs)
                QVERIFY(program.waitForFinished(20000) && program.exitCode() == 0);
            const QStringList made = QDir(m_folder->filePath("copies")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
            QCOMPARE(made.join("|"), QDate::currentDate().toString(Qt::ISODate));
            const QString copy = m_folder->filePath("copies/" + made[0] + "/Quorrel11_Backup");
            const QString before = "a" + QString(2 * round, u'x');
            const QString name = sqlite(copy, "Select Den_Name From Dens").join("");
            QVERIFY2(name == before || name == before + "x", qPrintable(name));
            QCOMPARE(sqlite(file(), "Select Den_Name From Dens").join(""), before + "xx");
            QDir(m_folder->filePath("copies")).removeRecursively();
        }
    }

    // A file that isn't open and can't be opened: its bytes are copied unchanged.
    void closedFile()
    {
        orlo::test::write(file(), "no database");
        orlo::test::write(file() + "-journal", "no change");
        KeptCopies(file(), [] { return clockTime; }).beforeReplacement();
        QCOMPARE(contents(m_folder->filePath("copies/2026-06-07/Quorrel11_Backup")), "no database");
        QFile::remove(file());
        KeptCopies(file(), [] { return clockTime; }).beforeReplacement();
        QCOMPARE(QDir(m_folder->filePath("copies")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
    }

private:
    [[nodiscard]] QString file() const { return m_folder->filePath("Quorrel11.mdb"); }
    // The copies, the months and days of 2026 without the year, each with its den's name.
    [[nodiscard]] QString made() const
    {
        QStringList found;
        const QDir folder(m_folder->filePath("copies"));
        for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            found += QString(name).replace(u' ', u'_').remove("2026-") + u'=' +
                     sqlite(folder.filePath(name + "/Quorrel11_Backup"), "Select Den_Name From Dens").join("");
        return found.join(u' ');
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

ORLO_TEST(tst_copies, child)
#include "tst_copies.moc"
