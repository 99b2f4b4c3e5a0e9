#include "platform/Conversion.h"
#include "store/engine/Connection.h"
#include "store/engine/Database.h"
#include "store/engine/SqlError.h"
#include "store/engine/TableDef.h"
#include "store/engine/Value.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Sqlite.h"
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

// The fields of a set with their types, sizes and defaults.
QString columnsOf(const Recordset& rows)
{
    static const QMap<FieldType, QString> Types{{FieldType::Boolean, "yes/no"}, {FieldType::Integer, "integer"},
                                                {FieldType::Long, "long"},      {FieldType::Double, "double"},
                                                {FieldType::Date, "date"},      {FieldType::Text, "text"},
                                                {FieldType::Memo, "memo"}};
    QStringList all;
    for (const Field& field : rows.fields())
        all += field.name + ' ' + Types[field.type] + (field.size > 0 ? QString(" %1").arg(field.size) : "") +
               (field.autoIncrement ? " counter" : "") + (field.defaultValue ? " = " + shown(*field.defaultValue) : "");
    return all.join(" | ");
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

    void selects_data() { test::tableOf("store/sql/selects.txt"); }
    void selects()
    {
        QFETCH(QString, condition);
        const QString order =
            condition.contains("order", Qt::CaseInsensitive) || condition.contains(u';') ? "" : " Order by SID";
        Recordset rows = m_database->openRecordset("Select * From People " + condition + order);
        QVERIFY(rows.updatable());
        QTEST(recordsOf(rows).replaceInStrings(QRegularExpression(" .*"), "").join(' '), "sids");
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
        QTEST((QStringList{kind, columnsOf(rows)} + records).join('\n') + '\n', "shown");
    }

    // What an expression gives for the first two people, and its type in an updatable set and in a fixed one.
    void expressions_data() { test::tableOf("store/sql/expressions.txt"); }
    void expressions()
    {
        QStringList seen;
        for (const char* source : {"People", "People, (Select 1) As One"}) {
            Recordset rows = m_database->openRecordset(
                QString("Select %1 From %2 Where SID < 3 Order By SID").arg(test::cell("expression"), source));
            seen += QString(columnsOf(rows)).remove("Expr1000 ");
            QTEST(recordsOf(rows).join("; "), "values");
        }
        QTEST(seen.join(", "), "types");
    }

    // Texts that name each other too often to be useful are refused.
    void storedQueries()
    {
        QCOMPARE(m_database->queryDef(u"FIRST").sql, "Select \"N/A\" As A, SID From Second");
        const auto nest = [&] {
            for (int i = 0; i < 40; ++i)
                m_database->createQueryDef(
                    "Dens" + QString("x").repeated(i + 1),
                    QString("Select A.* From %1 A, %1 B").arg("Dens" + QString("x").repeated(i)));
        };
        QCOMPARE(test::failureNumber(nest), 3075);
        for (int again = 0; again < 2; ++again)
            QCOMPARE(test::failureNumber([&] { return m_database->openRecordset(m_database->queryNames().last()); }),
                     3075);
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

private:
    QTemporaryDir m_folder;
    std::unique_ptr<Database> m_database;
};

ORLO_TEST(tst_sql)
#include "tst_sql.moc"
