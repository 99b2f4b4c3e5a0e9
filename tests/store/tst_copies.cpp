#include "platform/Conversion.h"
#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"
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
#include <QScopeGuard>
#include <QTemporaryDir>

using namespace orlo;
using namespace orlo::store;
using orlo::test::contents;
using orlo::test::sqlite;

namespace
{

QDateTime clockTime;

// Opens the file of a folder, says so, and once it is told to changes it as a program does whose copies make
// themselves.
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
        // Thinned day by day it comes to the same, as far as the copies of today don't count.
        QStringList daily;
        names.sort();
        for (const QString& name : names)
            daily = keptOf(daily + QStringList(name), dayOfCopy(name) > today ? today : dayOfCopy(name));
        QCOMPARE(keptOf(daily, today), left);
    }

    // A word a step: "change", "remove" and "list" (of the purchase list) by our program, "another" a change by another
    // one, "+15" that many minutes, "clock=" a date and time, "replace", "reopen". The copies that there are then, each
    // with the den's name in it.
    void copies_data()
    {
        test::table({"steps", "copies"}, R"(
            change change                                  | 06-07=a
            change clock=2026-06-07T23:59 change +2 change | 06-07=a 06-08=abb
            change +5 change remove +5 remove              | 06-07=a 06-07_14.10=abb
            change remove +5 change remove +6 remove       | 06-07=a 06-07_14.05=ab 06-07_14.16=abb
            remove remove +11 remove                       | 06-07=a
            remove another +11 remove                      | 06-07=a 06-07_14.16=ac
            change +1 list list                            | 06-07=a
            change replace replace change replace          | 06-07=a 06-07_14.05=ab 06-07_14.05.00=abb
            change reopen change reopen remove             | 06-07=a 06-07_14.05=abb
            change clock=2026-05-30T10:00 change           | 05-30=ab 06-07=a
            clock=2026-12-31T23:59 change +1 remove        | 12-31=a 2027-01-01=ab)");
    }
    void copies()
    {
        std::optional<Database> database;
        std::unique_ptr<KeptCopies> keeper;
        const auto open = [&] {
            database.emplace(DBEngine::openDatabase(file()));
            keeper = std::make_unique<KeptCopies>(file(), [] { return clockTime; });
            database->watchChanges(
                [&keeper](Database& changing, const Change& change) { return keeper->beforeChange(changing, change); });
        };
        open();
        for (const QString& step : test::cell("steps").split(u' ')) {
            if (step == "change")
                database->execute("Update Dens Set Den_Name = Den_Name & 'b'");
            else if (step == "remove")
                database->execute("Delete From Adults Where Adult_SID = 7");
            else if (step == "list")
                database->execute("Delete From Purchase_List");
            else if (step == "another")
                sqlite(file(), "Update Dens Set Den_Name = Den_Name || 'c'");
            else if (step == "replace")
                keeper->beforeReplacement(*database);
            else if (step == "reopen")
                open();
            else
                clockTime = step.startsWith(u'+') ? clockTime.addSecs(step.toInt() * 60)
                                                  : QDateTime::fromString(step.sliced(6), Qt::ISODate);
            platform::setToday(clockTime.date());
        }
        QCOMPARE(made(), test::cell("copies"));
    }

    // A set's own removals count as well, and what announces itself.
    void removals()
    {
        Database database = DBEngine::openDatabase(file());
        QStringList told;
        database.watchChanges([&told](Database&, const Change& change) {
            told += change.removes ? "removes " + change.table : "changes";
            return told.size() != 1;
        });
        Recordset dens = database.openRecordset("Select * From Dens");
        for (int i = 0; i < 3; ++i) {
            dens.edit();
            dens.setValue(u"Den_Number", i);
            dens.update();
        }
        database.aboutToRemove();
        dens.remove();
        database.execute("Delete * From Scouts");
        QCOMPARE(told.join(", "), "changes, changes, removes , removes Dens, removes Scouts");
    }

    // Whatever stands in the way, the change is made, and nothing half done stands there.
    void obstacles_data()
    {
        test::table({"what", "copies"}, R"(
            a file called copies      |
            a link that leads nowhere |
            a link to a folder        | 06-07=a
            a full disk               |
            little room               |
            room for two              | 06-07=a
            another program's change  | 06-07=a
            a tool's log              |
            a file of the day's name  | 06-07_14.05=a
            a run that was killed     | 06-07=a
            a copy with a note        | 2018-01-01=a 06-07=a)");
    }
    void obstacles()
    {
        const QString what = test::cell("what");
        const QString folder = m_folder->filePath("copies");
        const qint64 size = QFileInfo(file()).size();
        const auto older = [&](const QString& name) {
            QVERIFY(QDir().mkpath(folder + u'/' + name) &&
                    QFile::copy(file(), folder + u'/' + name + "/Quorrel11_Backup"));
        };
        if (what.startsWith("a file called"))
            orlo::test::write(folder, "mine");
        else if (what.endsWith("nowhere"))
            QVERIFY(QFile::link(m_folder->filePath("none"), folder));
        else if (what.startsWith("a link")) {
            QVERIFY(QDir().mkpath(m_folder->filePath("elsewhere")));
            QVERIFY(QFile::link(m_folder->filePath("elsewhere"), folder));
        } else if (what.contains("room")) {
            for (const char* name : {"2026-06-05", "2026-06-06"})
                older(name);
            platform::setVolumes([what, size] {
                return QList<platform::Drive>{{QDir::rootPath(), size * (what.startsWith("little") ? 9 : 19)}};
            });
        } else if (what.contains("day's name"))
            QVERIFY(QDir().mkpath(folder) && (orlo::test::write(folder + "/2026-06-07", "mine"), true));
        else if (what.contains("killed")) {
            older("2026-06-06.99999.part");
            older("2026-06-07.99998.part");
            older("2026-06-06.1.mine.part");
            QFile old(folder + "/2026-06-06.99999.part");
            const auto hourAgo = QDateTime::currentDateTime().addSecs(-3600).toString("yyyyMMddHHmm");
            if (QProcess::execute("touch", {"-t", hourAgo, old.fileName()}) != 0)
                test::skip("a folder's time can't be set here");
        } else if (what.contains("note")) {
            for (int day = 1; day < 28; ++day)
                for (int year : {2018, 2019, 2020})
                    older(QStringLiteral("%1-01-%2").arg(year).arg(day, 2, 10, QChar(u'0')));
            orlo::test::write(folder + "/2018-01-02/note", "mine");
        }

        if (what.startsWith("a link") && !QFileInfo(folder).isSymbolicLink())
            test::skip("there are no such links here");
        Database database = DBEngine::openDatabase(file());
        KeptCopies keeper(file(), [] { return clockTime; });
        sqlite3* tool = nullptr;
        const auto closing = qScopeGuard([&tool] { sqlite3_close(tool); });
        if (what.endsWith("log")) { // the newest rows aren't in the file
            sqlite3_open(file().toUtf8().constData(), &tool);
            sqlite3_exec(tool, "Pragma journal_mode=WAL; Update Dens Set Den_Name = 'b'", nullptr, nullptr, nullptr);
        }
        std::optional<Database> other;
        if (what.startsWith("another")) { // its change isn't made yet, so ours can't be either
            other.emplace(DBEngine::openDatabase(file()));
            auto* half = new Transaction(*other);
            other->execute("Update Dens Set Den_Name = 'half'");
            QVERIFY(keeper.beforeChange(database, {}));
            delete half;
        }
        if (what.contains("full"))
            test::limitFiles(size / 2);
        const bool done = keeper.beforeChange(database, {});
        test::limitFiles(-1);
        QCOMPARE(done, !test::cell("copies").isEmpty());
        if (what.startsWith("little"))
            QCOMPARE(QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                     QStringList({"2026-06-05", "2026-06-06"}));
        else if (what.contains("note")) {
            QCOMPARE(QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 12 + 1);
            QCOMPARE(contents(folder + "/2018-01-02/note"), "mine");
        } else if (what.contains("killed"))
            QCOMPARE(QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                     QStringList({"2026-06-06.1.mine.part", "2026-06-07", "2026-06-07.99998.part"}));
        else
            QCOMPARE(made(), test::cell("copies"));
        // What failed isn't tried again with each change.
        QElapsedTimer time;
        time.start();
        for (int i = 0; i < 1000; ++i)
            (void)keeper.beforeChange(database, {});
        QVERIFY2(time.elapsed() < 1000, qPrintable(QString::number(time.elapsed())));
    }

    // A copy is the file as it was, of the same size, right and flushed; a restore takes it as it is.
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
        database.close();
        const QString copy = m_folder->filePath("copies/2026-06-07/Quorrel11_Backup");
        QVERIFY(contents(copy) == contents(file()));
        QCOMPARE(QFileInfo(copy).permissions(), QFileInfo(file()).permissions());
    }

    // Two programs begin the day at the same moment: one copy, and both changes.
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
            QCOMPARE(made, QStringList(QDate::currentDate().toString(Qt::ISODate)));
            const QString copy = m_folder->filePath("copies/" + made[0] + "/Quorrel11_Backup");
            const QString before = "a" + QString(2 * round, u'x');
            const QString name = sqlite(copy, "Select Den_Name From Dens").join("");
            QVERIFY2(name == before || name == before + "x", qPrintable(name));
            QCOMPARE(sqlite(file(), "Select Den_Name From Dens").join(""), before + "xx");
            QDir(m_folder->filePath("copies")).removeRecursively();
        }
    }

    // A file that isn't open and can't be: its bytes as they are.
    void closedFile()
    {
        orlo::test::write(file(), "no database");
        KeptCopies(file(), [] { return clockTime; }).beforeReplacement();
        QCOMPARE(contents(m_folder->filePath("copies/2026-06-07/Quorrel11_Backup")), "no database");
        QFile::remove(file());
        KeptCopies(file(), [] { return clockTime; }).beforeReplacement();
        QCOMPARE(QDir(m_folder->filePath("copies")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
    }

private:
    [[nodiscard]] QString file() const { return m_folder->filePath("Quorrel11.mdb"); }
    // The copies, the months and days of 2026 without the year, each with the den's name in it.
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
