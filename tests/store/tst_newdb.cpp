#include "store/schema/Schema.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Table.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

using namespace orlo;
using namespace orlo::store;

namespace
{

struct Run {
    int status;
    QString errors;
};

Run newdb(const QStringList& arguments)
{
    QProcess process;
    process.start(ORLO_BUILD_DIR "/tools/newdb", arguments);
    const bool finished = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
    return {finished ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

class tst_newdb : public QObject
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
            Den_Title\nHelfer Öl\nhelfer öl\n       | Den_Titles | 3:1: Den_Title: the key
            Scout_SID,City\n,Bern\n                 | Scouts     | 2:1: Scout_SID: the key can't be left out
            City\nBern\n                            | Scouts     | 2:1: Scout_SID: the key can't be left out
            Sort_Order,Den_Title\n1,""\n            | Den_Titles | 2:3: Den_Title: the text can't be empty
            Den_SID,Active\n1,Y\n2\n                | Dens       | 3:1: 1 values in the row, the header names 2
            Den_SID,Active\n1,Y,Z\n                 | Dens       | 2:5: 3 values in the row, the header names 2
            Den_SID,Active\n1,"Y\n2,Y\n             | Dens       | 2:3: a quote that is never closed
            Den_SID,Active\n1,"Y"es\n               | Dens       | 2:6: text behind a closing quote
            Den_SID,Den_Name\n1,a"b\n               | Dens       | 2:4: a quote inside
            Den_SID,Den_Name\r1,a\r                 | Dens       | 1:17: a carriage return
            Den_SID,Den_Name\n1,M\xFCller\n         | Dens       | 2:3: text that isn't UTF-8
            Den_SID,Den_Name\n1,a\0b\n              | Dens       | 2:3: a zero byte
        )");
    }
    void badInput()
    {
        QFETCH(QString, content);
        QFETCH(QString, file);
        QFETCH(QString, error);
        const QByteArray escaped = content.toUtf8().replace("\\r", "\r").replace("\\xFC", "\xFC");
        orlo::test::write(csv(file + ".csv"), QByteArray(escaped).replace("\\0", QByteArray(1, '\0')));
        orlo::test::write(csv("Adults.csv"), "Adult_SID\n1\n");
        const Run run = newdb({out(), "--from", csv()});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.errors.contains(file + ".csv:") && run.errors.contains(error), qPrintable(run.errors));
        QCOMPARE(made(), QStringList());
    }

    void cellsBecomeValues()
    {
        orlo::test::write(csv("scouts.CSV"),
                          "\xEF\xBB\xBFScout_SID,first_name,Note,Birth_Date,Boys_Life,City,School,BSA_Number\r\n"
                          "\r\n"
                          "7,\"Zo\xC3\xAB \"\"Z\"\"\",\"a,\r\nb\",6/7/2016,yes,,\"\",\"\"\r\n"
                          "8,O'Brien,,2016-06-07,0,\" \",x,12 ");
        QCOMPARE(newdb({out(), "--from", csv()}).errors, QString());
        QCOMPARE(made(), QStringList("new.mdb"));
        // A field that no file names takes its default.
        QCOMPARE(rows("Select First_Name, Note, Birth_Date, Boys_Life, City, School, BSA_Number, Parent1_Use_Scout_Add "
                      "From Scouts Order By Scout_SID"),
                 "Zoë \"Z\"/a,\r\nb/6/7/2016/True/Null///True; O'Brien/Null/6/7/2016/False/ /x/12 /True");
    }

    void leavesExistingFileAlone()
    {
        orlo::test::write(out(), "mine");
        const Run run = newdb({out()});
        QVERIFY(run.status == 1 && run.errors.contains("is there already"));
        QFile file(out());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "mine");
        QCOMPARE(made().size(), 1);
    }

    void version10()
    {
        orlo::test::write(csv("Purchase_List.csv"), "Insignia_SID,Award_Name,Award_Type\n1,a,b\n");
        orlo::test::write(csv("Assigned_Awards_Scouts.csv"), "Scout_SID,Insignia_SID\n1,2\n1,2\n");
        QCOMPARE(newdb({out(), "--from", csv(), "--version", "1.0"}).errors, QString());
        QCOMPARE(rows("Assigned_Awards_Scouts").count(u';'), 1);
        Database database = DBEngine::openDatabase(out());
        QCOMPARE(database.queryNames(), QStringList());
        QCOMPARE(database.tableNames().size(), 8);
    }

    // Every link of the sample leads somewhere, and every award's year and month are those of its date.
    void samplePack()
    {
        QCOMPARE(newdb({out(), "--from", ORLO_SOURCE_DIR "/samples/pack"}).errors, QString());
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
              "Assigned_Awards_Scouts Where Year <> Year(Date_Assigned) Or Month <> Month(Date_Assigned)",
              "Assigned_Awards_Adults Where Year <> Year(Date_Assigned) Or Month <> Month(Date_Assigned)"})
            QCOMPARE(rows(QString("Select * From ") + wrong), QString());
    }

private:
    [[nodiscard]] QString csv(const QString& file = QString()) const { return m_folder->filePath("csv/" + file); }
    [[nodiscard]] QString out() const { return m_folder->filePath("out/new.mdb"); }
    [[nodiscard]] QStringList made() const
    {
        return QDir(m_folder->filePath("out")).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
    // The rows of a query on the new file: cells parted by slashes, rows by semicolons.
    [[nodiscard]] QString rows(const QString& select) const
    {
        Database database = DBEngine::openDatabase(out());
        QStringList lines;
        for (Recordset set = database.openRecordset(select); !set.eof(); set.moveNext()) {
            QStringList cells;
            for (int column = 0; column < int(set.fields().size()); ++column)
                cells += set.value(column).isNull() ? "Null" : set.value(column).toText();
            lines += cells.join(u'/');
        }
        return lines.join("; ");
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

ORLO_TEST(tst_newdb)
#include "tst_newdb.moc"
