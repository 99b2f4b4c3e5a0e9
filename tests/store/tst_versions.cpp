#include "platform/RuntimeError.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "store/engine/Version.h"
#include "store/opening/OpenFile.h"
#include "store/repair/Repair.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace orlo;
using namespace orlo::store;
using test::sqlite;

namespace
{

// The fields of all tables in order, and the parts of the file's definitions in any order, because a field that was
// added later comes after the key.
QStringList contentsOf(const QString& path)
{
    static const QRegularExpression between("[\\s,()]+");
    QStringList all = sqlite(path, "Select m.name, c.name From sqlite_master m, pragma_table_info(m.name) c "
                                   "Order By m.name, c.cid");
    for (const QString& one : test::definitions(path)) {
        QStringList words = one.split(between, Qt::SkipEmptyParts);
        words.sort();
        all += words.join(u' ');
    }
    return all;
}

// A version that doesn't exist yet: one more field, with an index, one more table and one more query.
constexpr int Next = schema::Newest + 1;
const Field NextField{"Next_Field", FieldType::Text, 40, true};

TableDef nextTable()
{
    TableDef table("Next_Table");
    table.appendField({"Next_SID", FieldType::Integer});
    table.appendIndex({"Next_PK", {"Next_SID"}, true, true, true});
    return table;
}

Versions withNext()
{
    Versions all = schema::versions();
    Version next = all.front();
    next.number = next.stated = Next;
    const auto scouts = std::ranges::find(next.tables, "Scouts", &TableDef::name);
    scouts->appendField(NextField);
    scouts->appendIndex({"Next_IDX", {"Next_Field"}});
    next.tables.push_back(nextTable());
    next.queries.push_back({"Next_Query", "Select Next_Field From Scouts"});
    all.insert(all.begin(), next);
    return all;
}

int runs = 0;
int failure = 0;

Migrations toNext()
{
    Migrations steps = schema::migrations();
    steps.push_back({schema::Newest, Next, [](Database& database) {
                         ++runs;
                         database.execute("Update Scouts Set Next_Field = 'new'");
                         if (failure != 0)
                             throw platform::RuntimeError(failure);
                     }});
    return steps;
}

} // namespace

