#include "CsvReader.h"
#include "platform/Application.h"
#include "platform/System.h"
#include "store/engine/TableDef.h"
#include "store/jet/Definitions.h"
#include "store/jet/FormerFile.h"
#include "store/jet/FormerRows.h"
#include "store/jet/HelperStream.h"
#include "store/opening/OpenFile.h"
#include "store/schema/Schema.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/JetChanges.h"
#include "support/JetDamage.h"
#include "support/Main.h"
#include "support/OrloDb.h"
#include "support/Repeats.h"
#include "support/Sqlite.h"
#include "support/System.h"
#include "support/Table.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

using namespace orlo;
using store::openFile;
using test::contents;
using test::JetPages;
using test::sqlite;
using namespace Qt::StringLiterals;

namespace
{

const QString Data = QStringLiteral(ORLO_SOURCE_DIR "/tests/jet/data/");

// A table's fields and rows from a CSV file, in the form that sqlite() gives.
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

const QString Came =
    u"Quorrel11.mdb came from an earlier version of the program and was brought into today's format. The old "
    "file is unchanged beside it as Quorrel11 (former format).mdb.\n\nNot everything had its place:\n\n"_s;
const int Tries = test::repeats("ORLO_JET_FILES", 25); // files, or moments

// How many values of a file that was taken over differ from the CSV files.
int differences(const QString& path, const QString& sample)
{
    int different = 0;
    const QDir folder(Data + sample);
    for (const QString& name : folder.entryList({u"*.csv"_s})) {
        QStringList fields;
        const QStringList expected = rowsOf(folder.filePath(name), fields);
        for (QString& field : fields)
            field = u"CASE typeof(\"%1\") WHEN 'real' THEN printf('%.15g', \"%1\") ELSE \"%1\" END"_s.arg(field);
        const QString sql = u"SELECT %1 FROM %2 ORDER BY rowid"_s.arg(fields.join(u','), name.chopped(4));
        const QStringList found = sqlite(path, sql.toUtf8());
        for (qsizetype row = 0; row < std::max(expected.size(), found.size()); ++row) {
            const QStringList one = expected.value(row).split(u'|');
            const QStringList other = found.value(row).split(u'|');
            const bool comparable = one.size() == other.size(); // a damaged text may have a bar in it
            for (qsizetype i = 0; i < (comparable ? one.size() : 1); ++i)
                different += !comparable || one[i] != other[i];
        }
    }
    return different;
}

} // namespace

