#include "store/engine/TableDef.h"
#include "store/repair/Repair.h"
#include "store/schema/Schema.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Repeats.h"
#include "support/Sqlite.h"
#include "support/System.h"
#include "support/Table.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QtEndian>

using namespace orlo;
using namespace orlo::store;
using test::contents;
using test::failureNumber;
using test::sqlite;
using test::write;

namespace
{

constexpr qsizetype PageSize = 4096;

// A file's pages in order: "12 leaf Scouts 3".
constexpr char Pages[] = "Select pageno || ' ' || pagetype || ' ' || name || ' ' || (Row_Number() Over (Partition By "
                         "pagetype, name Order By path) - 1) From dbstat Order By pageno";

// The rows of each table with their keys, "Scouts|12|...", as another program reads them.
QSet<QString> rowsOf(const QString& path)
{
    QSet<QString> rows;
    for (const TableDef& table : schema::tables()) {
        const QByteArray name = table.name().toUtf8();
        for (const QString& row : sqlite(path, "Select rowid, * From " + name))
            rows += table.name() + u'|' + row;
    }
    return rows;
}

} // namespace

class tst_repair : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A pack large enough that each big table fills many pages on two levels; some notes fill pages of their own, and
    // one fills the rest of its row's page to the last byte.
    void initTestCase()
    {
        for (const QString& file : {m_whole, m_small}) {
            Database made = DBEngine::createDatabase(file);
            createSchema(made);
        }
        sqlite(m_whole, contents(ORLO_SOURCE_DIR "/tests/store/repair.sql"));
        m_rows = rowsOf(m_whole);
        QVERIFY(m_rows.size() > 8000);
        for (const TableDef& table : schema::tables())
            locateRows(table.name());
        QCOMPARE(m_pagesOfRow.size(), m_rows.size());
        QCOMPARE(sqlite(m_small, contents(ORLO_SOURCE_DIR "/tests/store/salvage.sql")), QStringList());
    }

    // One page of zeros, or none: every row on the other pages is there afterwards, and so are keys, counters and
    // queries. Only a damaged file is kept.
    void damage_data() { test::tableOf("store/repair_damage.txt"); }
    void damage()
    {
        const QString table = test::cell("root of");
        const QString path = fresh();
        const bool sound = table == "nothing";
        const QByteArray bytes = sound ? contents(path) : test::withoutRootOf(path, table);
        write(path, bytes);
        write(path + "-journal", "x");
        QFile::setPermissions(path, QFile::Permissions(0x6660));
        (void)test::putInPlaceUnflushed();
        test::failLinks(table == "Dens");
        repair(path);
        test::failLinks(false);
        QCOMPARE(test::putInPlaceUnflushed(), QStringList());
        QVERIFY(contents(path).size() < bytes.size());
        QCOMPARE(contents(m_folder.filePath("work/Quorrel11 (damaged).mdb")), sound ? "none" : bytes);
        QCOMPARE(QDir(m_folder.filePath("work")).entryList(QDir::Files).size(), sound ? 1 : 2);
        QVERIFY(sound || QFile::permissions(path) & QFile::WriteGroup);
        QCOMPARE(sqlite(path, "Pragma integrity_check"), QStringList{"ok"});
        QCOMPARE(rowsOf(path), m_rows);
        QCOMPARE(test::definitions(path), test::definitions(m_whole));
        QCOMPARE(sqlite(path, "Select seq From sqlite_sequence"),
                 QStringList{table == "sqlite_sequence" ? "5990" : "6000"});
    }

    // A file from another tool may have its texts in UTF-16, and pages of another size, of which its header may be
    // wrong.
    void utf16_data() { test::table({"encoding", "page size"}, "UTF-16le | 512\nUTF-16be | 65536"); }
    void utf16()
    {
        const QString path = fresh();
        const QString made = path + ".16";
        const QString dens16 = "Pragma encoding = '" + test::cell("encoding") +
                               "'; Pragma page_size = " + test::cell("page size") + "; Begin; " +
                               sqlite(path, "Select sql From sqlite_master Where name = 'Dens'").join("") +
                               "; Insert Into Dens(Den_SID, Den_Name) With Recursive n(i) As (Values(1) Union All "
                               "Select i + 1 From n Where i < 1500) Select i, 'Åke ' || i From n; Commit";
        sqlite(made, dens16.toUtf8());
        const QStringList dens = sqlite(made, "Select * From Dens");
        QVERIFY(dens.size() > 1000 && dens.back().contains(u"Åke"));
        write(path, test::contents(made).replace(16, 2, QByteArray("\x10\0", 2)));
        repair(path);
        QCOMPARE(sqlite(path, "Select * From Dens"), dens);
    }

    // "each PAGES: AT BYTES" repairs a copy of the file for each of these pages, with other bytes there; "at PAGES: AT
    // BYTES" changes them, and "repair" repairs the file. A page's name is its kind, table and place, "leaf Scouts 3".
    // Each repair tells what it says is missing, then the rows and definitions that are gone, and those that are new.
    void salvage_data() { test::cases({"steps", "seen"}, "store/salvage.txt"); }
    void salvage()
    {
        const QString path = fresh(m_small);
        QStringList whole = dump(path);
        QStringList pages = sqlite(path, Pages);
        QStringList seen;
        for (const QString& step : test::cell("steps").trimmed().split(u'\n')) {
            static const QRegularExpression form("^(each|at) (.*): (\\d+) (\\w+)$|^repair()$");
            const auto patch = form.match(step);
            if (!patch.hasMatch()) {
                seen += sqlite(path, step.toUtf8());
                if (!step.startsWith("Pragma writable_schema")) {
                    whole = dump(path);
                    pages = sqlite(path, Pages);
                }
                continue;
            }
            const QByteArray bytes = contents(path);
            const bool once = patch.hasCaptured(5);
            const QString named = QRegularExpression::wildcardToRegularExpression("* " + patch.captured(2));
            const QStringList wanted = once ? QStringList{"1 "} : pages.filter(QRegularExpression(named));
            seen += wanted.isEmpty() ? QStringList("no page is called so: " + step) : QStringList();
            for (const QString& page : wanted) {
                const qsizetype start = page.section(u' ', 0, 0).toLongLong() * 512 - 512;
                const qsizetype at = start + patch.captured(3).toInt();
                const bool zero = patch.captured(4) == "zero";
                const QByteArray other =
                    zero ? QByteArray(start + 512 - at, '\0') : QByteArray::fromHex(patch.captured(4).toLatin1());
                write(path, contents(path).replace(at, other.size(), other));
                if (patch.captured(4) == "unreadable")
                    test::failReads(at, at + 512);
                if (patch.captured(1) == "at")
                    continue;
                seen += (once || wanted.size() == 1 ? step : page.section(u' ', 1)) + ": " + outcome(path, whole);
                write(fresh(m_small), bytes);
            }
        }
        if (seen != test::cell("seen").trimmed().split(u'\n'))
            qInfo().noquote() << seen.join(u'\n');
        QCOMPARE(seen, test::cell("seen").trimmed().split(u'\n'));
    }

    // Bytes overwritten at random, or the end cut off: whatever happens ends with a numbered failure, and most rows on
    // untouched pages come back.
    void randomDamage()
    {
        const int files = test::repeats("ORLO_DAMAGED_FILES", 15);
        const QByteArray whole = contents(m_whole);
        QRandomGenerator random(20261124);
        for (int i = 0; i < files; ++i) {
            const QString path = fresh();
            QByteArray bytes = whole;
            QSet<qsizetype> touched;
            if (i % 4 == 3) {
                bytes.truncate(random.bounded(int(whole.size())));
                for (qsizetype page = bytes.size() / PageSize; page < whole.size() / PageSize; ++page)
                    touched += page;
            } else
                for (int n = 1 << random.bounded(9); n > 0; --n) {
                    const qsizetype at = random.bounded(int(whole.size()));
                    bytes[at] = char(random.bounded(256));
                    touched += at / PageSize;
                }
            write(path, bytes);
            if (const int number = failureNumber([&] { repair(path); }); number != 0) {
                QCOMPARE(number, 3049);
                QVERIFY(touched.contains(0));
                continue;
            }
            QCOMPARE(sqlite(path, "Pragma integrity_check"), QStringList{"ok"});
            const double share = recovered(touched, rowsOf(path));
            QVERIFY2(share >= 0.95, qPrintable(QString("file %1: %2").arg(i).arg(share)));
        }
    }

