#include "store/schema/Schema.h"
#include "support/Main.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QRegularExpression>
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
    void catalogue_data() { test::tableOf({"table", "fields", "indexes"}, "store/schema/catalogue.txt"); }
    void catalogue()
    {
        QFETCH(QString, table);
        for (const QString version : {"@10", "@11"}) {
            Database database =
                version == "@11" ? DBEngine::openDatabase(m_path) : DBEngine::createDatabase(m_path + version);
            if (version == "@10")
                createSchema(database, schema::V10);
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

    // The manual's page about the file has all tables with all fields.
    void manualPage()
    {
        static const QMap<FieldType, QString> kinds = {
            {FieldType::Boolean, "yes/no"},    {FieldType::Integer, "whole number"},
            {FieldType::Long, "whole number"}, {FieldType::Double, "number"},
            {FieldType::Date, "date"},         {FieldType::Memo, "long text"}};
        static const QRegularExpression row("^\\| (`[^`]+` \\| [^|]+) \\|", QRegularExpression::MultilineOption);
        const QString page = QString::fromUtf8(test::contents(ORLO_SOURCE_DIR "/docs/manual/database-file.md"));
        QStringList tables = page.section("## Tables", 1).section("## Stored queries", 0, 0).split("### ").mid(1);
        for (const TableDef& table : schema::tables()) {
            QStringList wanted = {table.name()};
            for (const Field& field : table.fields())
                wanted += "`" + field.name + "` | " + kinds.value(field.type, "text, " + QString::number(field.size));
            QStringList told;
            for (const QString& one : std::as_const(tables))
                if (one.section(u'\n', 0, 0) == table.name()) {
                    told = QStringList(table.name());
                    for (const auto& match : row.globalMatch(one))
                        told += match.captured(1);
                }
            QCOMPARE(told, wanted);
        }
        QCOMPARE(std::size(schema::tables()), std::size(tables));
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
    void limits_data() { test::tableOf({"row", "accepted", "statement"}, "store/schema/limits.txt"); }
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