class tst_jet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + u"/Größe Ω XXXXXX"_s);
        m_told.clear();
        for (const char* name : {"MDBICONV", "MDB_JET3_CHARSET"}) // another program's settings, of no concern here
            qputenv(name, "CP437");
        store::setTakeoverWatch({{}, [this](const QString& report) { m_told += report; }});
    }

    // said: what orlo-db says of the file before it is taken over, without the machine's own lines
    void everyValue_data() { test::cases({"said"}, u"jet/samples.txt"_s); }
    void everyValue()
    {
        const QString sample = QTest::currentDataTag();
        const int count = sample == u"small-1.1" ? 13 : 8;
        const QByteArray former = contents(Data + sample + u".mdb"_s);
        write(former);
        QVERIFY(QFile::setPermissions(path(), QFile::ReadOwner));                     // as from a read-only disc
        test::write(path() + u"-journal"_s, QByteArray::fromHex("d9d505f920a163d7")); // of no file of this format
        const QString said = test::orloDb({u"check"_s, path()}).said.section(u'/', -1) +
                             test::orloDb({u"about"_s, path()}).said.section(u'\n', 2);
        QCOMPARE(said.trimmed(), test::cell("said").trimmed()); // nothing is changed
        for (int i = 0; i < 2; ++i)                             // the second time there is nothing to take over
            QCOMPARE(openFile(path()).tableNames().size(), count);
        QCOMPARE(files(), (QStringList{u"Quorrel11 (former format).mdb"_s, u"Quorrel11.mdb"_s}));
        QCOMPARE(contents(kept()), former);
        QVERIFY(!QFile::permissions(kept()).testFlag(QFile::WriteOwner) &&
                QFile::permissions(path()).testFlag(QFile::WriteOwner) &&
                (QDir::separator() == u'\\' || !QFile::permissions(path()).testFlag(QFile::ReadOther)));
        QCOMPARE(m_told, QStringList());
        QCOMPARE(differences(path(), sample), 0);
        QCOMPARE(QProcess::execute(ORLO_BUILD_DIR "/tools/orlo-db"_L1, {u"compare"_s, kept(), path()}), 0);

        // Keys, checks, indexes and stored queries are those of a newly made file.
        const bool current = count == 13;
        const QString fresh = m_folder->filePath(u"fresh"_s);
        const QString format = current ? u"1.1"_s : u"1.0"_s;
        QCOMPARE(test::orloDb({u"new"_s, u"--format"_s, format, fresh}).status, 0);
        QCOMPARE(test::definitions(path()), test::definitions(fresh));
        QCOMPARE(answer("PRAGMA integrity_check"), "ok"_ba);
        if (current)
            QCOMPARE(answer("INSERT INTO Assigned_Awards_Scouts(Year) VALUES(1);"
                            "SELECT max(Assigned_SID) = 121 AND count(*) = 121 FROM Assigned_Awards_Scouts"),
                     "1"_ba);
    }

    // Data that has no place in our tables, and rows that a simple walk over the pages gets wrong.
    void oddities_data() { test::cases({"changes", "select", "rows", "told"}, u"jet/oddities.txt"_s); }
    void oddities()
    {
        QStringList changes = test::cell("changes").trimmed().split(u'\n');
        JetPages pages(Data + (changes[0] == u"in jet3" ? changes.takeFirst().sliced(3) : u"small-1.1"_s) + u".mdb"_s);
        test::change(pages, changes);
        write(pages.bytes());
        const auto failure = test::failureOf([this] {
            for (const store::FormerCount& count : store::checkFormer(path()))
                if (count.older > 0 || count.rows != count.stated)
                    m_told += store::words(count).trimmed();
            (void)openFile(path());
        });
        const QStringList rows = sqlite(path(), test::cell("select").toUtf8());
        QTEST((failure ? failure->description() : rows.join(u'\n')) + u'\n', "rows");
        QCOMPARE(m_told.join(u'\n').remove(Came).trimmed(), test::cell("told").trimmed());
    }

    // Each file is either refused unchanged or opens with nothing lost, and every value that can be known is right.
    void damagedFiles_data() { test::tableOf("jet/jet_damage.txt"); }
    void damagedFiles()
    {
        const QString how = test::cell("damage").section(u' ', 0, 0);
        const QString sample = how == test::cell("damage") ? u"small-1.1"_s : u"jet3"_s;
        const QByteArray sound = contents(Data + sample + u".mdb"_s);
        QRandomGenerator random(static_cast<quint32>(how.size()));
        write(sound);
        const int rows = allRows(path());
        int refused = 0;
        for (int i = 0; i < Tries; ++i) {
            const QByteArray bytes = test::damaged(sound, how, random);
            init();
            write(bytes);
            const QDeadlineTimer limit(60'000);
            const auto failure = test::failureOf([this] { return openFile(path()); });
            const QByteArray name =
                u"%1 %2: %3"_s.arg(how).arg(i).arg(failure ? failure->description() : u""_s).toUtf8();
            QVERIFY2(!limit.hasExpired(), name.constData());
            if (!failure) {
                QCOMPARE(contents(kept()), bytes);
                QCOMPARE(answer("PRAGMA integrity_check"), "ok"_ba);
                QVERIFY2(allRows(path()) >= rows || m_told.join(u' ').contains(u"Tables that"), name.constData());
                QCOMPARE(files().size(), 2);
                // A flipped bit within a value makes another value.
                qsizetype unknown = 0;
                for (qsizetype at = 0; (how == u"random" || how == u"flipped") && at < sound.size(); ++at)
                    unknown += 2 * (bytes[at] != sound[at]);
                QVERIFY2(!m_told.isEmpty() || differences(path(), sample) <= unknown, name.constData());
                continue;
            }
            ++refused;
            QVERIFY2(failure->number() == platform::DatabaseDamaged || failure->number() == 3343, name.constData());
            QVERIFY2(!name.contains("to its end"), name.constData()); // the reader knows why, and didn't crash
            QCOMPARE(contents(path()), bytes);
            QCOMPARE(files(), QStringList(u"Quorrel11.mdb"_s));
        }
        QVERIFY(refused > 0);
    }

    // The reader alone, on files that its library believes: it ends normally, and no check of the build complains.
    void readerHoldsOut()
    {
        QRandomGenerator random(1);
        for (int i = 0; i < 5 * Tries; ++i) {
            const auto [sample, size] =
                i % 2 == 0 ? std::pair(u"small-1.1.mdb"_s, 4096) : std::pair(u"jet3.mdb"_s, 2048);
            const QByteArray sound = contents(Data + sample);
            QByteArray bytes = sound;
            for (int changes = 1 << random.bounded(6); changes > 0; --changes) {
                const int at = random.bounded(random.bounded(4) == 0 ? size : 80); // mostly in the pages' heads
                bytes[size * random.bounded(int(bytes.size()) / size) + at] =
                    static_cast<char>(random.bounded(3) == 0 ? 0 : random.bounded(256));
            }
            bytes.replace(0, 21, sound.first(21)); // still in its format
            write(bytes);
            QProcess reader;
            reader.start(platform::companionFile(platform::programName(u"orlo-jet"_s)), {path()});
            QVERIFY(reader.waitForFinished(60'000));
            const QByteArray said = reader.readAllStandardError().right(4000);
            if (reader.exitStatus() != QProcess::NormalExit ||
                (reader.exitCode() != 0 && !said.contains("\norlo-jet: "))) {
                test::write(u"jet-finding.mdb"_s, bytes);
                QFAIL(said.constData());
            }
        }
    }

    // Killed at any moment, the file is the old one or the new one, and the next opening finds everything; so does each
    // program that opens it at the same moment, or it is told that the file is in use.
    void killedWhileOpening_data() { test::table({"others"}, "0 \n 2"); }
    void killedWhileOpening()
    {
        const int others = test::cell("others").toInt();
        const QByteArray former = contents(Data + u"small-1.1.mdb"_s);
        write(former);
        QElapsedTimer whole;
        whole.start();
        QCOMPARE(QProcess::execute(QCoreApplication::applicationFilePath(), test::childArguments({path()})), 0);
        const qint64 longest = whole.elapsed();
        const int rows = allRows(path());
        int met = 0; // unfinished files left by a kill; programs that waited for another
        for (int i = 0; i < Tries || (met == 0 && i < 10 * Tries); ++i) {
            init();
            write(former);
            std::vector<QProcess> opening(1 + others);
            for (QProcess& one : opening)
                one.start(QCoreApplication::applicationFilePath(), test::childArguments({path()}));
            QVERIFY(opening.back().waitForStarted());
            QTest::qSleep(static_cast<int>(longest * (i % Tries) / Tries));
            opening.front().kill();
            for (QProcess& one : opening) {
                QVERIFY(one.waitForFinished());
                const QByteArray said = one.readAllStandardError();
                const bool opened = one.exitCode() == 0;
                QVERIFY2(opened || &one == opening.data() || said.startsWith("Another program is using"),
                         said.constData());
                met += opened && &one != opening.data();
            }
            QVERIFY(contents(path()) == former || contents(kept()) == former);
            met += others == 0 && contents(path()) == former && files().size() > 1;
            QCOMPARE(allRows(path()), rows);
            QCOMPARE(files().size(), 2);
            QCOMPARE(contents(kept()), former);
        }
        QVERIFY(met > others * Tries / 2);
    }

    // What prevents a takeover; the file and those beside it then stay as they were.
    void refused_data() { test::tableOf("jet/jet_refused.txt"); }
    void refused()
    {
        const QString situation = test::cell("situation");
        QByteArray bytes = contents(Data + u"small-1.0.mdb"_s);
        if (situation.startsWith(u"a page map"))
            bytes = contents(Data + u"jet3.mdb"_s).replace(12 * 2048, 512, QByteArray(512, '\0'));
        if (situation.startsWith(u"no table"))
            for (const store::TableDef& table : store::schema::tables())
                bytes.replace(JetPages::wide(table.name()), JetPages::wide(QString(table.name().size(), u'x')));
        write(bytes);
        if (situation.startsWith(u"SQLite")) {
            QFile::remove(path());
            sqlite(path(), "CREATE TABLE Cats(a)");
            bytes = contents(path());
        }
        const QString lock = m_folder->filePath(u"QUORREL11.ldb"_s);
        for (const QString& beside : {lock, path() + u".new"_s}) // the user's own files
            test::write(beside, {});
        QFile other(situation.endsWith(u"lock file") ? lock : path());
        if (situation.startsWith(u"another"))
            QVERIFY(other.open(QIODevice::ReadWrite) && test::lockByte(other, 0x10000001));
        std::optional<test::Forbidden> forbidden;
        if (situation.startsWith(u"a read-only"))
            forbidden.emplace(path(), test::Forbidden::Folder);
        test::limitFiles(situation.startsWith(u"a full disk") ? 30'000 : -1);
        bool refusedWriting = false;
        if (situation.startsWith(u"changed"))
            store::setTakeoverWatch({[&](const QString& file, int) {
                                         QCOMPARE(file, QFileInfo(path()).fileName());
                                         if (QFile(path()).open(QIODevice::ReadWrite))
                                             write(bytes);
                                         else
                                             refusedWriting = true;
                                     },
                                     {}});
        if (situation.startsWith(u"another"))
            QCOMPARE(test::failureNumber([this] { return store::checkFormer(path()); }), 3050);
        const auto failure = test::failureOf([this] { return store::openPack(path()); });
        test::limitFiles(-1);
        forbidden.reset();
        if (refusedWriting)
            test::skip(u"here nobody can write to a locked file"_s);
        QVERIFY(failure);
        QTEST(QString::number(failure->number()), "number");
        QTEST(QString(failure->description()).replace(u'\\', u'/').replace(m_folder->path(), u"%"_s), "words");
        QCOMPARE(contents(path()), bytes);
        QCOMPARE(files(), (QStringList{u"QUORREL11.ldb"_s, u"Quorrel11.mdb"_s, u"Quorrel11.mdb.new"_s}));
    }

    // What is made of a reader's stream, numbers as their width and value and texts with their length, and of how the
    // reader ends.
    void streams_data() { test::cases({"stream", "ends", "told"}, u"jet/streams.txt"_s); }
    void streams()
    {
        if (QDir::separator() == u'\\')
            test::skip(u"no script can be the reader here"_s);
        static const QRegularExpression part(u"(\\d):(-?[\\d.]+)|\"([^\"]*)\"|fields (\\d+)"_s);
        const auto number = [](qint64 value, int width) {
            return QByteArray(reinterpret_cast<const char*>(&value), width);
        };
        const auto text = [&](const QString& letters) {
            return number(2 * letters.size(), 4) + JetPages::wide(letters);
        };
        QByteArray bytes;
        for (const auto& match : part.globalMatch(test::cell("stream")))
            if (const int fields = match.captured(4).toInt()) {
                bytes += number(fields, 2);
                for (int i = 1; i <= fields; ++i)
                    bytes += text('F' + QString::number(i)) + number(5, 1) + number(9, 2);
            } else
                bytes += match.hasCaptured(1) ? number(match.captured(2).toLongLong(), match.captured(1).toInt())
                                              : text(match.captured(3));
        write(bytes);
        const QString reader = m_folder->filePath(u"reader"_s);
        if (test::cell("ends") != u"none\n")
            test::write(reader, "#!/bin/sh\ncat \"$1\"\n" + test::cell("ends").toUtf8());
        QFile::setPermissions(reader, QFile::ReadOwner | QFile::ExeOwner);
        QStringList told;
        const auto failure = test::failureOf([&] {
            store::jet::HelperStream stream(reader, path());
            const store::jet::Definitions definitions = store::jet::readDefinitions(stream);
            store::jet::readTables(stream, definitions.tables, [&](const auto&, store::jet::FormerRows& rows) {
                while (rows.next())
                    for (const store::jet::SourceValue& value : rows.row())
                        told += store::jet::textOf(value);
                told += store::words(rows.count()).trimmed();
            });
            told += definitions.report;
        });
        QCOMPARE((failure ? failure->description() : told.join(u'\n')).trimmed(), test::cell("told").trimmed());
    }

    // The reader gives up what it doesn't need before it opens the file, here one whose opening waits.
    void readerLimitsItself()
    {
        if (!QFile::exists(u"/proc/self/limits"_s) || QProcess::execute(u"mkfifo"_s, {path()}) != 0)
            test::skip(u"nothing here shows a process's limits"_s);
        QProcess reader;
        reader.start(platform::companionFile(platform::programName(u"orlo-jet"_s)), {path()});
        QVERIFY(reader.waitForStarted());
        const QString process = u"/proc/%1/"_s.arg(reader.processId());
        const auto limits = [&process] {
            const QString all = QString::fromUtf8(contents(process + u"limits"_s) + contents(process + u"status"_s));
            return all.split(u'\n')
                .filter(QRegularExpression(u"^(Max (cpu|file size|core)|NoNew)"_s))
                .join(u';')
                .simplified();
        };
        QTRY_COMPARE(
            limits(),
            u"Max cpu time 5 5 seconds ;Max file size 0 0 bytes ;Max core file size 0 0 bytes ;NoNewPrivs: 1"_s);
        reader.kill();
        QVERIFY(reader.waitForFinished());
    }

    // A program whose reader lacks its library doesn't know the format. One that is installed has the reader elsewhere.
    void withoutTheReader()
    {
        write(contents(Data + u"small-1.1.mdb"_s));
        const QString alone = m_folder->filePath(platform::programName(u"alone"_s));
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), alone));
        QCOMPARE(QProcess::execute(alone, test::childArguments({path()})), 3343 % 256);
        const QString reader = m_folder->filePath(platform::programName(u"orlo-jet"_s));
        test::write(reader,
                    contents(platform::companionFile(QFileInfo(reader).fileName())).replace("libmdb.", "lacked."));
        QVERIFY(QFile::setPermissions(reader, QFile::ReadOwner | QFile::ExeOwner));
        QCOMPARE(QProcess::execute(alone, test::childArguments({path()})), 3343 % 256);
        const QString there = m_folder->filePath(u"../lib/orlo/"_s);
        const QString whole = platform::companionFile(QFileInfo(reader).fileName());
        QVERIFY(QFile::remove(reader) && QDir().mkpath(there) &&
                QFile::copy(whole, there + QFileInfo(whole).fileName()));
        QCOMPARE(QProcess::execute(alone, test::childArguments({path()})), 0);
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

// Opens a file in a separate process; returns the failure as exit status.
static int openAlone(const QStringList& arguments)
{
    test::endProgramsWithUs();
    const auto failure = test::failureOf([&] { return openFile(arguments[0]); });
    QTextStream(stderr) << (failure ? failure->description() : QString());
    return failure ? std::max(failure->number() % 256, 1) : 0;
}

ORLO_TEST(tst_jet, openAlone)

#include "tst_jet.moc"
