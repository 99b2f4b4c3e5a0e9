#include "store/Schema.h"

#include <QTemporaryDir>
#include <QTest>

#include <sqlite3.h>

using namespace orlo::store;

namespace
{

// Any tool's view of the file: SQLite without this program's code.
class PlainFile
{
public:
    explicit PlainFile(const QString& path)
    {
        sqlite3_open_v2(path.toUtf8().constData(), &m_db, SQLITE_OPEN_READWRITE, nullptr);
    }
    ~PlainFile() { sqlite3_close(m_db); }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    bool run(const QByteArray& sql)
    {
        return sqlite3_exec(m_db, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
    }
    // Rows as "a|b;c|d", Null as "-", or the words of the failure.
    QByteArray rows(const QByteArray& sql)
    {
        QByteArray result;
        const auto add = [](void* to, int columns, char** values, char**) {
            auto& text = *static_cast<QByteArray*>(to);
            text += text.isEmpty() ? "" : ";";
            for (int i = 0; i < columns; ++i)
                (text += i > 0 ? "|" : "") += values[i] ? values[i] : "-";
            return 0;
        };
        return sqlite3_exec(m_db, sql.constData(), add, &result, nullptr) == SQLITE_OK
                   ? result
                   : QByteArray(sqlite3_errmsg(m_db));
    }

private:
    sqlite3* m_db = nullptr;
};

} // namespace

class tst_schema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(QStringLiteral("pack.mdb"));
        Database database = DBEngine::createDatabase(m_path);
        createSchema(database);
        database.close();
        m_file = std::make_unique<PlainFile>(m_path);
    }

    void cleanup() { m_file.reset(); }

    void fields_data()
    {
        QTest::addColumn<int>("in10");
        QTest::addColumn<int>("in11");
        const auto row = [](const char* table, int in10, int in11) { QTest::newRow(table) << in10 << in11; };
        row("PackInfo", 2, 2);
        row("Dens", 6, 6);
        row("Scouts", 20, 40);
        row("Adults", 17, 18);
        row("Insignias", 4, 4);
        row("Assigned_Awards_Scouts", 5, 7);
        row("Assigned_Awards_Adults", 5, 5);
        row("Den_Titles", 0, 2);
        row("Pack_Positions", 0, 2);
        row("Leader_Den_Assignments", 0, 4);
        row("Leader_Pack_Assn", 0, 4);
        row("Purchase_List", 3, 3);
        row("Other_Purchase_List", 0, 2);
    }

    void fields()
    {
        QFETCH(int, in10);
        QFETCH(int, in11);
        const QByteArray ask = QByteArray("SELECT count(*) FROM pragma_table_info('") + QTest::currentDataTag() + "')";
        QCOMPARE(m_file->rows(ask).toInt(), in11);
        const QString older = m_folder->filePath(QStringLiteral("old.mdb"));
        Database database = DBEngine::createDatabase(older);
        createSchema10(database);
        database.close();
        QCOMPARE(PlainFile(older).rows(ask).toInt(), in10);
    }

    void catalogue()
    {
        QCOMPARE(m_file->rows("PRAGMA integrity_check"), QByteArray("ok"));
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
        QTest::addColumn<QByteArray>("statement");
        QTest::addColumn<bool>("accepted");
        const auto row = [](const char* name, bool accepted, const char* statement) {
            QTest::newRow(name) << QByteArray(statement) << accepted;
        };
        row("16 bits", true, "INSERT INTO Dens(Den_SID) VALUES(32767),(-32768)");
        row("above 16 bits", false, "INSERT INTO Dens(Den_SID) VALUES(32768)");
        row("below 16 bits", false, "INSERT INTO Assigned_Awards_Scouts(Quantity) VALUES(-32769)");
        row("32 bits", true, "INSERT INTO Leader_Den_Assignments(Adult_SID) VALUES(2147483647)");
        row("above 32 bits", false, "INSERT INTO Leader_Den_Assignments(Adult_SID) VALUES(2147483648)");
        row("text as number", false, "INSERT INTO Dens(Den_SID, Den_Number) VALUES(1, 'two')");
        row("text as key", false, "INSERT INTO Dens(Den_SID) VALUES('a')");
        row("fraction as whole", false, "INSERT INTO Dens(Den_SID) VALUES(1.5)");
        row("key twice", false, "INSERT INTO Scouts(Scout_SID) VALUES(1),(1)");
        row("key by update", false, "INSERT INTO Scouts(Scout_SID) VALUES(1),(2); UPDATE Scouts SET Scout_SID = 1");
        row("no key", false, "INSERT INTO Adults(First_Name) VALUES('A')");
        row("title twice", false, "INSERT INTO Den_Titles(Den_Title) VALUES('Den Leader')");
        row("title twice, other case", false, "INSERT INTO Den_Titles(Den_Title) VALUES('DEN leader')");
        row("empty title", false, "INSERT INTO Den_Titles(Den_Title) VALUES('')");
        row("empty texts", true, "INSERT INTO Scouts(Scout_SID, City, Note, Parent1_Email) VALUES(1, '', '', '')");
        row("text that fits", true, "INSERT INTO Scouts(Scout_SID, City) VALUES(1, printf('%.30c', 'x'))");
        row("text too long", false, "INSERT INTO Scouts(Scout_SID, City) VALUES(1, printf('%.31c', 'x'))");
        row("long text", true, "INSERT INTO Scouts(Scout_SID, Note) VALUES(1, printf('%.70000c', 'x'))");
        row("bytes as text", false, "INSERT INTO Scouts(Scout_SID, City) VALUES(1, x'4142')");
        row("date", true, "INSERT INTO Scouts(Scout_SID, Birth_Date) VALUES(1, '1001-01-01')");
        row("date with time", true, "INSERT INTO Scouts(Scout_SID, Birth_Date) VALUES(1, '2016-06-07 13:30:00')");
        row("date in another form", false, "INSERT INTO Scouts(Scout_SID, Birth_Date) VALUES(1, '6/7/2016')");
        row("no such month", false, "INSERT INTO Scouts(Scout_SID, Birth_Date) VALUES(1, '2016-13-07')");
        row("yes or no", false, "INSERT INTO Scouts(Scout_SID, Boys_Life) VALUES(1, 2)");
        row("dangling links", true, "INSERT INTO Scouts(Scout_SID, Assigned_Den_SID) VALUES(1, 99)");
        row("the same award twice", true,
            "INSERT INTO Assigned_Awards_Adults VALUES(1,1,'2026-01-01',2026,1);"
            "INSERT INTO Assigned_Awards_Adults VALUES(1,1,'2026-01-01',2026,1)");
    }

    void limits()
    {
        QFETCH(QByteArray, statement);
        QTEST(m_file->run(statement), "accepted");
    }

    void startingValues()
    {
        QVERIFY(m_file->run("INSERT INTO Scouts(Scout_SID) VALUES(1);"
                            "INSERT INTO Assigned_Awards_Scouts(Scout_SID) VALUES(5);"
                            "INSERT INTO Assigned_Awards_Scouts(Scout_SID) VALUES(6)"));
        QCOMPARE(m_file->rows("SELECT Parent1_Use_Scout_Add, Parent2_Use_Scout_Add, Grade_In_School FROM Scouts"),
                 QByteArray("1|1|-"));
        QCOMPARE(m_file->rows("SELECT Scout_SID, Assigned_SID, Quantity FROM Assigned_Awards_Scouts ORDER BY 1"),
                 QByteArray("5|1|-;6|2|-"));
        QCOMPARE(m_file->rows("SELECT Pack_Titles, Sort_Order FROM Pack_Positions WHERE Sort_Order < 4 ORDER BY rowid"),
                 QByteArray("Cub Master|1;Asst. Cubmaster|2;Committee Chair|3"));
    }

    void queries_data()
    {
        QTest::addColumn<QByteArray>("select");
        QTest::addColumn<QByteArray>("rows");
        const auto row = [](const char* name, const char* select, const char* rows) {
            QTest::newRow(name) << QByteArray(select) << QByteArray(rows);
        };
        row("no quantity counts one",
            "SELECT Award_Name, Qty, Insignia_Type FROM Join_AssignedScoutsWInsignias ORDER BY Insignia_SID, Qty",
            "Wolf|1|Rank;Wolf|3|Rank;-|2|-");
        row("an adult's row counts one", "SELECT Award_Name, Qty, Insignia_SID FROM Join_AssignedAdultsWInsgnias",
            "Wolf|1|1;-|1|77");
        row("both together",
            "SELECT Award_Name, sum(Qty) FROM UnionAwardsScoutAdults WHERE Date_Assigned BETWEEN '2026-01-01' AND "
            "'2026-01-31' GROUP BY Award_Name ORDER BY 1",
            "-|3;Wolf|5");
        row("positions in one shape", "SELECT * FROM Union_Pack_Den_Positions ORDER BY Den_SID, Leader_Pack_Assn",
            "1|0|Cub Master|9;1|3|-|N/A;2|44|Den Leader|N/A");
        row("den of a position",
            "SELECT Den_Number, Den_Type, Position_Title, Den_SID, Leader_Pack_Assn FROM Leader_Assignments ORDER BY "
            "Den_SID",
            "N/A|N/A|Cub Master|0|9;7.0|Bear|-|3|N/A;-|-|Den Leader|44|N/A");
        row("leaders that are on file",
            "SELECT Last_Name, Den_Title, Adult_SID, Den_SID FROM Scouts_Parents_As_DenLeader", "O'Brien|-|1|3");
    }

    void queries()
    {
        QFETCH(QByteArray, select);
        QVERIFY(m_file->run(
            "INSERT INTO Insignias VALUES(1, 'Wolf', 'Rank', ' ');"
            "INSERT INTO Assigned_Awards_Scouts(Scout_SID, Insignia_SID, Date_Assigned, Quantity) VALUES"
            "(1, 1, '2026-01-01', NULL), (2, 1, '2026-01-31', 3), (1, 50, '2026-01-15', 2);"
            "INSERT INTO Assigned_Awards_Adults VALUES(1, 1, '2026-01-15', 2026, 1), (1, 77, '2026-01-15', 2026, 1);"
            "INSERT INTO Dens(Den_SID, Den_Number, Den_Type) VALUES(3, 7, 'Bear');"
            "INSERT INTO Adults(Adult_SID, Last_Name) VALUES(1, 'O''Brien');"
            "INSERT INTO Leader_Den_Assignments VALUES(1, 3, NULL, NULL), (2, 44, 'Den Leader', 1);"
            "INSERT INTO Leader_Pack_Assn VALUES('Cub Master', 1, 1, 9)"));
        QTEST(m_file->rows(select), "rows");
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::unique_ptr<PlainFile> m_file;
};

QTEST_GUILESS_MAIN(tst_schema)
#include "tst_schema.moc"
