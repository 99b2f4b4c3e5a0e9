#include "store/Schema.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

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
    process.start(QStringLiteral(ORLO_BUILD_DIR "/tools/newdb"), arguments);
    const bool finished = process.waitForFinished(60000);
    return {finished && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardError())};
}

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

int count(Database& database, const QString& sql)
{
    return database.openRecordset(sql).recordCount();
}

} // namespace

class tst_newdb : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("csv")));
        QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("out")));
    }

    void badInput_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("error");
        const auto row = [](const char* name, const char* file, const QByteArray& content, const char* error) {
            QTest::newRow(name) << QString::fromUtf8(file) << content << QString::fromUtf8(error);
        };
        row("no such table", "Scout.csv", "Scout_SID\n1\n", "Scout.csv: this version has no table");
        row("no header", "Dens.csv", "", "Dens.csv:1:1: the file has no header line");
        row("unknown field", "Dens.csv", "Den_SID,Den_Nr\n", "Dens.csv:1:9: Dens has no field \"Den_Nr\"");
        row("field named twice", "Dens.csv", "Den_SID,den_sid\n", "Dens.csv:1:9: Den_SID stands twice");
        row("text for a number", "Dens.csv", "Den_SID,Den_Name\n1,a\nx,b\n",
            "Dens.csv:3:1: Den_SID: \"x\" is no number");
        row("out of 16 bits", "Dens.csv", "Den_SID\n32768\n", "Dens.csv:2:1: Den_SID: 32768 is out of range");
        row("no such day", "Scouts.csv", "Scout_SID,Birth_Date\n1,2/30/2016\n",
            "Scouts.csv:2:3: Birth_Date: \"2/30/2016\" is no date");
        row("no yes or no", "Scouts.csv", "Scout_SID,Boys_Life\r\n1,perhaps\r\n",
            "Scouts.csv:2:3: Boys_Life: \"perhaps\" is neither True nor False");
        row("too long, characters counted", "Scouts.csv", "MI,Scout_SID\n\xC3\x84,1\n\xC3\x84\xC3\x84,2\n",
            "Scouts.csv:3:1: MI: 2 characters, at most 1 fit");
        row("column behind letters of two bytes", "Scouts.csv", "City,Scout_SID\n\"Z\xC3\xBC\",x\n",
            "Scouts.csv:2:6: Scout_SID");
        row("line behind a text of two lines", "Scouts.csv", "Note,Scout_SID\n\"a\nb\",1\nc,1\n",
            "Scouts.csv:4:3: Scout_SID: the key \"1\" is there already");
        row("text key twice, in other case", "Den_Titles.csv", "Den_Title\nHelfer \xC3\x96l\nhelfer \xC3\xB6l\n",
            "Den_Titles.csv:3:1: Den_Title: the key");
        row("no key", "Scouts.csv", "Scout_SID,City\n,Bern\n", "Scouts.csv:2:1: Scout_SID: the key can't be left out");
        row("key not in the header", "Scouts.csv", "City\nBern\n",
            "Scouts.csv:2:1: Scout_SID: the key can't be left out");
        row("empty title", "Den_Titles.csv", "Sort_Order,Den_Title\n1,\"\"\n",
            "Den_Titles.csv:2:3: Den_Title: the text can't be empty");
        row("too few", "Dens.csv", "Den_SID,Active\n1,Y\n2\n", "Dens.csv:3:1: 1 values in the row, the header names 2");
        row("too many", "Dens.csv", "Den_SID,Active\n1,Y,Z\n", "Dens.csv:2:5: 3 values in the row, the header names 2");
        row("unclosed quote", "Dens.csv", "Den_SID,Active\n1,\"Y\n2,Y\n", "Dens.csv:2:3: a quote that is never closed");
        row("behind a quote", "Dens.csv", "Den_SID,Active\n1,\"Y\"es\n", "Dens.csv:2:6: text behind a closing quote");
        row("quote in the middle", "Dens.csv", "Den_SID,Den_Name\n1,a\"b\n", "Dens.csv:2:4: a quote inside");
        row("lone carriage return", "Dens.csv", "Den_SID,Den_Name\r1,a\r", "Dens.csv:1:17: a carriage return");
        row("not UTF-8", "Dens.csv", "Den_SID,Den_Name\n1,M\xFCller\n", "Dens.csv:2:3: text that isn't UTF-8");
        row("zero byte", "Dens.csv", QByteArray("Den_SID,Den_Name\n1,a\0b\n", 23), "Dens.csv:2:3: a zero byte");
    }

    void badInput()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(QString, error);
        write(csv(file), content);
        write(csv(QStringLiteral("Adults.csv")), "Adult_SID\n1\n");
        const Run run = newdb({out(), QStringLiteral("--from"), csv()});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.errors.contains(error), qPrintable(run.errors));
        QCOMPARE(made(), QStringList());
    }

    void cellsBecomeValues()
    {
        write(csv(QStringLiteral("scouts.CSV")),
              "\xEF\xBB\xBFScout_SID,first_name,Note,Birth_Date,Boys_Life,City,School,BSA_Number\r\n"
              "\r\n"
              "7,\"Zo\xC3\xAB \"\"Z\"\"\",\"a,\r\nb\",6/7/2016,yes,,\"\",\"\"\r\n"
              "8,O'Brien,,2016-06-07,0,\" \",x,12 ");
        QCOMPARE(newdb({out(), QStringLiteral("--from"), csv()}).errors, QString());
        QCOMPARE(made(), QStringList(QStringLiteral("new.mdb")));
        Database database = DBEngine::openDatabase(out());
        Recordset rows = database.openRecordset(QStringLiteral("Select * From Scouts Order By Scout_SID"));
        QCOMPARE(rows.recordCount(), 2);
        QCOMPARE(rows[u"First_Name"].toText(), QStringLiteral("Zo\u00EB \"Z\""));
        QCOMPARE(rows[u"Note"].toText(), QStringLiteral("a,\r\nb"));
        QCOMPARE(rows[u"Birth_Date"].toDate().date, QDate(2016, 6, 7));
        QVERIFY(rows[u"Boys_Life"].toBool());
        QVERIFY(rows[u"City"].isNull());
        QCOMPARE(rows[u"School"], Value(u""));
        QVERIFY2(rows[u"Parent1_Use_Scout_Add"].toBool(), "a field that no file names takes its default");
        rows.moveNext();
        QCOMPARE(rows[u"Birth_Date"].toDate().date, QDate(2016, 6, 7));
        QVERIFY(!rows[u"Boys_Life"].toBool());
        QCOMPARE(rows[u"City"].toText(), QStringLiteral(" "));
        QCOMPARE(rows[u"BSA_Number"].toText(), QStringLiteral("12 "));
    }

    void titles_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("titles");
        QTest::newRow("defaults") << QByteArray()
                                  << QStringList{
                                         QStringLiteral("Asst. Den Leader"), QStringLiteral("Co-Den Leader"),
                                         QStringLiteral("Den Chief"),        QStringLiteral("Den Leader"),
                                         QStringLiteral("Tiger Cub Coach"),  QStringLiteral("Tiger Cub Parent")};
        QTest::newRow("own") << QByteArray("Den_Title\nHost\n") << QStringList(QStringLiteral("Host"));
        QTest::newRow("none") << QByteArray("Den_Title\n") << QStringList();
    }

    void titles()
    {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, titles);
        if (!file.isEmpty())
            write(csv(QStringLiteral("Den_Titles.csv")), file);
        QCOMPARE(newdb({out(), QStringLiteral("--from"), csv()}).errors, QString());
        Database database = DBEngine::openDatabase(out());
        QStringList found;
        for (Recordset rows = database.openRecordset(QStringLiteral("Den_Titles")); !rows.eof(); rows.moveNext())
            found.append(rows[u"Den_Title"].toText());
        QCOMPARE(found, titles);
        QCOMPARE(count(database, QStringLiteral("Pack_Positions")), 10);
    }

    void leavesExistingFileAlone()
    {
        write(out(), "mine");
        const Run run = newdb({out()});
        QCOMPARE(run.status, 1);
        QVERIFY(run.errors.contains(QLatin1String("is there already")));
        QFile file(out());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("mine"));
        QCOMPARE(made().size(), 1);
    }

    void badUsage_data()
    {
        QTest::addColumn<QString>("arguments"); // "out" stands for the file to make
        QTest::addColumn<int>("status");
        QTest::newRow("no file") << QString() << 2;
        QTest::newRow("two files") << QStringLiteral("out out") << 2;
        QTest::newRow("version") << QStringLiteral("out --version 2") << 2;
        QTest::newRow("no folder") << QStringLiteral("out --from /nowhere/at/all") << 1;
        QTest::newRow("no folder for the file") << QStringLiteral("/nowhere/at/all/x.mdb") << 1;
    }

    void badUsage()
    {
        QFETCH(QString, arguments);
        QFETCH(int, status);
        QStringList words = arguments.split(u' ', Qt::SkipEmptyParts);
        words.replaceInStrings(QRegularExpression(QStringLiteral("^out$")), out());
        const Run run = newdb(words);
        QCOMPARE(run.status, status);
        QVERIFY(!run.errors.isEmpty());
        QCOMPARE(made(), QStringList());
    }

    void version10()
    {
        write(csv(QStringLiteral("Purchase_List.csv")), "Insignia_SID,Award_Name,Award_Type\n1,a,b\n");
        write(csv(QStringLiteral("Assigned_Awards_Scouts.csv")), "Scout_SID,Insignia_SID\n1,2\n1,2\n");
        const QStringList arguments{out(), QStringLiteral("--from"), csv(), QStringLiteral("--version"),
                                    QStringLiteral("1.0")};
        QCOMPARE(newdb(arguments).errors, QString());
        Database database = DBEngine::openDatabase(out());
        QCOMPARE(count(database, QStringLiteral("Assigned_Awards_Scouts")), 2);
        QCOMPARE(database.queryNames(), QStringList());
        QCOMPARE(database.tableNames().size(), 8);
    }

    void samplePack()
    {
        QCOMPARE(newdb({out(), QStringLiteral("--from"), QStringLiteral(ORLO_SOURCE_DIR "/samples/pack")}).errors,
                 QString());
        QCOMPARE(made(), QStringList(QStringLiteral("new.mdb")));
        Database database = DBEngine::openDatabase(out());
        const int scouts = count(database, QStringLiteral("Scouts"));
        QVERIFY(scouts >= 60 && scouts <= 80);
        const int adults = count(database, QStringLiteral("Adults"));
        QVERIFY(adults >= 20 && adults <= 30);
        QCOMPARE(count(database, QStringLiteral("Dens")), 7);
        QVERIFY(count(database, QStringLiteral("Insignias")) > 100);
        QCOMPARE(count(database, QStringLiteral("Select Distinct Insignia_Type From Insignias")), 9);

        // Every link of the sample leads somewhere, and every award's year and month are those of its date.
        for (const char16_t* dangling :
             {u"Select * From Assigned_Awards_Scouts Where Scout_SID Not In (Select Scout_SID From Scouts)",
              u"Select * From Assigned_Awards_Adults Where Adult_SID Not In (Select Adult_SID From Adults)",
              u"Select * From UnionAwardsScoutAdults Where Award_Name Is Null",
              u"Select * From Scouts Where Assigned_Den_SID Not In (Select Den_SID From Dens)",
              u"Select * From Leader_Assignments Where Den_Number Is Null",
              u"Select * From Leader_Den_Assignments Where Den_Title Not In (Select Den_Title From Den_Titles)",
              u"Select * From Leader_Pack_Assn Where Position_Title Not In (Select Pack_Titles From Pack_Positions)"})
            QVERIFY2(count(database, QString::fromUtf16(dangling)) == 0, qPrintable(QString::fromUtf16(dangling)));
        for (const char16_t* table : {u"Assigned_Awards_Scouts", u"Assigned_Awards_Adults"})
            for (Recordset rows = database.openRecordset(QString::fromUtf16(table)); !rows.eof(); rows.moveNext()) {
                const QDate date = rows[u"Date_Assigned"].toDate().date;
                QCOMPARE(date.year(), rows[u"Year"].toInt32());
                QCOMPARE(date.month(), rows[u"Month"].toInt32());
            }
    }

private:
    [[nodiscard]] QString csv(const QString& file = QString()) const
    {
        return m_folder->filePath(QStringLiteral("csv/") + file);
    }
    [[nodiscard]] QString out() const { return m_folder->filePath(QStringLiteral("out/new.mdb")); }
    [[nodiscard]] QStringList made() const
    {
        return QDir(m_folder->filePath(QStringLiteral("out"))).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(tst_newdb)
#include "tst_newdb.moc"