class tst_versions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("Quorrel11.mdb");
        Database made = DBEngine::createDatabase(m_path);
        createSchema(made);
        made.close();
        sqlite(m_path, "Insert Into Scouts (Scout_SID, Last_Name) Values (7, 'Berg')");
        m_before = test::contents(m_path);
        runs = failure = 0;
    }

    // The steps lead from each version to the newest, and the file is then like a fresh one.
    void roads()
    {
        for (const Version& version : schema::versions()) {
            const QString path = m_folder->filePath(versionText(version.number));
            Database made = DBEngine::createDatabase(path);
            createSchema(made, version.number);
            QCOMPARE(versionOf(made), version.number);
            const QByteArray before = test::contents(path);
            migrate(made, schema::versions(), schema::migrations()); // the opening leaves 1.0 to the user
            QVERIFY(test::contents(path) == before);
            if (version.number == schema::V10)
                schema::migrations().front().run(made);
            migrate(made, schema::versions(), schema::migrations());
            QCOMPARE(versionOf(made), schema::Newest);
            QCOMPARE(contentsOf(path), contentsOf(m_path));
        }
    }

    void theOpeningMigrates()
    {
        const Versions versions = withNext();
        sqlite(m_path, "Alter Table Dens Drop Column Active; Alter Table Dens Add Active Integer;" // another tool
                       "Update Stored_Queries Set Sql = 'Select 1 As A' Where Name = 'Leader_Assignments'");
        m_before = test::contents(m_path);
        const Database opened = openCurrent(m_path, versions, toNext());
        QCOMPARE(versionOf(opened, versions), Next);
        QCOMPARE(
            sqlite(m_path, "Select Scout_SID, Last_Name, Next_Field From Scouts; Select * From Next_Query; Pragma "
                           "user_version; Select name From sqlite_master Where name Like '%Next%' And sql > ''"),
            QStringList({"7|Berg|new", "new", QString::number(Next), "Scouts.Next_IDX", "Next_Table", "Next_Query"}));
        const QDir copies(m_folder->filePath("copies"));
        const QStringList days = copies.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(days.size(), 1);
        QVERIFY(test::contents(copies.filePath(days[0] + "/Quorrel11_Backup")) == m_before);
        (void)openCurrent(m_path, versions, toNext());
        QCOMPARE(runs, 1);
        for (const char* other : {"Pragma user_version = 0", "Pragma user_version = 7"}) { // as another tool leaves it
            sqlite(m_path, other);
            QCOMPARE(versionOf(openCurrent(m_path, versions, toNext()), versions), Next);
            QCOMPARE(sqlite(m_path, "Pragma user_version"), QStringList{QString::number(Next)});
        }
    }

    // It fails by itself, or because another program has added something else by a new name.
    void aStepThatFailsChangesNothing_data() { test::tableOf("store/failingSteps.txt"); }
    void aStepThatFailsChangesNothing()
    {
        sqlite(m_path, test::cell("statement").toUtf8());
        m_before = test::contents(m_path);
        failure = platform::DuplicateKey;
        const auto refused = test::failureOf([this] { return openCurrent(m_path, withNext(), toNext()); });
        const QString words = QString(refused->description()).remove("The file couldn't be brought to version ");
        QTEST((QString::number(refused->number()) + ' ' + refused->source() + ' ' + words).simplified(), "failure");
        QVERIFY(test::contents(m_path) == m_before);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList{"Quorrel11.mdb"});
    }

    // Both have seen the earlier version before one of them starts.
    void twoProgramsMigrateOnce()
    {
        const Versions versions = withNext();
        Database one = openPack(m_path, versions);
        Database other = openPack(m_path, versions);
        QVERIFY(isBehind(one, versions, toNext()) && isBehind(other, versions, toNext()));
        migrate(one, versions, toNext());
        migrate(other, versions, toNext());
        QCOMPARE(runs, 1);
        QVERIFY(other.tableDef(u"Scouts").findField(u"Next_Field"));
    }

    // The version that a file states, and what happens. Another program's number is ignored.
    void stated_data() { test::table({"stated", "failure"}, "0 | 0\n7 | 0\nnext | 3343\n99 | 3343\n4711 | 0\n-3 | 0"); }
    void stated()
    {
        const int stated = test::cell("stated") == "next" ? Next : test::cell("stated").toInt();
        sqlite(m_path, "Pragma user_version = " + QByteArray::number(stated));
        const QByteArray before = test::contents(m_path);
        for (const auto& open :
             {std::function([this] { (void)openCurrent(m_path); }), std::function([this] { (void)openFile(m_path); }),
              std::function([this] { DBEngine::repairDatabase(m_path, schema::versions()); })}) {
            const auto refused = test::failureOf(open);
            QTEST(QString::number(refused ? refused->number() : 0), "failure");
            if (!refused)
                continue;
            QVERIFY(refused->description().contains("version " + versionText(stated)));
            QVERIFY(test::contents(m_path) == before);
        }
    }

    // A repaired file keeps the version that it states, whether its head can still be read or not.
    void repaired_data() { test::table({"case", "from"}, "root | 100\nhead | 0"); }
    void repaired()
    {
        const Versions versions = withNext();
        openCurrent(m_path, versions, toNext()).close();
        const qsizetype from = test::cell("from").toInt();
        const qsizetype size = 4096 - from;
        test::write(m_path, test::contents(m_path).replace(from, size, QByteArray(size, '\0')));
        DBEngine::repairDatabase(m_path, versions);
        QCOMPARE(sqlite(m_path, "Select Next_Field From Scouts; Pragma user_version"),
                 QStringList({"new", QString::number(Next)}));
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    QByteArray m_before;
};

ORLO_TEST(tst_versions)
#include "tst_versions.moc"
