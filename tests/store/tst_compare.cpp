#include "store/engine/Database.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/OrloDb.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace orlo;
using orlo::test::contents;
using orlo::test::orloDb;
using orlo::test::sqlite;

class tst_compare : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir::setCurrent(m_folder->path());
    }
    void cleanup() { QDir::setCurrent(QDir::tempPath()); }

    void said_data() { test::cases({"arguments", "change", "said"}, "store/said.txt"); }
    void said()
    {
        QCOMPARE(orloDb({"new", "A.mdb"}).errors, QString());
        sqlite("A.mdb", contents(ORLO_SOURCE_DIR "/tests/support/pack.sql"));
        QVERIFY(QFile::copy("A.mdb", "B.mdb"));
        QCOMPARE(sqlite("B.mdb", test::cell("change").toUtf8()), QStringList());
        const QByteArray before = contents("A.mdb") + contents("B.mdb");
        const auto run = orloDb(test::cell("arguments").simplified().split(u' '));
        QCOMPARE(run.errors, QString());
        QCOMPARE(run.status, 0);
        static const QRegularExpression counts("^B.mdb: sound\nversion .*\n( .*\n)+");
        QCOMPARE(QString(run.said).remove(counts).trimmed(), test::cell("said").trimmed());
        QCOMPARE(contents("A.mdb") + contents("B.mdb"), before);
    }

    // A backup's folder stands for the backup. With a file of an earlier version, only what both have is compared.
    void earlierVersion()
    {
        QVERIFY(QDir().mkpath("copy") && QDir().mkpath("csv"));
        orlo::test::write("csv/Assigned_Awards_Scouts.csv", "Scout_SID,Insignia_SID\n1,2\n1,2\n");
        QCOMPARE(orloDb({"new", "--from", "csv", "copy/Quorrel11_Backup"}).errors, QString());
        orlo::test::write("csv/Purchase_List.csv", "Insignia_SID,Award_Name,Award_Type\n1,a,b\n"); // as it was in 1.0
        QCOMPARE(orloDb({"new", "--from", "csv", "--format", "1.0", "old.mdb"}).errors, QString());
        const auto run = orloDb({"compare", "old.mdb", "copy"});
        QVERIFY2(run.said.startsWith("Only the second file has the fields of Scouts: Alt_Parent_Address, "),
                 qPrintable(run.said + run.errors));
        QVERIFY(run.said.contains("second file has the fields of Assigned_Awards_Scouts: Assigned_SID, Quantity\n"));
        QVERIFY(orloDb({"check", "copy"}).said.startsWith("copy/Quorrel11_Backup: sound\nversion "));
        QVERIFY(orloDb({"check", "old.mdb"}).said.startsWith("old.mdb: sound\nversion 1.0\n"));
        QCOMPARE(orloDb({"compare", "old.mdb", "none.mdb"}).status, 1);
        QCOMPARE(orloDb({"check", "old.mdb", "--summary"}).status, 2);
    }

    void scrambled()
    {
        QCOMPARE(orloDb({"new", "--from", ORLO_SOURCE_DIR "/samples/pack", "pack.mdb"}).errors, QString());
        sqlite("pack.mdb",
               "Create Table Mine (Name Text, Number Integer); Insert Into Mine Values ('Liam O''Brien', 740555);"
               "Create View Own As Select 'Liam' From Scouts; Delete From Dens Where Den_SID = 3;"
               "Update Scouts Set Birth_Date = '1001-01-01' Where Scout_SID = 5;");
        const auto run = orloDb({"scramble", "pack.mdb", "out.mdb"});
        QCOMPARE(run.errors, QString());
        QCOMPARE(run.said, QString("left out: the stored query Own\n"));
        const auto both = [](const char* select) { QCOMPARE(sqlite("out.mdb", select), sqlite("pack.mdb", select)); };
        both("Select Scout_SID, Assigned_Den_SID, Active, Tigar, length(First_Name), length(Last_Name), length(Note), "
             "length(Parent1_Email), typeof(MI), instr(Last_Name, ''''), Boys_Life, Birth_Date = '1001-01-01' From "
             "Scouts");
        both("Select Assigned_SID, Scout_SID, Insignia_SID, Quantity, Year = Substr(Date_Assigned, 1, 4) And "
             "Month = 0 + Substr(Date_Assigned, 6, 2) From Assigned_Awards_Scouts");
        both("Select julianday(Max(Date_Assigned)) - julianday(Min(Date_Assigned)) From Assigned_Awards_Scouts");
        both("Select Count(Distinct Lower(Last_Name)), Count(Distinct City), Count(Distinct MI), Count(Distinct "
             "Birth_Date) > 50 From "
             "Scouts");
        both("Select Insignia_Type From Insignias");
        both("Select Den_Title, Sort_Order From Den_Titles");
        both("Select type, name From sqlite_master Where name Not In ('Own', 'Mine', 'Table 1') Order By 1, 2");
        // Nothing by which a person could be recognised is anywhere in the file.
        const QStringList people = sqlite("pack.mdb", contents(ORLO_SOURCE_DIR "/tests/store/ofPeople.sql"));
        const QByteArray out = contents("out.mdb");
        QVERIFY(people.size() > 200);
        for (const QString& known : people)
            QVERIFY2(known.size() < 5 || !out.contains(known.toUtf8()), qPrintable(known));
        QCOMPARE(sqlite("out.mdb",
                        "Attach 'pack.mdb' As P; Select Count(*) From Scouts S Join P.Scouts Using (Scout_SID) "
                        "Where S.Birth_Date = P.Scouts.Birth_Date And S.Birth_Date > '1001-01-01'"),
                 QStringList("0"));
        QVERIFY(!sqlite("out.mdb", "Select [Field 2] From [Table 1]").contains("740555"));
        QVERIFY(sqlite("out.mdb", "Select Note From Scouts Where Note > ''").join("").remove(u'x').trimmed().isEmpty());
        QCOMPARE(orloDb({"check", "out.mdb"}).said.count(u'\n'), orloDb({"check", "pack.mdb"}).said.count(u'\n'));
        QCOMPARE(orloDb({"scramble", "pack.mdb", "out.mdb"}).status, 1);
        QCOMPARE(contents("out.mdb"), out);
    }

    // orlo-report stops at the first report that fails.
    void reports()
    {
        QCOMPARE(orloDb({"new", "A.mdb", "--from", ORLO_SOURCE_DIR "/samples/pack"}).errors, QString());
        orlo::test::write("one.rpt",
                          "source {\nSelect Scout_SID As S, Null As N From Scouts\n}\ndetail {\nrow {\ntext 0 = {S}\n"
                          "line 9in 1pt\n}\n}\n");
        const auto run =
            orloDb({"A.mdb", "one.rpt", "none.rpt", "--csv", ".", "--pdf", ".", "--select", "{S} < 3"}, "orlo-report");
        QCOMPARE(run.said, QString("   1 one\n"));
        QCOMPARE(run.errors, QString("This reaches beyond the right margin. (one.rpt, line 7, column 6)\n"
                                     "orlo-report: The report file can't be found. (none.rpt)\n"));
        QCOMPARE(run.status, 1);
        QCOMPARE(contents("one.csv"), "\xEF\xBB\xBFS,N\r\n1,\r\n2,\r\n");
        QVERIFY(contents("one.pdf").startsWith("%PDF-"));
    }

    void about()
    {
        QCOMPARE(orloDb({"new", "--from", ORLO_SOURCE_DIR "/samples/pack", "Liam.mdb"}).errors, QString());
        sqlite("Liam.mdb", "Create Table Declan (Name); Pragma user_version = 7");
        const QString said = orloDb({"about", m_folder->filePath("Liam.mdb")}).said;
        for (const char* line : {"version of the tables +1\\.1", "size +\\d{6}", "page size +4096", "user version +7",
                                 "rows of Scouts +66", "rows of another's, 1 +0", "stored queries +6", "encoding +1"})
            QVERIFY2(said.contains(QRegularExpression(QString("^%1$").arg(line), QRegularExpression::MultilineOption)),
                     qPrintable(line + said));
        QVERIFY(!said.contains("Liam") && !said.contains("Declan") && !said.contains(m_folder->path()));
        // For a damaged file the head is reported.
        orlo::test::write("Liam.mdb", contents("Liam.mdb").replace(100, 3996, QByteArray(3996, '\0')));
        const auto damaged = orloDb({"about", "Liam.mdb"});
        QVERIFY2(damaged.status == 0 && damaged.said.contains("doesn't open               error 3049\n") &&
                     damaged.said.contains("page size"),
                 qPrintable(damaged.said + damaged.errors));
        orlo::test::write("Liam.mdb", QByteArray(200, 'x'));
        QCOMPARE(orloDb({"about", "Liam.mdb"}).status, 1);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

ORLO_TEST(tst_compare)
#include "tst_compare.moc"
