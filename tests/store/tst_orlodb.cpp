#include "store/schema/Schema.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/OrloDb.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QDir>
#include <QTemporaryDir>

using namespace orlo;
using namespace orlo::store;
using orlo::test::contents;
using orlo::test::orloDb;
using orlo::test::sqlite;
using Run = orlo::test::OrloDbRun;

class tst_orlodb : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        const QDir folder(m_folder->path());
        QVERIFY(folder.mkpath("csv") && folder.mkpath("out"));
    }

    void badInput_data()
    {
        test::table({"content", "file", "error"}, R"(
            Scout_SID\n1\n                          | Scout      | this version has no table
                                                    | Dens       | 1:1: the file has no header line
            Den_SID,Den_Nr\n                        | Dens       | 1:9: Dens has no field "Den_Nr"
            Den_SID,den_sid\n                       | Dens       | 1:9: Den_SID stands twice
            Den_SID,Den_Name\n1,a\nx,b\n            | Dens       | 3:1: Den_SID: "x" is no number
            Den_SID\n32768\n                        | Dens       | 2:1: Den_SID: 32768 is out of range
            Scout_SID,Birth_Date\n1,2/30/2016\n     | Scouts     | 2:3: Birth_Date: "2/30/2016" is no date
            Scout_SID,Boys_Life\r\n1,perhaps\r\n    | Scouts     | 2:3: Boys_Life: "perhaps" is neither True nor False
            MI,Scout_SID\nÄ,1\nÄÄ,2\n               | Scouts     | 3:1: MI: 2 characters, at most 1 fit
            City,Scout_SID\n"Zü",x\n                | Scouts     | 2:6: Scout_SID
            Note,Scout_SID\n"a\nb",1\nc,1\n         | Scouts     | 4:3: Scout_SID: the key "1" is there already
            Note,Scout_SID\n"a\nbcd",x\n            | Scouts     | 3:6: Scout_SID: "x" is no number
            Den_Title\nHelfer Öl\nhelfer öl\n       | Den_Titles | 3:1: Den_Title: the key
            Scout_SID,City\n,Bern\n                 | Scouts     | 2:1: Scout_SID: the key can't be left out
            City\nBern\n                            | Scouts     | 2:1: Scout_SID: the key can't be left out
            Sort_Order,Den_Title\n1,""\n            | Den_Titles | 2:3: Den_Title: the text can't be empty
            Den_SID,Active\n1,Y\n2\n                | Dens       | 3:1: 1 values in the row, the header names 2
            Den_SID,Active\n1,Y,Z\n                 | Dens       | 2:5: 3 values in the row, the header names 2
            Den_SID,Active\n1,"Y\n2,Y\n             | Dens       | 2:3: a quote that is never closed
            Den_SID,Active\n1,"Y"es\n               | Dens       | 2:6: text after a closing quote
            Den_SID,Den_Name\n1,a"b\n               | Dens       | 2:4: a quote inside
            Den_SID,Den_Name\r1,a\r                 | Dens       | 1:17: a carriage return
            Den_SID,Den_Name\n1,M\xFCller\n         | Dens       | 2:3: text that isn't UTF-8
            Den_SID,Den_Name\n1,a\0b\n              | Dens       | 2:3: a zero byte)");
    }
    void badInput()
    {
        QFETCH(QString, file);
        const QByteArray escaped = test::cell("content").toUtf8().replace("\\r", "\r").replace("\\xFC", "\xFC");
        orlo::test::write(csv(file + ".csv"), QByteArray(escaped).replace("\\0", QByteArray(1, '\0')));
        orlo::test::write(csv("Adults.csv"), "Adult_SID\n1\n");
        const Run run = orloDb({"new", out(), "--from", csv()});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.errors.contains(file + ".csv:") && run.errors.contains(test::cell("error")),
                 qPrintable(run.errors));
        QCOMPARE(made(), QStringList());
    }

    void cellsBecomeValues()
    {
        orlo::test::write(
            csv("scouts.CSV"),
            "\xEF\xBB\xBFScout_SID,first_name,Note,Birth_Date,Boys_Life,City,School,BSA_Number,Years_In_Scouts\r\n"
            "\r\n"
            "7,\"Zo\xC3\xAB \"\"Z\"\"\",\"a,\r\nb\",6/7/2016,yes,,\"\",\"\",\"\"\r\n"
            "8,O'Brien,,2016-06-07,0,\" \",x,12 ,\"3\"");
        QCOMPARE(orloDb({"new", out(), "--from", csv()}).errors, QString());
        QCOMPARE(made(), QStringList("new.mdb"));
        // A field that no file names takes its default.
        QCOMPARE(rows("Select First_Name, Note, Birth_Date, Boys_Life, City, School, BSA_Number, Years_In_Scouts, "
                      "Parent1_Use_Scout_Add "
                      "From Scouts Order By Scout_SID"),
                 "Zoë \"Z\"|a,\r\nb|2016-06-07|1|Null|||Null|1; O'Brien|Null|2016-06-07|0| |x|12 |3.0|1");
    }

    void version10()
    {
        orlo::test::write(csv("Purchase_List.csv"), "Insignia_SID,Award_Name,Award_Type\n1,a,b\n");
        orlo::test::write(csv("Assigned_Awards_Scouts.csv"), "Scout_SID,Insignia_SID\n1,2\n1,2\n");
        QCOMPARE(orloDb({"new", out(), "--from", csv(), "--version", "1.0"}).errors, QString());
        QCOMPARE(rows("Select * From Assigned_Awards_Scouts"), "1|2|Null|Null|Null; 1|2|Null|Null|Null");
        Database database = DBEngine::openDatabase(out());
        QCOMPARE(database.queryNames(), QStringList());
        QCOMPARE(database.tableNames().size(), 8);
    }

    // Every link of the sample leads somewhere, and every award's year and month are those of its date.
    void samplePack()
    {
        QCOMPARE(orloDb({"new", out(), "--from", ORLO_SOURCE_DIR "/samples/pack"}).errors, QString());
        QCOMPARE(rows("Select Count(*) From Dens"), "7");
        QCOMPARE(rows("Select Distinct Insignia_Type From Insignias").count(u';'), 8);
        for (const char* wrong :
             {"Assigned_Awards_Scouts Where Scout_SID Not In (Select Scout_SID From Scouts)",
              "Assigned_Awards_Adults Where Adult_SID Not In (Select Adult_SID From Adults)",
              "UnionAwardsScoutAdults Where Award_Name Is Null",
              "Scouts Where Assigned_Den_SID Not In (Select Den_SID From Dens)",
              "Leader_Assignments Where Den_Number Is Null",
              "Leader_Den_Assignments Where Den_Title Not In (Select Den_Title From Den_Titles)",
              "Leader_Pack_Assn Where Position_Title Not In (Select Pack_Titles From Pack_Positions)",
              "Assigned_Awards_Scouts Where Date_Assigned Not Like Format('%d-%02d-%%', Year, Month)",
              "Assigned_Awards_Adults Where Date_Assigned Not Like Format('%d-%02d-%%', Year, Month)"})
            QCOMPARE(rows(QString("Select * From ") + wrong), QString());
    }

    // A table or field that others have added is exported, too, but doesn't keep the rest from being read again.
    void exportIsReadAgain()
    {
        orlo::test::write(csv("Scouts.csv"), "Scout_SID,Note,Birth_Date,Boys_Life,City,School\n"
                                             "7,\"a \"\"b\"\",\r\nc\",1001-01-01,True,,\"\"\n");
        orlo::test::write(csv("Dens.csv"), "Den_SID,Den_Number\n-1,0.1\n2,1e-05\n");
        QCOMPARE(orloDb({"new", out(), "--from", csv()}).errors, QString());
        sqlite(out(), "Alter Table Dens Add Own Text; Create Table Mine (a); Insert Into Mine Values ('x')");
        const QString first = m_folder->filePath("first");
        QCOMPARE(orloDb({"export", out(), first}).errors, QString());
        QCOMPARE(contents(first + "/other/Mine.csv"), "a\nx\n");
        QVERIFY(contents(first + "/other/Dens.csv")
                    .startsWith("Den_SID,Den_Number,Den_Name,Den_Type,Year_Started,"
                                "Active,Own\n-1,0.1,"));
        const QString again = m_folder->filePath("again.mdb");
        const QString second = m_folder->filePath("second");
        QCOMPARE(orloDb({"new", again, "--from", first}).errors, QString());
        QCOMPARE(orloDb({"export", again, second}).errors, QString());
        QCOMPARE(QDir(second).entryList(QDir::Files).size(), 13);
        for (const QString& file : QDir(second).entryList(QDir::Files))
            QCOMPARE(contents(second + u'/' + file), contents(first + u'/' + file));
        QCOMPARE(sqlite(again, "Select Note, Birth_Date, Boys_Life, City, School From Scouts"),
                 QStringList{"a \"b\",\r\nc|1001-01-01|1|Null|"});
        QVERIFY(orloDb({"export", again, second}).errors.contains("isn't empty"));
        orlo::test::write(again, "mine");
        const Run refused = orloDb({"new", again});
        QVERIFY(refused.status == 1 && refused.errors.contains("is there already") && contents(again) == "mine");
    }

    void damagedFileIsRepaired()
    {
        QCOMPARE(orloDb({"new", out(), "--from", ORLO_SOURCE_DIR "/samples/pack"}).status, 0);
        const Run sound = orloDb({"check", out()});
        QVERIFY2(sound.status == 0 && sound.said.contains("sound\n"), qPrintable(sound.said + sound.errors));
        orlo::test::write(out(), contents(out()).replace(100, 3996, QByteArray(3996, '\0')));
        QCOMPARE(orloDb({"check", out()}).status, 1);
        const Run repaired = orloDb({"repair", out()});
        QVERIFY2(repaired.status == 0 && repaired.said.contains("new (damaged).mdb"), qPrintable(repaired.errors));
        const qsizetype rows = sound.said.indexOf(u'\n');
        QCOMPARE(orloDb({"check", out()}).said.sliced(rows), sound.said.sliced(rows));
        QCOMPARE(repaired.said.sliced(repaired.said.indexOf(u'\n')), sound.said.sliced(rows));
        for (const QStringList& wrong :
             {QStringList{}, {"check"}, {"check", out(), "--version", "1.0"}, {"mend", out()}})
            QCOMPARE(orloDb(wrong).status, 2);
    }

private:
    [[nodiscard]] QString csv(const QString& file = QString()) const { return m_folder->filePath("csv/" + file); }
    [[nodiscard]] QString out() const { return m_folder->filePath("out/new.mdb"); }
    [[nodiscard]] QStringList made() const
    {
        return QDir(m_folder->filePath("out")).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
    // The rows of a query on the new file.
    [[nodiscard]] QString rows(const QString& select) const { return sqlite(out(), select.toUtf8()).join("; "); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

ORLO_TEST(tst_orlodb)
#include "tst_orlodb.moc"
