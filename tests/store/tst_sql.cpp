#include "platform/Conversion.h"
#include "store/engine/Connection.h"
#include "store/engine/Database.h"
#include "store/engine/SqlError.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "store/schema/Schema.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Sqlite.h"
#include "support/System.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QTemporaryDir>

using namespace orlo;
using namespace orlo::store;

namespace
{

// A value as a statement would have it, "-" for Null.
QString shown(const Value& value)
{
    const QString mark = value.isText() ? "'" : value.isDate() ? "#" : "";
    return value.isNull() ? "-" : mark + value.toText() + mark;
}

const QMap<FieldType, QString> Types{{FieldType::Boolean, "yes/no"}, {FieldType::Integer, "integer"},
                                     {FieldType::Long, "long"},      {FieldType::Double, "double"},
                                     {FieldType::Date, "date"},      {FieldType::Text, "text"},
                                     {FieldType::Memo, "memo"}};

QString flag(bool is, const QString& word)
{
    return is ? ' ' + word : QString();
}

// The fields of a set or table with their types, sizes and defaults.
QString columnsOf(const std::vector<Field>& fields)
{
    QStringList all;
    for (const Field& field : fields)
        all += field.name + ' ' + Types[field.type] + flag(field.size > 0, QString::number(field.size)) +
               flag(field.allowZeroLength, "zero") + flag(field.required, "required") +
               flag(field.autoIncrement, "counter") + (field.defaultValue ? " = " + shown(*field.defaultValue) : "");
    return all.join(" | ");
}

QString shown(const TableDef& table)
{
    QString all = table.name() + ": " + columnsOf(table.fields());
    for (const Index& index : table.indexes())
        all += " | " + index.name + '(' + index.fields.join(',') + ')' + flag(index.primary, "primary") +
               flag(index.unique, "unique") + flag(index.required, "required");
    return all.trimmed();
}

Field fieldOf(const QStringList& words)
{
    const auto has = [&words](const char* word) { return words.contains(QString(word)); };
    Field field{words[0], Types.key(words[1]), words.value(2).toInt(), has("zero"), has("counter"), has("required")};
    if (const QString given = words.last(); given.startsWith('='))
        field.defaultValue =
            std::make_shared<const Value>(given == "=True"                ? Value(true)
                                          : field.type == FieldType::Text ? Value(given.sliced(1))
                                                                          : Value(given.sliced(1).toDouble()));
    return field;
}

QStringList recordsOf(Recordset& rows)
{
    QStringList all;
    for (; !rows.eof(); rows.moveNext()) {
        QStringList values;
        for (int i = 0; i < int(rows.fields().size()); ++i)
            values += shown(rows.value(i));
        all += values.join(" | ");
    }
    return all;
}

} // namespace

