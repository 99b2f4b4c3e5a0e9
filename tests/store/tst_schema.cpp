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

    // The fields of each table in their order, texts with their sizes: "!" takes no empty text, "+" counts, "=" begins
    // as true; the indexes, the primary one with a star. Only the version of the file that follows an @ has a field or
    // index.
    void catalogue_data()
    {
        test::table({"table", "fields", "indexes"}, R"(
            PackInfo        | Pack Number real, Name 50 |
            Dens            | Den_SID int, Den_Number real, Den_Name 40, Den_Type 40, Year_Started real, Active 255 | *Dens_PK Den_SID
            Scouts          | Scout_SID int, First_Name 40, Last_Name 40, MI 1, Address 40, Phone 20, City 30, State 25, Zip_Code 10, Birth_Date date, Parent_Name1 60, Parent_Name2 60, Active 1, Pack_Start_Date date, Tigar 1, Years_In_Other_Pack real, Years_In_Scouts real, School 40, Assigned_Den_SID int, Note memo, Alt_Parent_Address 60@11, Alt_Parent_City 40@11, Alt_Parent_State 30@11, Alt_Parent_Zip 10@11, Parent1_Email 100@11, Parent1_Use_Scout_Add yes=@11, Parent1_Home_Phone 20@11, Parent1_Work_Phone 20@11, Parent1_Correspondance yes@11, Parent2_Work_Phone 20@11, Parent2_Use_Scout_Add yes=@11, Parent2_Email 100@11, Parent2_Correspondance yes@11, Grade_In_School int@11, Boys_Life yes@11, BSA_Number 50@11, Scouts_Email 100@11, Parent2_Home_Phone 20@11, Parent1_Den_Leader_SID int@11, Parent2_Den_Leader_SID int@11 | *Scouts_PK Scout_SID, Assigned_Den_SID Assigned_Den_SID
            Adults          | Adult_SID int, First_Name 40, Last_Name 40, MI 1, Address 40, Phone 20, WorkPhone 20, City 25, State 30, Zip_Code 10, Birth_Date date, Active 1, Pack_Start_Date date, Years_In_Other_Pack real, Years_In_Scouts real, Assigned_Den_SID int, Note memo, Email 100@11 | *Adults_PK Adult_SID
            Insignias       | Insignia_SID int, Insignia_Name 40, Insignia_Type 40, Description memo | *Insignias_PK Insignia_SID
            Assigned_Awards_Scouts | Scout_SID int, Insignia_SID int, Date_Assigned date, Year int, Month int, Assigned_SID long+@11, Quantity int@11 | *Assigned_SID_PK Assigned_SID@11, Date_Assigned Date_Assigned, Insignia_SID Insignia_SID, Month Month, Scout_SID Scout_SID, Year Year
            Assigned_Awards_Adults | Adult_SID int, Insignia_SID int, Date_Assigned date, Year int, Month int | Adult_SID Adult_SID, Date_Assigned Date_Assigned, Insignia_SID Insignia_SID
            Den_Titles      | Den_Title 30!@11, Sort_Order int@11 | *Den_Titles_PK Den_Title@11
            Leader_Den_Assignments | Adult_SID long@11, Den_SID int@11, Den_Title 50@11, Sort_Order int@11 | LDA_Adult_SID_IDX Adult_SID@11, LDA_Den_SID_IDX Den_SID@11
            Leader_Pack_Assn | Position_Title 60@11, Leader_SID int@11, Sort_Order int@11, Leader_Pack_Assn long+@11 | *LPA_Leader_Pack_Assn_PK Leader_Pack_Assn@11, LPA_Leader_SID_IDX Leader_SID@11
            Other_Purchase_List | Item_Name 100@11, Quantity int@11 |
            Pack_Positions  | Pack_Titles 60!@11, Sort_Order int@11 | *Pack_Titles Pack_Titles@11
            Purchase_List   | Insignia_SID int@10, Award_Name 40, Award_Type 40@10, Insignia_Type 40@11, Quantity int@11 |)");
    }
    void catalogue()
    {
        QFETCH(QString, table);
        for (const QString version : {"@10", "@11"}) {
            Database database =
                version == "@11" ? DBEngine::openDatabase(m_path) : DBEngine::createDatabase(m_path + version);
            if (version == "@10")
                createSchema10(database);
            QStringList fields;
            QStringList indexes;
            const bool there = database.tableNames().contains(table);
            for (const Field& field : there ? database.tableDef(table).fields() : std::vector<Field>())
                fields += described(field);
            for (const Index& index : there ? database.tableDef(table).indexes() : std::vector<Index>())
                indexes += (index.primary ? "*" : "") + index.name + ' ' + index.fields.join('+');
            for (const auto& [column, seen] : {std::pair("fields", fields), {"indexes", indexes}}) {
                QStringList wanted = test::cell(column).remove(version).split(", ", Qt::SkipEmptyParts);
                wanted.removeIf([](const QString& one) { return one.contains('@'); });
                QCOMPARE(seen, wanted);
            }
        }
    }

    void storedQueries()
    {
        QCOMPARE(rows("PRAGMA integrity_check"), "ok");
        Database database = DBEngine::openDatabase(m_path);
        QCOMPARE(database.tableNames().size(), 13);
        QCOMPARE(database.queryNames().size(), 6);
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
            the same award twice    | yes | Assigned_Awards_Adults VALUES(1,1,NULL,NULL,NULL), (1,1,NULL,NULL,NULL))");
    }
    void limits()
    {
        const QString failure = rows("INSERT INTO " + test::cell("statement").toUtf8());
        QVERIFY2(failure.isEmpty() == (test::cell("accepted") == "yes"), qPrintable(failure));
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
    // Its name, its type or size and what sets it apart.
    static QString described(const Field& field)
    {
        using enum FieldType;
        static const QMap<FieldType, QString> types{{Integer, "int"}, {Long, "long"}, {Double, "real"},
                                                    {Date, "date"},   {Memo, "memo"}, {Boolean, "yes"}};
        const bool text = field.type == Text || field.type == Memo;
        return field.name + ' ' + types.value(field.type, QString::number(field.size)) +
               (text && !field.allowZeroLength ? "!" : "") + (field.autoIncrement ? "+" : "") +
               (field.defaultValue == Value(true) ? "=" : "");
    }
    // The rows that a statement gives outside this program, or its failure.
    [[nodiscard]] QString rows(const QByteArray& statement) const { return test::sqlite(m_path, statement).join(u';'); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

ORLO_TEST(tst_schema)
#include "tst_schema.moc"