private:
    // A copy of a file, the whole one unless it is named, alone in a folder.
    QString fresh(const QString& file = {})
    {
        QDir(m_folder.filePath("work")).removeRecursively();
        QDir().mkpath(m_folder.filePath("work"));
        const QString path = m_folder.filePath("work/Quorrel11.mdb");
        QFile::copy(file.isEmpty() ? m_whole : file, path);
        return path;
    }

    // What a repair says, and how the file then differs from the whole one; the repaired file stays.
    static QString outcome(const QString& path, const QStringList& whole)
    {
        Repaired repaired;
        const int number = failureNumber([&] { repaired = DBEngine::repairDatabase(path, schema::versions()); });
        test::failReads(0, 0);
        if (number != 0)
            return QString("failure %1").arg(number);
        const QStringList left = dump(path);
        QStringList seen = repaired.damaged.isEmpty() ? QStringList("sound") : repaired.missing;
        for (const QString& row : whole)
            if (!left.contains(row))
                seen += '-' + row.section(u':', 0, 0);
        for (const QString& row : left)
            if (!whole.contains(row))
                seen += '+' + row;
        return seen.isEmpty() ? "all is there" : seen.join("; ");
    }
    // All rows, "Dens 5: 5,'Bears'", and definitions, "index Dens_PK: CREATE ..."; long texts with their checksums.
    static QStringList dump(const QString& path)
    {
        QStringList all = sqlite(path, "Pragma integrity_check");
        for (const QString& select :
             sqlite(path, "Select 'Select ''' || m.name || ' '' || ' || Iif(Max(c.name In ('seq', 'Sql', 'Den_Title', "
                          "'Pack_Titles')), Min(c.name), 'rowid') || ' || '': '' || ' || Group_Concat('quote(\"' || "
                          "c.name || '\")', '|| '','' ||') || ' From ' || m.name From sqlite_master m, "
                          "pragma_table_info(m.name) c Where m.type = 'table' Group By m.name"))
            all += sqlite(path, select.toUtf8());
        all += sqlite(path, "Select type || ' ' || name || ': ' || sql From sqlite_master Where sql Is Not Null "
                            "Order By name");
        all.replaceInStrings("\n", " ");
        for (QString& one : all)
            if (one.size() > 150)
                one = one.first(70) + QString("... %1 %2").arg(one.size()).arg(qChecksum(one.toUtf8()));
        return all;
    }

    static void repair(const QString& path) { DBEngine::repairDatabase(path, schema::versions()); }

    // The share of the rows on sound pages that was found.
    [[nodiscard]] double recovered(const QSet<qsizetype>& touched, const QSet<QString>& found) const
    {
        int sound = 0;
        int there = 0;
        for (auto row = m_pagesOfRow.cbegin(); row != m_pagesOfRow.cend(); ++row)
            if (std::ranges::none_of(row.value(), [&](qsizetype page) { return touched.contains(page); })) {
                ++sound;
                there += found.contains(row.key());
            }
        return sound == 0 ? 1 : double(there) / sound;
    }
    // The engine lists a table's leaf pages in order with the number of cells of each, and after each the overflow
    // pages with the cells that they continue.
    void locateRows(const QString& table)
    {
        const QStringList rows = sqlite(m_whole, "Select rowid, * From " + table.toUtf8());
        qsizetype first = 0;
        qsizetype next = 0;
        for (const QString& line :
             sqlite(m_whole, "Select pagetype, pageno - 1, ncell, path From dbstat Where name = '" + table.toUtf8() +
                                 "' And pagetype <> 'internal' Order By path")) {
            const QStringList cells = line.split(u'|');
            const bool leaf = cells[0] == "leaf";
            if (leaf)
                first = std::exchange(next, next + cells[2].toInt());
            const qsizetype at = first + cells[3].section('/', -1).section('+', 0, 0).toInt(nullptr, 16);
            for (qsizetype row = at; row < (leaf ? next : at + 1); ++row)
                m_pagesOfRow[table + '|' + rows[row]] += cells[1].toInt();
        }
    }

    QTemporaryDir m_folder;
    const QString m_whole = m_folder.filePath("whole.mdb");
    const QString m_small = m_folder.filePath("small.mdb"); // with all kinds of values, in pages of 512 bytes
    QSet<QString> m_rows;
    QHash<QString, QList<qsizetype>> m_pagesOfRow; // 0-based, overflow pages included
};

ORLO_TEST(tst_repair)

#include "tst_repair.moc"
