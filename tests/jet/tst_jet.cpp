#include "CsvReader.h"
#include "store/jet/OpenFile.h"
#include "store/schema/Schema.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/JetPages.h"
#include "support/Main.h"
#include "support/Repeats.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace orlo;
using store::openFile;
using test::contents;
using test::JetPages;
using test::sqlite;
using namespace Qt::StringLiterals;

namespace
{

const QString Data = QStringLiteral(ORLO_SOURCE_DIR "/tests/jet/data/");

// A table's fields and rows as sqlite() gives them, out of a CSV file.
QStringList rowsOf(const QString& csv, QStringList& fields)
{
    CsvReader reader(contents(csv));
    std::vector<CsvCell> row;
    QStringList lines;
    while (reader.readRow(row)) {
        QStringList cells;
        for (const CsvCell& cell : row)
            cells += cell.text.isEmpty() && !cell.quoted ? u"Null"_s : cell.text;
        lines += cells.join(u'|');
    }
    fields = lines.takeFirst().split(u'|');
    return lines;
}

int allRows(const QString& path)
{
    store::Database database = openFile(path);
    int rows = 0;
    for (const QString& name : database.tableNames())
        rows += database.openRecordset(name).recordCount();
    return rows;
}

const int Tries = test::repeats("ORLO_JET_FILES", 40); // files, or moments

QByteArray damaged(QByteArray bytes, const QString& how, QRandomGenerator& random)
{
    const int size = static_cast<int>(bytes.size());
    if (how == u"truncated")
        return bytes.first(random.bounded(19, size));
    if (how == u"random")
        for (int at = random.bounded(19, 4096); at < size; ++at)
            bytes[at] = static_cast<char>(random.generate());
    else
        for (int flips = 1 << random.bounded(8); flips > 0; --flips)
            bytes[random.bounded(19, size)] ^= static_cast<char>(1 << random.bounded(8));
    return bytes;
}

} // namespace

