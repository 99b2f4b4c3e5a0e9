#include "store/engine/Database.h"
#include "support/Failure.h"
#include "support/Main.h"
#include "support/Table.h"

#include <QTemporaryDir>

using namespace orlo;
using namespace orlo::store;

// The dialect, by what statements give on a small table: what SQLite makes of the translated text is what counts.
class tst_sql : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_database = std::make_unique<Database>(DBEngine::createDatabase(m_folder.filePath("a.mdb")));
        TableDef people("People");
        people.appendField({"SID", FieldType::Integer});
        people.appendField({"Last Name", FieldType::Text, 40, true});
        people.appendField({"Born", FieldType::Date});
        people.appendField({"Den", FieldType::Integer});
        people.appendField({"Mail", FieldType::Boolean});
        people.appendIndex({"PK", {"SID"}, true, true, true});
        m_database->appendTableDef(people);
        m_database->createQueryDef("Older", "Select SID, [Last Name] From People Where Born < #1/1/2015#");
    }

    void init()
    {
        m_database->execute("Delete From People");
        for (const char* row : {"1, \"Øst\", #6/7/2014#, 3, 1", "2, 'øster', #12/31/2015#, NULL, 0",
                                "3, 'O''Brien', NULL, 3, 0", "4, 'a*b', #1/1/1001#, 4, 1"})
            m_database->execute(QString("Insert Into People (SID, [Last Name], Born, Den, Mail) Values (%1)").arg(row));
    }

    void selects_data()
    {
        test::table({"condition", "sids"}, R"(
            Where Born = #6/7/2014#                                                | 1
            Where Born between #06/07/14# and #12/31/2015#                         | 1 2
            Where Born < #2-1-1001#                                                | 4
            Where [Last Name] = 'ØSTER'                                            | 2
            Where [Last Name] Like 'ØST*'                                          | 1 2
            Where [Last Name] Like 'O?[a-c]r*'                                     | 3
            Where [Last Name] Like 'a[*]b'                                         | 4
            Where [Last Name] Not Like '*b*'                                       | 1 2
            Where SID Like '#'                                                     | 1 2 3 4
            Where Den = NULL                                                       | 2
            Where Den <> Null and Mail = 0                                         | 3
            Where IsNull(Born) Or IsNull(Den)                                      | 2 3
            Where IIf(IsNull(Den),9,Den) > 3                                       | 2 4
            Where [Last Name] & Den = 'Øst3'                                       | 1
            Where Den & '' = ""                                                    | 2
            Where Year(Born) = 2014 And Month(Born) = 6                            | 1
            Where Left([Last Name], 2) = 'o''' And UCase(Mid([Last Name],3)) = 'BRIEN' | 3
            Where SID In (Select SID From Older)                                   | 1 4
            Where Mail = True;                                                     | 1 4
            order by [Last Name] DESC                                              | 2 1 3 4
        )");
        QTest::newRow("either quote") << "Where people.[last name] = \"o'brien\""
                                      << "3";
    }
    void selects()
    {
        QFETCH(QString, condition);
        const QString order = condition.contains("order") || condition.contains(u';') ? "" : " Order by SID";
        Recordset rows = m_database->openRecordset("Select * From People " + condition + order);
        QVERIFY(rows.updatable());
        QTEST(texts(rows, u"sid"), "sids");
    }

    // Accented letters stand beside their plain ones.
    void accents()
    {
        QStringList names{"Zoë", "Émile", "eva", "Straße", "Étienne", "Strasse", "Etienne", "Œdipe", "Odin", "Éva"};
        m_database->execute("Delete From People");
        for (int sid = 1; const QString& name : names)
            m_database->execute(
                QString("Insert Into People (SID, [Last Name]) Values (%1, '%2')").arg(sid++).arg(name));
        Recordset rows = m_database->openRecordset("Select * From People Order By [Last Name]");
        QCOMPARE(texts(rows, u"Last Name"), "Émile Etienne Étienne eva Éva Odin Œdipe Strasse Straße Zoë");
    }

    // Which texts give sets that can be changed, and how many rows and columns each has.
    void shapes_data()
    {
        test::table({"source", "shape"}, R"(
            people                                                             | updatable 4 5
            [People]                                                           | updatable 4 5
            Select SID As Number, [Last Name] From People As P Where P.Den = 3 | updatable 2 2
            Select Max(SID) AS [MaxSID]from People                             | fixed 1 1
            Select Distinct Den From People                                    | fixed 3 1
            Select DistinctRow Den From People                                 | fixed 3 1
            Select A.SID From People As A, People As B Where A.SID = B.SID     | fixed 4 1
            Select SID From People Union All Select 9 From People              | fixed 8 1
            Select Den, Count(*) As N From People Group By Den                 | fixed 3 2
            Older                                                              | fixed 2 2
            Select * From Older                                                | fixed 2 2
            Select * From People Where SID = 0                                 | updatable 0 5
            Select Den From People Where Den = (Select Max(Den) From People)   | updatable 1 1
            Select SID From People Limit 3                                     | fixed 3 1
        )");
    }
    void shapes()
    {
        QFETCH(QString, source);
        const Recordset rows = m_database->openRecordset(source);
        const QString kind = rows.updatable() ? "updatable" : "fixed";
        QTEST(QString("%1 %2 %3").arg(kind).arg(rows.recordCount()).arg(rows.fields().size()), "shape");
    }

    void failures_data()
    {
        test::table({"statement", "as", "number"}, R"(
            Select * From People Where [Last Name] Like 'O'Brien*'           | source | 3075
            Select * From People Where [Last Name] = 'x'; Delete From People | source | 3075
            Select * From People Where [Last Name] = 'x' -- and more         | source | 3075
            Select * From People /* a */                                     | source | 3075
            Select * From People Where Born = #13/1/2015#                    | source | 3075
            Select * From People Where Born = #1/1/2015                      | source | 3075
            Select * From People Where (SID = 1                              | source | 3075
            Select From Where                                                | source | 3075
            Select * From Nobody                                             | source | 3078
            Nobody                                                           | source | 3078
                                                                             | source | 3078
            Select Nowhere From People                                       | source | 3061
            Select * From People Where SID = Nowhere                         | source | 3061
            Select * From sqlite_master                                      | source | 3078
            Select * From Stored_Queries                                     | source | 3078
            Select * From pragma_table_info('People')                        | source | 3078
            Select load_extension('x') From People                           | source | 3075
            Select randomblob(1000000000) From People                        | source | 3075
            Select * From People                                             | action | 3075
            Delete From People                                               | source | 3075
            Update Or Replace People Set SID = 1                             | action | 3075
            Insert Into People (Nowhere) Values (1)                          | action | 3061
            Update Nobody Set SID = 1                                        | action | 3078
            Pragma journal_mode=off                                          | action | 3075
            Attach 'x' As y                                                  | action | 3075
            Drop Table People                                                | action | 3075
            Create Table X(a)                                                | action | 3075
            Begin                                                            | action | 3075
            Vacuum                                                           | action | 3075
            Alter Table People Add x                                         | action | 3075
            With x As (Select 1) Delete From People                          | action | 3075
            Replace Into People(SID) Values(1)                               | action | 3075
            Explain Select 1                                                 | action | 3075
        )");
    }
    void failures()
    {
        QFETCH(QString, statement);
        QFETCH(QString, as);
        const auto source = [&] { (void)m_database->openRecordset(statement); };
        const auto action = [&] { m_database->execute(statement); };
        const int number = as == "source" ? test::failureNumber(source) : test::failureNumber(action);
        QTEST(QString::number(number), "number");
        QCOMPARE(m_database->openRecordset("People").recordCount(), 4);
    }

    // A row that the file refuses is passed over, and the others go through.
    void refusedRowsArePassedOver_data()
    {
        test::table({"statement", "after"}, R"(
            Insert Into People (SID, Den) Select SID + 3, 7 From People | 3 - 3 4 7 7 7
            Update People Set SID = 9 Where Den = 3                     | - 3 4 3
            Update People Set Den = Den + 32764                         | 32767 - 32767 4
            Insert Into People (SID) Values (NULL)                      | 3 - 3 4
            Delete * From People Where Den = 3                          | - 4
            Update People Set Den = NULL, Mail = 1 Where Den = 4        | 3 - 3 -
        )");
    }
    void refusedRowsArePassedOver()
    {
        QFETCH(QString, statement);
        m_database->execute(statement);
        Recordset rows = m_database->openRecordset("Select * From People Order By SID");
        QTEST(texts(rows, u"Den"), "after");
    }

private:
    static QString texts(Recordset& rows, QStringView field)
    {
        QStringList texts;
        for (; !rows.eof(); rows.moveNext())
            texts += rows[field].isNull() ? "-" : rows[field].toText();
        return texts.join(u' ');
    }

    QTemporaryDir m_folder;
    std::unique_ptr<Database> m_database;
};

ORLO_TEST(tst_sql)
#include "tst_sql.moc"
