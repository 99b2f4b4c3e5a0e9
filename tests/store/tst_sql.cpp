#include "store/engine/Connection.h"
#include "store/engine/Database.h"
#include "support/Failure.h"
#include "support/Main.h"
#include "support/Sqlite.h"
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
        people.appendIndex({"Names", {"Last Name", "Born"}, false, true});
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
            Where Born between #06/07/14# and #12/31/2015#                         | 1 2
            Where Born < #2-1-1001#                                                | 4
            Where [Last Name] = 'ØSTER'                                            | 2
            Where [Last Name] Like 'ØST*'                                          | 1 2
            Where [Last Name] Like 'O?[a-c]r*'                                     | 3
            Where [Last Name] Like 'a[*]b'                                         | 4
            Where [Last Name] Like '[!o]*'                                         | 1 2 4
            Where [Last Name] Not Like '*b*'                                       | 1 2
            Where SID Like '#'                                                     | 1 2 3 4
            Where Den = NULL                                                       | 2
            Where Den <> Null and Mail = 0                                         | 3
            Where IsNull(Born) Or IsNull(Den)                                      | 2 3
            Where Den & '' = ""                                                    | 2
            Where Left([Last Name], 2) = 'o''' And UCase(Mid([Last Name],3)) = 'BRIEN' | 3
            Where SID In (Select SID From Older)                                   | 1 4
            Where Mail = True;                                                     | 1 4
            Where -1 = Mail Or Mail = 1                                            | 1 4
            Where Null = Den                                                       | 2
            Where Den Is Not Null And Null <> Born                                 | 1 4
            Where Born = '1/1/1001' Or '6/7/14' = Born                             | 1 4
            Where Born < Date() - 30 And Born > #1/1/2000# + 1                     | 1 2
            Where Born + 1 Between '6/8/2014' And #6/8/2014#                       | 1
            Where Born Like '6/?/*'                                                | 1
            Where Not Den = 3 Or SID = 3 And Mail                                  | 4
            Where [Last Name] + 'x' = 'ØSTX'                                       | 1
            Where Den In (3, SID) And SID Not In (3, 3.0)                          | 1 4
            Where SID Not Between 2 And 3                                          | 1 4
            Where Exists (Select * From Older Where Older.SID = People.SID)        | 1 4
            Where 'ØSTER' In (Select [Last Name] From People P Where P.SID = People.SID) | 2
            Where Den > '20' Or Den Between '1' And '9' And SID In ('1', '4')      | 1 4
            Where Mail = 'Yes' Or Mail <> 'no' And SID = 1                         | 1 4
            Order By Mail, SID Desc                                                | 4 1 3 2
            Order By Mail Desc, SID                                                | 2 3 1 4
            Order By -1, (1), 3 - 1, True, SID                                     | 1 2 3 4
            order by [Last Name] DESC                                              | 2 1 3 4)");
        QTest::newRow("either quote") << "Where people.[last name] = \"o'brien\""
                                      << "3";
    }
    void selects()
    {
        QFETCH(QString, condition);
        const QString order = condition.contains("order", Qt::CaseInsensitive) || condition.contains(u';') ? "" : " Order by SID";
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
            Select SID As Number, [Last Name] From People As P Where P.Den = 3 | updatable 2 2
            Select Max(SID) AS [MaxSID]from People                             | fixed 1 1
            Select Distinct Den From People                                    | fixed 3 1
            Select DistinctRow Den From People                                 | fixed 3 1
            Select A.SID From People As A, People As B Where A.SID = B.SID     | fixed 4 1
            Select SID From People Union All Select 9 From People              | fixed 8 1
            Select Den, Count(*) As N From People Group By Den                 | fixed 3 2
            Older                                                              | fixed 2 2
            Select * From People Where SID = 0                                 | updatable 0 5
            Select Den From People Where Den = (Select Max(Den) From People)   | updatable 1 1
            Select SID, Count(*) From (Select SID From People) As P Group By SID | fixed 4 2
            Select * From (People As P Left Join Older On P.SID = Older.SID) Inner Join People As Q On Q.SID = P.SID | fixed 4 12
            Select Distinct UCase([Last Name]) & '' From (Select [Last Name] From People Union All Select 'ØST' From People) As P | fixed 4 1
            Select Count(*) From People Group By Left([Last Name], 1) & Left('', 1) | fixed 3 1
            Select P.*, 1 From People P                                        | updatable 4 6
            Select P.Den, Den + 1 & 'x', Max(SID) From People As P Group By Den Order By Den, Max(Born) | fixed 3 3
            Select Left([Last Name], 1) As L From People Group By L            | fixed 3 1
            Select Count(*), 5 From People Group By 1                          | fixed 1 2)");
    }
    void shapes()
    {
        Recordset rows = m_database->openRecordset(test::cell("source"));
        const QString kind = rows.updatable() ? "updatable" : "fixed";
        QTEST(QString("%1 %2 %3").arg(kind).arg(rows.recordCount()).arg(rows.fields().size()), "shape");
    }

    // What an expression gives for the first two people: dates and yes/no are told by their texts.
    void expressions_data()
    {
        test::table({"expression", "values"}, R"(
            1 + 2 & 'a'                                     | 3a; 3a
            'a' & -1 & ('b' & Null)                         | a-1b; a-1b
            5/2                                             | 2.5; 2.5
            7 - 2 - 1 * (3 - 1) / 4                         | 4.5; 4.5
            -(2 - -3) * +2                                  | -10; -10
            [Last Name] + 'x'                               | Østx; østerx
            'x' + Null                                      | -; -
            '5' + 1                                         | 6; 6
            Den + '1' & 'x'                                 | 4x; x
            Born + 1                                        | 6/8/2014; 1/1/2016
            1 + Born                                        | 6/8/2014; 1/1/2016
            Born - 0.25                                     | 6/6/2014 6:00:00 PM; 12/30/2015 6:00:00 PM
            (Born - 41798.25) * 1                           | -1.25; 570.75
            Born - #6/1/2014#                               | 6; 578
            'on ' & Born & ', ' & Mail                      | on 6/7/2014, -1; on 12/31/2015, 0
            Mail + 0                                        | -1; 0
            Mail = -1                                       | True; False
            True & 'x' & True + 1                           | -1x0; -1x0
            (Select Count(Den) From People)                 | 3; 3
            Mail < False                                    | True; False
            IIf(Den = 3, Born, Null)                        | 6/7/2014; -
            IIf(Den = 3, 'N/A', SID)                        | N/A; 2
            IIf(Mail, Mail, 5)                              | -1; 5
            IIf([Last Name] = 'ØST', SID + 1, SID) + 1      | 3; 3
            IsNull(Den)                                     | False; True
            (Select Max(Born) From People)                  | 12/31/2015; 12/31/2015
            (Select Sum(Mail) From People)                  | -2; -2
            Round(2.5) & Round(1.25, 1)                     | 21.2; 21.2
            InStr([Last Name], 'ST') & Len(Born)            | 28; 210
            Year(Born + 30) & Month('6/7/14') & Day(2)      | 201461; 201661
            IIf(SID = 1, 'x', Born)                         | x; 12/31/2015
            IIf(SID = 1, Born, IIf(SID = 2, 5, Born))       | 6/7/2014; 5
            Abs(SID - 3) & Mid('abc', SID, 1)               | 2a; 1b)");
    }
    void expressions()
    {
        Recordset rows =
            m_database->openRecordset("Select " + test::cell("expression") + " From People Where SID < 3 Order By SID");
        QCOMPARE(rows.fields()[0].name, "Expr1000");
        QTEST(texts(rows, u"Expr1000", "; "), "values");
    }

    // What a set that can't be changed makes of kinds, and of texts that differ in case only.
    void computedSets()
    {
        m_database->createQueryDef("Shown", "Select [Last Name] & '' As Name, Max(Born) As Latest, Max(Mail = True) As "
                                            "Any From People Group By [Last Name] & '' Order By 1");
        m_database->execute("Insert Into People (SID, [Last Name], Born) Values (5, 'ØST', #1/2/2020#)");
        m_database->execute("Update People Set Born = '12/31/' & 19, Mail = -1 Where IsNull(Born)");
        Recordset rows = m_database->openRecordset("Select Name, Latest, Latest + 1 As Day From Shown Order By Name");
        QCOMPARE(texts(rows, u"Latest"), "1/1/1001 12/31/2019 1/2/2020 12/31/2015");
        rows.moveFirst();
        QCOMPARE(texts(rows, u"Day"), "1/2/1001 1/1/2020 1/3/2020 1/1/2016");
        QCOMPARE(m_database->openRecordset("Shown").value(1).isDate(), true);
    }

    // A stored query is its text wherever it is named; the view is for other tools. Texts that name each other too
    // often for any use are refused.
    void storedQueries()
    {
        m_database->createQueryDef("Dens", "Select SID, Den From People Where Den > 0 Order By SID Desc");
        QCOMPARE(
            test::sqlite(m_folder.filePath("a.mdb"), "Drop View Dens;Create View Dens As Select 1 As SID, 9 As Den"),
            QStringList());
        for (const char* source : {"Dens", "Select D.* From Dens D, Older Where Older.SID = D.SID Union All "
                                           "Select * From Dens Where SID = 3 Order By 1 Desc"}) {
            Recordset rows = m_database->openRecordset(source);
            QCOMPARE(texts(rows, u"SID"), "4 3 1");
        }
        const auto nest = [&] {
            for (int i = 0; i < 40; ++i)
                m_database->createQueryDef(
                    "Dens" + QString("x").repeated(i + 1),
                    QString("Select A.* From %1 A, %1 B").arg("Dens" + QString("x").repeated(i)));
        };
        QCOMPARE(test::failureNumber(nest), 3075);
    }

    void failures_data()
    {
        test::table({"statement", "as", "number"}, R"(
            Select * From People Where [Last Name] Like 'O'Brien*'           | source | 3075
            Select * From People Where [Last Name] = 'x'; Delete From People | source | 3075
            Select * From People Where Born = #13/1/2015#                    | source | 3075
            Select * From People Where Born = #1/1/2015                      | source | 3075
            Select * From People Where (SID = 1                              | source | 3075
            Select * From Nobody                                             | source | 3078
            Nobody                                                           | source | 3078
                                                                             | source | 3078
            Select Nowhere From People                                       | source | 3061
            Select * From People Where SID = Nowhere                         | source | 3061
            Select * From sqlite_master                                      | source | 3078
            Select * From Stored_Queries                                     | source | 3078
            Select * From People Limit 3                                     | source | 3075
            Select * From People -- all of them                              | source | 3075
            Select * From main.People                                        | source | 3075
            Select * From pragma_table_list                                  | source | 3078
            Select Cast(SID As Text) From People                             | source | 3075
            Select SID N From People                                         | source | 3075
            Select SID % 2 From People                                       | source | 3075
            Select Left(SID) From People                                     | source | 3075
            Select SID +                                                     | source | 3075
            Select SID Not 1 From People                                     | source | 3075
            Select load_extension('x') From People                           | source | 3075
            Select * From People                                             | action | 3075
            Delete From People                                               | source | 3075
            Update Or Replace People Set SID = 1                             | action | 3075
            Delete From People Returning SID                                 | action | 3075
            Insert Into People (Nowhere) Values (1)                          | action | 3061
            Update Nobody Set SID = 1                                        | action | 3078
            Update People Set rowid = rowid + 1                              | action | 3061
            Insert Into People (_rowid_, SID) Values (9, 9)                  | action | 3061
            Select OID From People                                           | source | 3061
            Select Den, SID From People Group By Den                         | source | 3075 SID is neither summed
            Select Count(*), [Last Name] From People                         | source | 3075 Last Name is neither
            Select * From People Group By SID                                | source | 3075 * beside
            Select Den From People Group By Den Order By Born                | source | 3075 Born is neither
            Select Den From People Group By Den Having SID > 1               | source | 3075 SID is neither
            Select Den, (Select Max(P.SID) From People P Where P.SID < People.SID) From People Group By Den | source | 3075 People is neither
            Select 'Den ' + Den From People                                  | source | 3075 Den  is no number
            Select * From People Where Mail = 'perhaps'                      | source | 3075 perhaps is neither yes
            Select Nz(Den, 0) From People                                    | source | 3075 no function Nz. Instead: IIf(IsNull(a), b, a)
            Select Int(Den) From People                                      | source | 3075 no function Int
            Select IIf(Den) From People                                      | source | 3075 IIf takes another
            Select Top 3 SID From People                                     | source | 3075 Near Top
            Select SID Mod 2 From People                                     | source | 3075 Near Mod
            (Select SID From People)                                         | source | 3075 Near (
            -- all of them                                                   | source | 3075 Near --
            Parameters P Long; Select SID From People                        | source | 3075 Near Parameters
            Sleect SID From People                                           | source | 3075 Near Sleect
            Old People                                                       | source | 3078
            Pragma journal_mode=off                                          | action | 3075)");
    }
    void failures()
    {
        QFETCH(QString, statement);
        const auto source = [&] { (void)m_database->openRecordset(statement); };
        const auto action = [&] { m_database->execute(statement); };
        const auto error = test::cell("as") == "source" ? test::failureOf(source) : test::failureOf(action);
        QVERIFY(error);
        QCOMPARE(QString::number(error->number()), test::cell("number").section(u' ', 0, 0));
        const QString said = QString(error->description()).remove(u'"');
        QVERIFY2(said.contains(test::cell("number").section(u' ', 1)), qPrintable(said));
        QCOMPARE(m_database->openRecordset("People").recordCount(), 4);
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

    // A row that the file refuses is passed over, and the others go through.
    void refusedRowsArePassedOver_data()
    {
        test::table({"statement", "after"}, R"(
            Insert Into People (SID, Den) Select SID + 3, 7 From People | 3 - 3 4 7 7 7
            Update People Set SID = 9 Where Den = 3                     | - 3 4 3
            Update People Set Den = Den + 32764                         | 32767 - 32767 4
            Insert Into People (SID) Values (NULL)                      | 3 - 3 4
            Update People Set [Last Name] = 'A*B', Born = #1/1/1001#, Den = 9 Where SID > 2 | 3 - 3 9
            Insert Into People Select SID + 4 As SID, IIf(SID = 2, 'new', UCase([Last Name])) As N, Born, 7, 0 From People | 3 - 3 4 7 7
            Delete * From People Where Den = 3                          | - 4
            Update People Set Den = NULL, Mail = 1 Where Den = 4        | 3 - 3 -
            Update People As P Set P.Den = 2.5 + Mail Where Mail        | 2 - 3 2
            Insert Into People (SID, Den, Born) Values (5, '7', 'soon') | 3 - 3 4
            Update People Set Den = '2.5' Where SID = 1                | 2 - 3 4
            Update People Set Den = Born - #6/1/2014# Where SID = 1     | 6 - 3 4)");
    }
    void refusedRowsArePassedOver()
    {
        m_database->execute(test::cell("statement"));
        Recordset rows = m_database->openRecordset("Select * From People Order By SID");
        QTEST(texts(rows, u"Den"), "after");
    }

private:
    static QString texts(Recordset& rows, QStringView field, const QString& between = " ")
    {
        QStringList texts;
        for (; !rows.eof(); rows.moveNext())
            texts += rows[field].isNull() ? "-" : rows[field].toText();
        return texts.join(between);
    }

    QTemporaryDir m_folder;
    std::unique_ptr<Database> m_database;
};

ORLO_TEST(tst_sql)
#include "tst_sql.moc"