class tst_jet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_told.clear();
        store::takeoverWatch().report = [this](const QString& report) { m_told += report; };
    }

    void everyValue_data() { test::table({"sample"}, "small-1.0 \n small-1.1 \n jet3"); }
    void everyValue()
    {
        QFETCH(QString, sample);
        const int count = sample == u"small-1.1" ? 13 : 8;
        const QByteArray former = contents(Data + sample + u".mdb"_s);
        write(former);
        for (int i = 0; i < 2; ++i) // the second time there is nothing to take over
            QCOMPARE(openFile(path()).tableNames().size(), count);
        QCOMPARE(files(), (QStringList{u"Quorrel11 (former format).mdb"_s, u"Quorrel11.mdb"_s}));
        QCOMPARE(contents(kept()), former);
        QCOMPARE(m_told, QStringList());
        const QDir folder(Data + sample);
        for (const QString& name : folder.entryList({u"*.csv"_s})) {
            QStringList fields;
            const QStringList rows = rowsOf(folder.filePath(name), fields);
            for (QString& field : fields)
                field = u"CASE typeof(\"%1\") WHEN 'real' THEN printf('%.15g', \"%1\") ELSE \"%1\" END"_s.arg(field);
            const QString sql = u"SELECT %1 FROM %2 ORDER BY rowid"_s.arg(fields.join(u','), name.chopped(4));
            QCOMPARE(sqlite(path(), sql.toUtf8().constData()), rows);
        }

        // Keys, checks, indexes and stored queries are those of a file that was made new.
        const bool current = count == 13;
        const QString fresh = m_folder->filePath(u"fresh"_s);
        store::Database made = store::DBEngine::createDatabase(fresh);
        current ? store::createSchema(made) : store::createSchema10(made);
        made.close();
        QCOMPARE(test::definitions(path()), test::definitions(fresh));
        QCOMPARE(answer("PRAGMA integrity_check"), "ok"_ba);
        if (current)
            QCOMPARE(answer("INSERT INTO Assigned_Awards_Scouts(Year) VALUES(1);"
                            "SELECT max(Assigned_SID) = 121 AND count(*) = 121 FROM Assigned_Awards_Scouts"),
                     "1"_ba);
    }

    // What a file has that ours has no place for, and rows that a simple walk over the pages gets wrong.
    void oddities()
    {
        JetPages pages(Data + u"small-1.1.mdb"_s);
        using Rows = std::vector<JetPages::Row>;
        // 1 becomes 2.5.
        pages.change({u"School"_s, u"Tigar"_s}, [](Rows& scouts) { scouts[0].bytes.replace("\xF0\x3F", "\4\x40"); });
        pages.exchangeNames(pages.table({u"School"_s, u"Tigar"_s}), u"Phone"_s, u"Tigar"_s);
        pages.exchangeNames(pages.table({u"School"_s, u"Tigar"_s}), u"Years_In_Scouts"_s, u"Grade_In_School"_s);
        pages.replace(u"Other_Purchase_List"_s, u"x\"; DROP TABLE [y]'"_s);
        pages.replace(u"Parent_Name2"_s, u"parent_name1"_s);
        pages.change({u"ParentId"_s, u"DateUpdate"_s}, [](Rows& catalogue) {
            for (auto& [bytes, moved, removed] : catalogue) {
                moved = true;
                removed = bytes.contains(JetPages::wide(u"PackInfo"_s));
                if (bytes.contains(JetPages::wide(u"Den_Titles"_s)))
                    bytes.replace(10, 2, "\4\x80"); // a report
            }
        });
        // The numbers become ones of 32 bits, the first of them 0.1 for 2.
        pages.setType(pages.table({u"Den_Number"_s, u"Den_Name"_s}), 1, 6, 4);
        pages.change({u"Den_Number"_s, u"Den_Name"_s},
                     [](Rows& dens) { dens[0].bytes.replace("\0\0\0\0\0\0\0\x40"_ba, "\xCD\xCC\xCC\x3D\0\0\0\0"_ba); });
        // The counter is Null.
        pages.change({u"Position_Title"_s, u"Leader_SID"_s}, [](Rows& leaders) { leaders[0].bytes.back() = 7; });
        pages.change({u"Adult_SID"_s, u"WorkPhone"_s}, [](Rows& adults) {
            adults[1].bytes[2] = 1; // the key of the first one
            adults[2].bytes.replace(JetPages::wide(u"a3@example.org"_s),
                                    "\xFF\xFEhalf\0\x3D\xD8\0 a letter........."_ba);
            adults[3].bytes.replace(JetPages::wide(u"a4@example.org"_s),
                                    "\xFF\xFEtwo\0\x3D\xD8\1\xDE\0 halves.........."_ba);
        });
        pages.change({u"Adult_SID"_s, u"Date_Assigned"_s}, [](Rows& awards) {
            awards[3].moved = awards[5].moved = awards[5].removed = awards[7].removed = true;
            constexpr double BeforeDayZero = -1.25;
            memcpy(awards[9].bytes.data() + 6, &BeforeDayZero, sizeof BeforeDayZero);
        });
        write(pages.bytes());
        (void)openFile(path());
        for (const auto& [sql, rows] : std::initializer_list<std::pair<const char*, const char*>>{
                 {"SELECT group_concat(Insignia_SID) FROM (SELECT * FROM Assigned_Awards_Adults LIMIT 7)",
                  "1,2,3,4,5,7,9"},
                 {"SELECT min(Date_Assigned) FROM Assigned_Awards_Adults", "1899-12-29 06:00:00"},
                 {"SELECT Den_Number FROM Dens WHERE Den_SID = 1", "0.1"},
                 {"SELECT Item_Name, Quantity FROM \"x\"\"; DROP TABLE [y]'\"", "Slides|12"},
                 {"SELECT Email FROM Adults WHERE Adult_SID = 4", "two😁 halves.........."},
                 {"SELECT Adult_SID, Email, Kept_Because FROM Adults_Kept",
                  "1|a2@example.org|the key is there already;3|half\\ud83d a letter.........|Email: half a letter"},
                 {"SELECT Leader_Pack_Assn, Kept_Because FROM Leader_Pack_Assn_Kept", "Null|the key is missing"},
                 {"SELECT Tigar, Birth_Date, Kept_Because FROM Scouts_Kept WHERE Scout_SID = '1'",
                  "555-1001|1994-02-02|Tigar: the text is too long; Grade_In_School: the number has a fraction"},
                 {"SELECT Tigar, Phone FROM Scouts WHERE Scout_SID = 1", "5|N"},
                 {"SELECT Parent_Name1, Parent_Name2, Old_parent_name1 FROM Scouts WHERE Scout_SID = 1",
                  "Pa 1|Null|Ma 1"}})
            QCOMPARE(answer(sql), QByteArray(rows));
        QCOMPARE(m_told.size(), 1);
        for (const char* words : {"the old file didn't have: PackInfo, Den_Titles, Other_Purchase_List",
                                  "Left in the old file: report Den_Titles.", "Adults: 2 rows are",
                                  "Scouts: 39 rows are", "Scouts didn't have: Parent_Name2, "})
            QVERIFY2(m_told[0].contains(QLatin1String(words)), qPrintable(m_told[0]));
    }

    // Each of them is refused as it was, or opens with nothing lost.
    void damagedFiles_data() { test::table({"damage"}, "truncated \n flipped \n random"); }
    void damagedFiles()
    {
        QFETCH(QString, damage);
        const QByteArray sound = contents(Data + u"small-1.1.mdb"_s);
        QRandomGenerator random(static_cast<quint32>(damage.size()));
        write(sound);
        const int rows = allRows(path());
        int refused = 0;
        for (int i = 0; i < Tries; ++i) {
            const QByteArray bytes = damaged(sound, damage, random);
            init();
            write(bytes);
            const QDeadlineTimer limit(60'000);
            const int failure = test::failureNumber([this] { return openFile(path()); });
            const QByteArray name = u"%1 %2: %3"_s.arg(damage).arg(i).arg(failure).toUtf8();
            QVERIFY2(!limit.hasExpired(), name.constData());
            if (failure == 0) {
                QCOMPARE(contents(kept()), bytes);
                QCOMPARE(answer("PRAGMA integrity_check"), "ok"_ba);
                QVERIFY2(allRows(path()) >= rows || m_told.join(u' ').contains(u"Tables that"), name.constData());
                QCOMPARE(files().size(), 2);
                continue;
            }
            ++refused;
            QVERIFY2(failure == platform::DatabaseDamaged, name.constData());
            QCOMPARE(contents(path()), bytes);
            QCOMPARE(files(), QStringList(u"Quorrel11.mdb"_s));
        }
        QVERIFY(refused > 0);
    }

    // Ended at any moment, the file is the old one or the new one, and the next opening finds everything.
    void killedWhileOpening()
    {
        const QByteArray former = contents(Data + u"small-1.1.mdb"_s);
        write(former);
        QElapsedTimer whole;
        whole.start();
        QCOMPARE(QProcess::execute(QCoreApplication::applicationFilePath(), test::childArguments({path()})), 0);
        const qint64 longest = whole.elapsed();
        const int rows = allRows(path());
        for (int i = 0; i < Tries; ++i) {
            init();
            write(former);
            QProcess opening;
            opening.start(QCoreApplication::applicationFilePath(), test::childArguments({path()}));
            QVERIFY(opening.waitForStarted());
            QTest::qSleep(static_cast<int>(longest * i / Tries));
            opening.kill();
            QVERIFY(opening.waitForFinished());
            QVERIFY(contents(path()) == former || contents(kept()) == former);
            QCOMPARE(allRows(path()), rows);
            QCOMPARE(files().size(), 2);
            QCOMPARE(contents(kept()), former);
        }
    }

    // A program without its reader beside it doesn't know the format, nor with one that lacks its library.
    void withoutTheReader()
    {
        write(contents(Data + u"small-1.1.mdb"_s));
        const QString alone = m_folder->filePath(u"alone"_s);
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), alone));
        QCOMPARE(QProcess::execute(alone, test::childArguments({path()})), 3343 % 256);
        const QString reader = m_folder->filePath(u"orlo-jet"_s);
        test::write(reader, "#!/bin/sh\nexit 127\n");
        QVERIFY(QFile::setPermissions(reader, QFile::ReadOwner | QFile::ExeOwner));
        QCOMPARE(QProcess::execute(alone, test::childArguments({path()})), 3343 % 256);
    }

private:
    [[nodiscard]] QString path() const { return m_folder->filePath(u"Quorrel11.mdb"_s); }
    [[nodiscard]] QString kept() const { return m_folder->filePath(u"Quorrel11 (former format).mdb"_s); }
    [[nodiscard]] QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden); }
    void write(const QByteArray& bytes) const { test::write(path(), bytes); }
    [[nodiscard]] QByteArray answer(const char* sql) const { return sqlite(path(), sql).join(u';').toUtf8(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QStringList m_told;
};

// Opens a file in a process of its own; the failure as exit status.
static int openAlone(const QStringList& arguments)
{
    return test::failureNumber([&] { return openFile(arguments[0]); }) % 256;
}

ORLO_TEST(tst_jet, openAlone)

#include "tst_jet.moc"
