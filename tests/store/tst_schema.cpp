#include "store/schema/Schema.h"
#include "support/Main.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QTemporaryDir>

using namespace orlo;
using namespace orlo::store;

class tst_schema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("pack.mdb");
        Database database = DBEngine::createDatabase(m_path);
        createSchema(database);
    }

    void catalogue()
    {
        QCOMPARE(rows("PRAGMA integrity_check"), "ok");
        Database database = DBEngine::openDatabase(m_path);
        QCOMPARE(database.tableNames().size(), 13);
        QCOMPARE(database.queryNames().size(), 6);
        for (const TableDef& wanted : schema::tables()) {
            const TableDef found = database.tableDef(wanted.name());
            QCOMPARE(found.fields().size(), wanted.fields().size());
            for (std::size_t i = 0; i < wanted.fields().size(); ++i) {
                const Field& field = found.fields()[i];
                const Field& same = wanted.fields()[i];
                const bool equal = field.name == same.name && field.type == same.type && field.size == same.size &&
                                   field.allowZeroLength == same.allowZeroLength &&
                                   field.autoIncrement == same.autoIncrement && field.defaultValue == same.defaultValue;
                QVERIFY2(equal, qPrintable(wanted.name() + u'.' + same.name));
            }
            QCOMPARE(found.indexes().size(), wanted.indexes().size());
        }
        for (const QueryDef& query : schema::queries())
            QCOMPARE(database.queryDef(query.name).sql, query.sql);
    }

    // What the file itself refuses, by whatever road the row comes.
    void limits_data()
    {
        test::table({"row", "accepted", "statement"}, R"(
            16 bits                 | yes | Dens(Den_SID) VALUES(32767),(-32768)
            above 16 bits           | no  | Dens(Den_SID) VALUES(32768)
            below 16 bits           | no  | Assigned_Awards_Scouts(Quantity) VALUES(-32769)
            32 bits                 | yes | Leader_Den_Assignments(Adult_SID) VALUES(2147483647)
            above 32 bits           | no  | Leader_Den_Assignments(Adult_SID) VALUES(2147483648)
            text as number          | no  | Dens(Den_SID, Den_Number) VALUES(1, 'two')
            text as key             | no  | Dens(Den_SID) VALUES('a')
            fraction as whole       | no  | Dens(Den_SID) VALUES(1.5)
            key twice               | no  | Scouts(Scout_SID) VALUES(1),(1)
            key by update           | no  | Scouts(Scout_SID) VALUES(1),(2); UPDATE Scouts SET Scout_SID = 1
            no key                  | no  | Adults(First_Name) VALUES('A')
            title twice             | no  | Den_Titles(Den_Title) VALUES('Den Leader')
            title twice, other case | no  | Den_Titles(Den_Title) VALUES('DEN leader')
            empty title             | no  | Den_Titles(Den_Title) VALUES('')
            empty texts             | yes | Scouts(Scout_SID, City, Note, Parent1_Email) VALUES(1, '', '', '')
            text that fits          | yes | Scouts(Scout_SID, City) VALUES(1, printf('%.30c', 'x'))
            text too long           | no  | Scouts(Scout_SID, City) VALUES(1, printf('%.31c', 'x'))
            long text               | yes | Scouts(Scout_SID, Note) VALUES(1, printf('%.70000c', 'x'))
            bytes as text           | no  | Scouts(Scout_SID, City) VALUES(1, x'4142')
            date                    | yes | Scouts(Scout_SID, Birth_Date) VALUES(1, '1001-01-01')
            date with time          | yes | Scouts(Scout_SID, Birth_Date) VALUES(1, '2016-06-07 13:30:00')
            date in another form    | no  | Scouts(Scout_SID, Birth_Date) VALUES(1, '6/7/2016')
            no such month           | no  | Scouts(Scout_SID, Birth_Date) VALUES(1, '2016-13-07')
            yes or no               | no  | Scouts(Scout_SID, Boys_Life) VALUES(1, 2)
            dangling links          | yes | Scouts(Scout_SID, Assigned_Den_SID) VALUES(1, 99)
            the same award twice    | yes | Assigned_Awards_Adults VALUES(1,1,NULL,NULL,NULL), (1,1,NULL,NULL,NULL)
        )");
    }
    void limits()
    {
        QFETCH(QString, accepted);
        QFETCH(QString, statement);
        const QString failure = rows("INSERT INTO " + statement.toUtf8());
        QVERIFY2(failure.isEmpty() == (accepted == "yes"), qPrintable(failure));
    }

    void startingValues()
    {
        QCOMPARE(rows("INSERT INTO Scouts(Scout_SID) VALUES(1);"
                      "INSERT INTO Assigned_Awards_Scouts(Scout_SID) VALUES(5), (6)"),
                 "");
        QCOMPARE(rows("SELECT Parent1_Use_Scout_Add, Parent2_Use_Scout_Add, Grade_In_School FROM Scouts"), "1|1|Null");
        QCOMPARE(rows("SELECT Scout_SID, Assigned_SID, Quantity FROM Assigned_Awards_Scouts ORDER BY 1"),
                 "5|1|Null;6|2|Null");
        QCOMPARE(rows("SELECT Pack_Titles, Sort_Order FROM Pack_Positions WHERE Sort_Order < 4 ORDER BY rowid"),
                 "Cub Master|1;Asst. Cubmaster|2;Committee Chair|3");
    }

    // A missing quantity counts one, as every adult's award does; both kinds of position come in one shape.
    void queries()
    {
        QCOMPARE(rows(R"(
            INSERT INTO Insignias VALUES(1, 'Wolf', 'Rank', ' ');
            INSERT INTO Assigned_Awards_Scouts(Scout_SID, Insignia_SID, Date_Assigned, Quantity) VALUES
                (1, 1, '2026-01-01', NULL), (2, 1, '2026-01-31', 3), (1, 50, '2026-01-15', 2);
            INSERT INTO Assigned_Awards_Adults VALUES(1, 1, '2026-01-15', 2026, 1), (1, 77, '2026-01-15', 2026, 1);
            INSERT INTO Dens(Den_SID, Den_Number, Den_Type) VALUES(3, 7, 'Bear');
            INSERT INTO Adults(Adult_SID, Last_Name) VALUES(1, 'O''Brien');
            INSERT INTO Leader_Den_Assignments VALUES(1, 3, NULL, NULL), (2, 44, 'Den Leader', 1);
            INSERT INTO Leader_Pack_Assn VALUES('Cub Master', 1, 1, 9))"),
                 "");
        const std::pair<const char*, const char*> selects[] = {
            {"Award_Name, Qty, Insignia_Type FROM Join_AssignedScoutsWInsignias ORDER BY Insignia_SID, Qty",
             "Wolf|1|Rank;Wolf|3|Rank;Null|2|Null"},
            {"Award_Name, Qty, Insignia_SID FROM Join_AssignedAdultsWInsgnias", "Wolf|1|1;Null|1|77"},
            {"Award_Name, sum(Qty) FROM UnionAwardsScoutAdults WHERE Date_Assigned BETWEEN '2026-01-01' AND "
             "'2026-01-31' GROUP BY Award_Name ORDER BY 1",
             "Null|3;Wolf|5"},
            {"* FROM Union_Pack_Den_Positions ORDER BY Den_SID, Leader_Pack_Assn",
             "1|0|Cub Master|9;1|3|Null|N/A;2|44|Den Leader|N/A"},
            {"Den_Number, Den_Type, Position_Title, Den_SID, Leader_Pack_Assn FROM Leader_Assignments ORDER BY Den_SID",
             "N/A|N/A|Cub Master|0|9;7.0|Bear|Null|3|N/A;Null|Null|Den Leader|44|N/A"},
            {"Last_Name, Den_Title, Adult_SID, Den_SID FROM Scouts_Parents_As_DenLeader", "O'Brien|Null|1|3"}};
        for (const auto& [select, expected] : selects)
            QCOMPARE(rows(QByteArray("SELECT ") + select), expected);
    }

private:
    // The rows that a statement gives outside this program, or its failure.
    [[nodiscard]] QString rows(const QByteArray& statement) const { return test::sqlite(m_path, statement).join(u';'); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

ORLO_TEST(tst_schema)
#include "tst_schema.moc"
