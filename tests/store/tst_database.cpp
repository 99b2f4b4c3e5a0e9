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
        const QByteArray sound = test::contents(m_path);
        const QMap<QString, QByteArray> damaged{
            {"empty", ""},
            {"another format", "Standard something" + sound.sliced(18)},
            {"cut off", sound.first(2000)},
            {"shorter than its head", sound.first(99)},
            {"of a later kind", QByteArray(sound).replace(18, 1, "\3")},
            {"of a later format", QByteArray(sound).replace(47, 1, "\5")},
            {"with pages of another size", QByteArray(sound).replace(17, 1, "\3")},
            {"overwritten", QByteArray(sound).replace(100, 400, QByteArray(400, '\xA5'))}};
        test::write(m_path, damaged.value(file, sound));
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

    // Definitions of tables, changed step by step.
    void tables_data() { test::cases({"script"}, "store/tables.txt"); }
    void tables()
    {
        Database database = DBEngine::openDatabase(m_path);
        QMap<QString, std::shared_ptr<TableDef>> held;
        QStringList seen;
        const QStringList script = test::cell("script").trimmed().split(u'\n');
        for (const QString& line : script) {
            const QString step = line.section(" -> ", 0, 0);
            const auto [verb, name, rest] =
                std::tuple(step.section(' ', 0, 0), step.section(' ', 1, 1), step.section(' ', 2));
            const auto table = [&]() -> TableDef& {
                if (!held[name])
                    held[name] = std::make_shared<TableDef>(database.tableDef(name));
                return *held[name];
            };
            QString given;
            const auto failure = test::failureOf([&] {
                if (verb == "tool")
                    given = test::sqlite(m_path, step.sliced(5).toUtf8()).join(' ').simplified();
                else if (verb == "do")
                    database.execute(step.sliced(3));
                else if (verb == "reopen")
                    database = DBEngine::openDatabase(m_path);
                else if (verb == "file")
                    (void)DBEngine::createDatabase(m_path + step.mid(5));
                else if (verb == "names")
                    given = (database.tableNames() + database.queryNames()).join(' ');
                else if (verb == "query")
                    database.createQueryDef(name, rest);
                else if (verb == "read")
                    given = database.queryDef(name).name + ": " + database.queryDef(name).sql;
                else if (verb == "open")
                    given = shown(database.openRecordset(step.sliced(5)));
                else if (verb == "new")
                    held[name] = std::make_shared<TableDef>(name);
                else if (verb == "append")
                    database.appendTableDef(table());
                else if (verb == "drop")
                    database.deleteTableDef(name);
                else if (verb == "field")
                    table().appendField(fieldOf(rest.split(' ')));
                else if (verb == "index")
                    table().appendIndex(indexOf(rest));
                else if (verb == "without")
                    table().deleteField(rest);
                else
                    given = shown(verb == "held" ? table() : database.tableDef(name));
            });
            seen += step + (given.isEmpty() && !failure ? "" : " -> " + given) +
                    (failure ? QString("%1 %2").arg(failure->number()).arg(failure->source()) : "");
        }
        QCOMPARE(seen, script);
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
    static inline const QMap<QString, FieldType> Types{{"yes/no", FieldType::Boolean}, {"integer", FieldType::Integer},
                                                       {"long", FieldType::Long},      {"double", FieldType::Double},
                                                       {"date", FieldType::Date},      {"text", FieldType::Text},
                                                       {"memo", FieldType::Memo}};

    static Field fieldOf(const QStringList& words)
    {
        const auto has = [&words](const char* word) { return words.contains(QString(word)); };
        Field field{words[0], Types[words[1]], words.value(2).toInt(), has("zero"), has("counter"), has("required")};
        if (const QString last = words.last(); last.startsWith('='))
            field.defaultValue =
                std::make_shared<const Value>(field.type == FieldType::Text      ? Value(last.sliced(1))
                                              : field.type == FieldType::Boolean ? Value(last == "=True")
                                                                                 : Value(last.sliced(1).toDouble()));
        return field;
    }
    static Index indexOf(const QString& text)
    {
        return {text.section('(', 0, 0), text.section('(', 1).section(')', 0, 0).split(','), text.contains(" primary"),
                text.contains(" unique"), text.contains(" required")};
    }
    static QString flag(bool is, const QString& word) { return is ? ' ' + word : QString(); }
    static QString shown(const std::vector<Field>& fields)
    {
        QStringList parts;
        for (const Field& field : fields)
            parts += field.name + ' ' + Types.key(field.type) + flag(field.size > 0, QString::number(field.size)) +
                     flag(field.allowZeroLength, "zero") + flag(field.autoIncrement, "counter") +
                     flag(field.required, "required") + (field.defaultValue ? " =" + field.defaultValue->toText() : "");
        return parts.join(" | ");
    }
    static QString shown(const TableDef& table)
    {
        QString all = table.name() + ":" + flag(!table.fields().empty(), shown(table.fields()));
        for (const Index& index : table.indexes())
            all += " | " + index.name + '(' + index.fields.join(',') + ')' + flag(index.primary, "primary") +
                   flag(index.unique, "unique") + flag(index.required, "required");
        return all;
    }
    static QString shown(Recordset rows)
    {
        QString all = shown(rows.fields());
        for (; !rows.eof(); rows.moveNext())
            for (int i = 0; i < int(rows.fields().size()); ++i)
                all += (i == 0 ? "; " : " ") + (rows.value(i).isNull()    ? "-"
                                                : rows.value(i).isEmpty() ? "''"
                                                                          : rows.value(i).toText());
        return all;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

ORLO_TEST(tst_database)
#include "tst_database.moc"
