#include "store/engine/Connection.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "store/schema/Schema.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Sqlite.h"
#include "support/System.h"
#include "support/Table.h"

#include <QDir>
#include <QTemporaryDir>

#include <optional>

using namespace orlo;
using namespace orlo::store;

class tst_database : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("Pack.mdb");
        Database fresh = DBEngine::createDatabase(m_path);
        createSchema(fresh);
    }

    void opening_data() { test::tableOf("store/opening.txt"); }
    void opening()
    {
        QFETCH(QString, file);
        QByteArray bytes = test::contents(m_path);
        const QStringList damage = test::cell("damage").split(' ');
        const QByteArray by = QByteArray::fromHex(damage.value(1).toLatin1()).repeated(damage.value(2, "1").toInt());
        bytes = damage[0] == "first" ? bytes.first(damage[1].toInt()) : bytes.replace(damage[0].toInt(), by.size(), by);
        test::write(m_path, bytes);
        sqlite3* other = nullptr;
        if (file == "locked" || file == "being written") {
            sqlite3_open(m_path.toUtf8().constData(), &other);
            sqlite3_exec(other, file == "locked" ? "BEGIN EXCLUSIVE" : "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        }
        const QString name = file == "missing" ? "\\Packs.mdb" : file == "folder" ? "" : "\\PACK.MDB";
        std::optional<test::Forbidden> forbidden;
        if (file.startsWith("forbidden"))
            forbidden.emplace(m_path, file.endsWith("file") ? test::Forbidden::File : test::Forbidden::Folder);
        const auto failure = test::failureOf([&] { return DBEngine::openDatabase(m_folder->path() + name); });
        forbidden.reset();
        sqlite3_close(other);
        const QString said =
            failure ? QString("%1 %2").arg(failure->number()).arg(failure->description()) : QString("opened");
        QTEST(QString(said).remove(QDir::toNativeSeparators(m_folder->path())).replace('\\', '/').trimmed(), "said");
        QVERIFY(!QFile::exists(m_folder->filePath("Packs.mdb"))); // opening never makes a file
    }

    // What a connection asks of SQLite: safety from hostile files and power failures, which nothing else shows.
    void settings_data() { test::tableOf("store/settings.txt"); }
    void settings()
    {
        const QString setting = QTest::currentDataTag();
        for (const char* how : {"opened", "looked at", "alone"}) {
            Connection connection(m_path, how[0] == 'l' ? Connection::Mode::View : Connection::Mode::Open);
            if (how[0] == 'a')
                connection.deferFlushing();
            const int code = setting.section(' ', 1, 1).toInt();
            int value = setting.startsWith("limit") ? sqlite3_limit(connection.handle(), code, -1) : 0;
            if (setting.startsWith("config"))
                sqlite3_db_config(connection.handle(), code, -1, &value);
            auto asked = connection.statement(setting.contains(' ') ? "Select " + QByteArray::number(value)
                                                                    : "Pragma " + setting.toUtf8());
            QVERIFY(asked.step());
            QTEST(asked.text(0), how);
        }
    }

    void movedWhileOpen()
    {
        Database database = DBEngine::openDatabase(m_path);
        database.execute("Insert Into Dens (Den_SID) Values (1)");
        if (!QFile::rename(m_path, m_path + ".old"))
            QSKIP("no open file can be renamed here");
        QVERIFY(QFile::copy(m_path + ".old", m_path)); // another file in its place
        const auto failure = test::failureOf([&] { return database.execute("Insert Into Dens (Den_SID) Values (2)"); });
        QVERIFY(failure && failure->number() == platform::ReadOnlySet &&
                failure->description().startsWith("The database file was moved or replaced while ORLO"));
    }

    // The journal's name is flushed once, by SQLite and by us, until it is another program's journal.
    void journalsName_data() { test::tableOf("store/database_journalsName.txt"); }
    void journalsName()
    {
        QFETCH(QString, meanwhile);
        Database database = DBEngine::openDatabase(m_path);
        const auto flushesOf = [&database](const char* change) {
            const int before = test::folderFlushes();
            database.execute(change);
            return test::folderFlushes() - before;
        };
        if (test::folderFlushes() < 0)
            QSKIP("no folder is flushed here");
        QCOMPARE(flushesOf("Insert Into Dens (Den_SID) Values (1)"), 2);
        if (meanwhile == "removed")
            test::sqlite(m_path, "Insert Into Dens (Den_SID) Values (2)");
        if (meanwhile == "replaced") { // by a file that probably gets the same number
            QVERIFY(QFile::remove(m_path + "-journal"));
            test::write(m_path + "-journal", "");
        }
        QTEST(QString::number(flushesOf("Insert Into Dens (Den_SID) Values (3)")), "flushes");
    }

    // A journal that a killed run left undoes its change. One for another state of the file is set aside, and deleted
    // once the file has been opened.
    void strayJournal_data() { test::tableOf("store/database_strayJournal.txt"); }
    void strayJournal()
    {
        QVERIFY(QFile::remove(m_path));
        const QString journal = m_path + "-journal";
        QByteArray file; // as a killed run leaves it; closing rolls back
        const auto run = [&, this](const QString& sql) {
            sqlite3* other = nullptr;
            sqlite3_open(m_path.toUtf8().constData(), &other);
            sqlite3_exec(other, sql.toUtf8().constData(), nullptr, nullptr, nullptr);
            const QByteArray left = test::contents(m_path + "-journal");
            file = test::contents(m_path);
            sqlite3_close(other);
            return left;
        };
        run("Pragma page_size = " + test::cell("page size") + "; Create Table T(A); Insert Into T Values (1), (2)");
        QByteArray left = run("Pragma cache_size = 5; " + test::cell("killed"));
        if (test::cell("then").isEmpty())
            test::write(m_path, file);
        else
            run(test::cell("then"));
        const QString damage = test::cell("damage");
        const QByteArray bytes = QByteArray::fromHex(damage.section(' ', 1).toLatin1());
        left.replace(damage.section(' ', 0, 0).toInt(), bytes.size(), bytes);
        test::write(journal, left);
        test::write(journal + ".stray", "left by an opening that failed");
        QVERIFY(test::isHot(journal));
        {
            Database database = DBEngine::openDatabase(m_path);
            QVERIFY(!test::isHot(journal) && !QFile::exists(journal + ".stray"));
            QTEST(database.tableNames().join(' ') + ' ' +
                      database.openRecordset("Select Sum(A) From T").value(0).toText(),
                  "left");
        }
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden), QStringList("Pack.mdb"));
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

ORLO_TEST(tst_database)
#include "tst_database.moc"
