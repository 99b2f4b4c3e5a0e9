#include "shell/forms/Module1.h"
#include "shell/frame/mdiPendrake.h"
#include "store/engine/Database.h"
#include "store/schema/Schema.h"
#include "store/upkeep/basDataUpdate.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Sqlite.h"
#include "support/Table.h"
#include "widgets/Application.h"

#include <QAction>
#include <QDir>
#include <QFile>

using namespace orlo;
using test::sqlite;

namespace
{

// An application folder that holds a file of version 1.0 with a few rows.
class OldFolder : public test::AppFolder
{
public:
    OldFolder()
    {
        gDatabase.reset();
        gDbNeedsUpdate = true;
        auto made = store::DBEngine::createDatabase(file());
        store::createSchema(made, store::schema::V10);
        made.close();
        sqlite(file(), test::contents(ORLO_SOURCE_DIR "/tests/upkeep/update.sql"));
    }
    [[nodiscard]] QString file(const QString& name = "Quorrel.mdb") const { return path() + u'/' + name; }
};

} // namespace

class tst_update : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFrameUpdatesTheOldFile()
    {
        const OldFolder folder;
        sqlite(folder.file("Quorrel11.mdb"), "Insert Into Dens (Den_SID) Values (99)"); // newer, but overwritten
        const QByteArray before = test::contents(folder.file());
        const auto told = test::answerNext();
        mdiPendrake frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowActive(&frame));
        QTRY_VERIFY(!gDbNeedsUpdate);
        QCOMPARE(told->title + ": " + told->text,
                 "Update Database: The ORLO Database will now be updated to work with this new version of software.");

        QCOMPARE(QDir(folder.path()).entryList({"*.mdb*", "*.part", "*.new*"}, QDir::Files),
                 QStringList({"Quorrel11.mdb", "QuorrelOld_10.mdb"}));
        QVERIFY(test::contents(folder.file("QuorrelOld_10.mdb")) == before);
        const QString copy = "copies/" + QDate::currentDate().toString(Qt::ISODate) + "/Quorrel11_Backup";
        QCOMPARE(sqlite(folder.file(copy), "Select Den_SID From Dens"), QStringList{"99"});
        QCOMPARE(sqlite(folder.file("Quorrel11.mdb"), "Pragma integrity_check"), QStringList{"ok"});
        QCOMPARE(store::versionOf(database()), store::schema::Newest);
        auto& again = test::control<QAction>(frame, "ID_DB_11_UPDATE");
        QCOMPARE(test::failureNumber([&again] { Q_EMIT again.triggered(); }), 3010); // trigger() would leak
    }

    void updatedRows_data() { test::cases({"before", "select", "rows"}, "upkeep/update.txt"); }
    void updatedRows()
    {
        const OldFolder folder;
        sqlite(folder.file(), test::cell("before").toUtf8());
        test::answerNext();
        QVERIFY(test::alwaysBusy("", UpdateDatabaseFile));
        QTEST(sqlite(folder.file("Quorrel11.mdb"), test::cell("select").toUtf8()).join('\n') + '\n', "rows");
    }

    // An object that a step would make already exists: the steps before it stay done, the last of which made "last",
    // and only the user can fix it.
    void aStepThatFails_data() { test::tableOf("upkeep/failingSteps.txt"); }
    void aStepThatFails()
    {
        const OldFolder folder;
        const QByteArray object = (test::cell("kind") + u' ' + test::cell("object")).toUtf8();
        sqlite(folder.file(), "Create " + object + (object.startsWith('T') ? " (a TEXT(1))" : " As Select 1"));
        const auto update = [] {
            test::answerNext();
            return UpdateDatabaseFile();
        };
        QTEST(QString::number(test::failureNumber(update)), "number");
        QVERIFY(gDbNeedsUpdate);
        const QString advice = widgets::Application::reportOf(platform::RuntimeError(91));
        QCOMPARE(advice.contains("QuorrelOld_10"), test::cell("object") != "Den_Titles"); // the mark of an earlier try
        gDatabase.reset();
        QTEST(sqlite(folder.file(), "Select name From sqlite_master Where type In ('table', 'view') And name Not In "
                                    "('sqlite_sequence', 'Stored_Queries') And sql Not Like '%a TEXT(1))' And sql "
                                    "Not Like '%Select 1' Order By rowid Desc Limit 1")
                  .join(' '),
              "last");
        // With the old file from its copy, the update succeeds.
        sqlite(folder.file("QuorrelOld_10.mdb"), "Drop " + object);
        QVERIFY(QFile::remove(folder.file()) && QFile::copy(folder.file("QuorrelOld_10.mdb"), folder.file()));
        QVERIFY(update());
        QCOMPARE(test::count("Assigned_Awards_Scouts"), 3);
    }

    // The old file is deleted only once the new one is open.
    void aNewFileThatDoesNotOpen()
    {
        const OldFolder folder;
        const auto refuseTheNew = [](sqlite3* opened, char**, const void*) {
            return QByteArray(sqlite3_db_filename(opened, "main")).endsWith("11.mdb") ? SQLITE_CANTOPEN : SQLITE_OK;
        };
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(+refuseTheNew));
        test::answerNext();
        const int number = test::failureNumber(UpdateDatabaseFile);
        sqlite3_reset_auto_extension();
        QCOMPARE(number, 3050);
        QVERIFY(QFile::exists(folder.file()) && QFile::exists(folder.file("Quorrel11.mdb")));
        const auto closing = [] {
            return widgets::Application::reportOf(platform::RuntimeError(91)).section("close. ", 1);
        };
        QVERIFY(closing().startsWith("Before you start ORLO again, put QuorrelOld_10.mdb"));
        QVERIFY(QFile::remove(folder.file()) && QFile::copy(folder.file("QuorrelOld_10.mdb"), folder.file()));
        test::answerNext();
        QVERIFY(UpdateDatabaseFile());
        QCOMPARE(closing(), "What was saved before is safe.");
    }
};

ORLO_TEST(tst_update)

#include "tst_update.moc"
