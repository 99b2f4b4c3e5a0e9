#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "store/schema/Schema.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/OrloDb.h"
#include "support/Sqlite.h"
#include "support/System.h"
#include "support/Table.h"

#include <QDir>
#include <QTemporaryDir>

#include <optional>

using namespace orlo;
using namespace orlo::store;
using orlo::test::contents;
using orlo::test::orloDb;
using orlo::test::sqlite;
using Run = orlo::test::OrloDbRun;

class tst_orlodb : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        const QDir folder(m_folder->path());
        QVERIFY(folder.mkpath("csv") && folder.mkpath("out"));
    }

    // Commands that only look change nothing in the file or beside it, and need no write permission.
    void onlyLooks_data() { test::tableOf("store/orlodb/onlyLooks.txt"); }
    void onlyLooks()
    {
        const auto [statement, forbidden, refused] = orlo::test::cells("statement", "forbidden", "refused");
        QCOMPARE(orloDb({"new", out(), "--from", ORLO_SOURCE_DIR "/samples/pack"}).status, 0);
        if (statement == "journal" || statement == "wal")
            orlo::test::write(out() + '-' + statement, QByteArray("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7 and so on"));
        else
            sqlite(out(), statement.toUtf8());
        const QByteArray before = contents(out());
        const QStringList files = made();
        const QTemporaryDir room;
        QFile::setPermissions(room.path(), QFile::Permissions(0x7777));
        std::vector<Run> runs;
        {
            std::optional<orlo::test::Forbidden> limit;
            QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7777));
            if (!forbidden.isEmpty())
                limit.emplace(out(), forbidden == "file" ? orlo::test::Forbidden::File : orlo::test::Forbidden::Folder);
            QCOMPARE(orloDb({"about", out()}).status, 0);
            runs = {orloDb({"check", out()}), orloDb({"export", out(), room.filePath("all")})};
            if (forbidden.isEmpty())
                runs.push_back(orloDb({"import", "--dry-run", out(), ORLO_SOURCE_DIR "/samples/templates"}));
        }
        QCOMPARE(runs[0].errors.contains("A change of the file isn't done"), refused == "yes");
        for (const Run& run : runs)
            QVERIFY2(run.status == (refused == "yes"), qPrintable(run.said + run.errors));
        QVERIFY(contents(out()) == before && made() == files);
    }

    // The small pack's file gets the rows while another connection has it open. A dry run prints the same and does
    // nothing.
    void imports_data() { test::cases({"files", "said", "select", "rows"}, "store/orlodb/import.txt"); }
    void imports()
    {
        QCOMPARE(orloDb({"new", out()}).errors, QString());
        sqlite(out(), contents(ORLO_SOURCE_DIR "/tests/support/pack.sql"));
        for (const QString& file : test::cell("files").split("# ", Qt::SkipEmptyParts)) {
            const QByteArray text = file.section(u'\n', 1).toUtf8();
            orlo::test::write(csv(file.section(u'\n', 0, 0)), QByteArray::fromPercentEncoding(text, '\\'));
        }
        Database database = DBEngine::openDatabase(out());
        Recordset open = database.openRecordset("Select * From Adults Where Adult_SID = 1");
        const QByteArray before = contents(out());
        const QStringList beside = made(); // on some systems with the journal of the open file
        const Run trial = orloDb({"import", "--dry-run", out(), csv()});
        QVERIFY(contents(out()) == before && made() == beside);
        const Run run = orloDb({"import", out(), csv()});
        QCOMPARE(QString(run.said + run.errors).replace(csv(), "FOLDER").trimmed(), test::cell("said").trimmed());
        QCOMPARE(QString(trial.said).replace("would be added", "added"),
                 run.said + (run.status == 0 ? "Nothing was changed.\n" : ""));
        QCOMPARE(trial.errors, run.errors);
        QCOMPARE(run.status, run.errors.isEmpty() ? 0 : 1);
        QVERIFY(run.status == 0 || contents(out()) == before);
        QCOMPARE(rows(test::cell("select")), test::cell("rows").trimmed());
        open.edit();
        open.setValue(u"City", QString("Bern"));
        open.update();
        QCOMPARE(rows("Select City From Adults Where Adult_SID = 1"), "Bern");
    }

private:
    [[nodiscard]] QString csv(const QString& file = QString()) const { return m_folder->filePath("csv/" + file); }
    [[nodiscard]] QString out() const { return m_folder->filePath("out/new.mdb"); }
    [[nodiscard]] QStringList made() const
    {
        return QDir(m_folder->filePath("out")).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
    // A query's rows on the new file.
    [[nodiscard]] QString rows(const QString& select) const { return sqlite(out(), select.toUtf8()).join("; "); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

ORLO_TEST(tst_orlodb)
#include "tst_orlodb.moc"