// The dialect, tested by the results of statements on a small table, so what SQLite does with the translated text
// counts.
class tst_sql : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        platform::setToday(QDate(2024, 2, 29));
        m_database = std::make_unique<Database>(DBEngine::createDatabase(m_folder.filePath("a.mdb")));
        TableDef people("People");
        people.appendField({"SID", FieldType::Integer});
        people.appendField({"Last Name", FieldType::Text, 40, true});
        people.appendField({"Born", FieldType::Date});
        people.appendField({"Den", FieldType::Integer});
        people.appendField({"Mail", FieldType::Boolean});
        people.appendIndex({"PK", {"SID"}, true, true, true});
        people.appendIndex({"Names", {"Last Name", "Born"}, false, true});
        m_database->appendTableDef(people);
        m_database->createQueryDef("Older", "Select SID, [Last Name] From People Where Born < #1/1/2015#");
        test::sqlite(m_folder.filePath("a.mdb"), test::contents(ORLO_SOURCE_DIR "/tests/store/sql/others.sql"));
    }

    void cleanupTestCase() { platform::setToday({}); }

    void init()
    {
        m_database->execute("Delete From People");
        for (const char* row : {"1, \"Øst\", #6/7/2014#, 3, 1", "2, 'øster', #12/31/2015#, NULL, 0",
                                "3, 'O''Brien', NULL, 3, 0", "4, 'a*b', #1/1/1001#, 4, 1"})
            m_database->execute(QString("Insert Into People (SID, [Last Name], Born, Den, Mail) Values (%1)").arg(row));
    }

    // Which texts give updatable sets, and all that the sets have; of a long one, how often its reading tells of
    // itself.
    void shapes_data() { test::cases({"shown"}, "store/sql/shapes.txt"); }
    void shapes()
    {
        const QString source = QString(QTest::currentDataTag()).replace("\\n", "\n").replace("\\r", "\r");
        int told = 0;
        Recordset rows = m_database->openRecordset(source, [&told] { ++told; });
        QStringList records = rows.recordCount() < 999 ? recordsOf(rows) : QStringList("told " + QString::number(told));
        if (!rows.updatable() && !source.contains("order by", Qt::CaseInsensitive))
            records.sort();
        const QString kind = QString(rows.updatable() ? "updatable %1" : "fixed %1").arg(rows.recordCount());
        QTEST((QStringList{kind, columnsOf(rows.fields())} + records).join('\n') + '\n', "shown");
    }

    // What an expression gives for the first two people, and its type in an updatable set and in a fixed one.
    void expressions_data() { test::tableOf("store/sql/expressions.txt"); }
    void expressions()
    {
        QStringList seen;
        for (const char* source : {"People", "People, (Select 1) As One"}) {
            Recordset rows = m_database->openRecordset(
                QString("Select %1 From %2 Where SID < 3 Order By SID").arg(test::cell("expression"), source));
            seen += QString(columnsOf(rows.fields())).remove("Expr1000 ");
            QTEST(recordsOf(rows).join("; "), "values");
        }
        QTEST(seen.join(", "), "types");
    }

    void failures_data() { test::tableOf("store/sql/failures.txt"); }
    void failures()
    {
        const QString statement = test::cell("statement");
        QString place;
        const auto error = test::failureOf([&] {
            try {
                test::cell("as") == "source" ? void(m_database->openRecordset(statement))
                                             : m_database->execute(statement);
            } catch (const SqlError& failure) {
                place = QString(failure.statement() == statement ? " at %1" : " there at %1").arg(failure.position());
                throw;
            }
        });
        QVERIFY(error);
        QTEST(QString("%1 %2%3: %4").arg(error->number()).arg(error->source(), place, error->description()), "failure");
        QCOMPARE(m_database->openRecordset("People").recordCount(), 4);
    }

    // Sums made below a join equal those of the rows that it gives, with names spelled as in the first row.
    void sumsBelowJoins_data() { test::tableOf("store/sql/sums.txt"); }
    void sumsBelowJoins()
    {
        const QString statement = test::cell("statement");
        test::sqlite(m_folder.filePath("a.mdb"), test::contents(ORLO_SOURCE_DIR "/tests/store/sql/sums.sql"));
        m_database->execute("Insert Into Joined Select * From Both");
        QStringList rows;
        for (const char* source : {"Joined", "Both"}) {
            m_database->execute("Delete From Sums");
            const bool insert = statement.startsWith("Insert");
            if (insert)
                m_database->execute(statement.arg(source));
            Recordset found = m_database->openRecordset(insert ? "Sums" : statement.arg(source));
            rows += recordsOf(found).join(u'\n');
        }
        QVERIFY(!rows[0].isEmpty());
        QCOMPARE(rows[1], rows[0]);
        Connection connection(m_folder.filePath("a.mdb"), Connection::Mode::Open);
        QTEST(QString(connection.translated(statement.arg("Both"))->sql.contains("~key") ? "below" : "-"), "made");
    }

    void groupsAreSortedOnce()
    {
        Connection connection(m_folder.filePath("a.mdb"), Connection::Mode::Open);
        const auto grouped = connection.translated(
            "Select [Last Name], Den, Count(*) From People Group By Den, [Last Name] Order By Den, [Last Name]");
        auto plan = connection.statement("EXPLAIN QUERY PLAN " + grouped->sql.toUtf8());
        QStringList steps;
        while (plan.step())
            steps += plan.text(3);
        QCOMPARE(steps.filter("TEMP B-TREE"), QStringList("USE TEMP B-TREE FOR GROUP BY"));
    }

    // A row that the file refuses is skipped, and the others are written.
    void refusedRowsArePassedOver_data() { test::tableOf("store/sql/refusedRowsArePassedOver.txt"); }
    void refusedRowsArePassedOver()
    {
        const QString table = test::cell("statement").contains("Kinds") ? "Kinds Order By O" : "People Order By SID";
        const Transaction undone(*m_database);
        m_database->execute(test::cell("statement"));
        Recordset rows = m_database->openRecordset("Select * From " + table);
        QTEST(recordsOf(rows).replaceInStrings(" | ", ", ").join("; "), "after");
    }

    // Tables and stored queries, changed step by step, and what statements find in them.
    void scripts_data() { test::cases({"script"}, "store/sql/scripts.txt"); }
    void scripts()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("a.mdb");
        Database database = DBEngine::createDatabase(path);
        createSchema(database);
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
                    given = test::sqlite(path, step.sliced(5).toUtf8()).join(' ').simplified();
                else if (verb == "do")
                    database.execute(step.sliced(3));
                else if (verb == "reopen")
                    database = DBEngine::openDatabase(path);
                else if (verb == "logged")
                    given = test::logged().join("; ").remove(folder.path());
                else if (verb == "file")
                    (void)DBEngine::createDatabase(path + step.mid(5));
                else if (verb == "names")
                    given = (database.tableNames() + database.queryNames()).join(' ');
                else if (verb == "query")
                    database.createQueryDef(name, rest);
                else if (verb == "read")
                    given = database.queryDef(name).name + ": " + database.queryDef(name).sql;
                else if (verb == "open") {
                    Recordset rows = database.openRecordset(step.sliced(5));
                    given = (QStringList(columnsOf(rows.fields())) + recordsOf(rows)).join("; ");
                } else if (verb == "new")
                    held[name] = std::make_shared<TableDef>(name);
                else if (verb == "append")
                    database.appendTableDef(table());
                else if (verb == "drop")
                    database.deleteTableDef(name);
                else if (verb == "field")
                    table().appendField(fieldOf(rest.split(' ')));
                else if (verb == "index")
                    table().appendIndex({rest.section('(', 0, 0), rest.section('(', 1).section(')', 0, 0).split(','),
                                         rest.contains(" primary"), rest.contains(" unique"),
                                         rest.contains(" required")});
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

private:
    QTemporaryDir m_folder;
    std::unique_ptr<Database> m_database;
};

ORLO_TEST(tst_sql)
#include "tst_sql.moc"
