#include "reporting/Export.h"
#include "reporting/Pagination.h"
#include "support/Failure.h"
#include "support/PrintedFile.h"
#include "support/System.h"
#include "support/Table.h"

#include <QBitmap>
#include <QTemporaryDir>

using namespace orlo;
using namespace orlo::reporting;

namespace
{

// Pages as text: strips by number, repeated headings in brackets, pages separated by bars.
QString told(const std::vector<PageContent>& pages)
{
    QStringList all;
    for (const PageContent& page : pages) {
        QStringList one;
        for (const std::size_t heading : page.headings)
            one << QStringLiteral("[%1]").arg(heading);
        for (const PlacedStrip& placed : page.strips)
            one << QStringLiteral("%1@%2").arg(placed.strip).arg(placed.y);
        all << one.join(u' ');
    }
    return all.join(" / ");
}

// Strips from letters: "d" a line of 10, "h" a heading kept with the next, "b" one that starts a page, "T" 70, "X"
// 130.
std::vector<StripSize> strips(const QString& text)
{
    std::vector<StripSize> made;
    for (const QChar c : text)
        made.push_back({c == u'T' ? 70.0 : c == u'X' ? 130.0 : 10.0, c == u'h', c == u'b'});
    return made;
}

} // namespace

class tst_layout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Strips kept together, or repeated from the first strip of a heading's rows to their end: "1-5", with the share
    // of a page that may stay empty, "1-5:0.2", or the heading's height.
    void breaksPages_data() { test::tableOf("reporting/layout_breaksPages.txt"); }
    void breaksPages()
    {
        std::vector<KeptTogether> kept;
        std::vector<RepeatedHeading> headings;
        const auto each = [](const char* column, const auto& take) {
            for (const QString& range : test::cell(column).split(' ', Qt::SkipEmptyParts))
                take(range.section('-', 0, 0).toULongLong(), range.section('-', 1).section(':', 0, 0).toULongLong(),
                     range.section(':', 1));
        };
        each("kept", [&](std::size_t first, std::size_t last, const QString& share) {
            kept.push_back({first, last, share.isEmpty() ? KeptTogether().mayLeaveEmpty : share.toDouble()});
        });
        each("headings", [&](std::size_t first, std::size_t last, const QString& height) {
            headings.push_back({first, last, height.toDouble()});
        });
        QTEST(told(paginate(strips(test::cell("text")), kept, headings, 100)), "pages");
    }

    // If there is less room than the file needs, the save fails with the reason, and only the previous file is left.
    void savesAllOrNothing_data()
    {
        test::table({"way"}, "csv\ncsv, short\npdf\nprinted\ncsv, short, a volume\npdf, a volume\nprinted, a "
                             "volume\ncsv, flushed\npdf, flushed");
    }
    void savesAllOrNothing()
    {
        const QString way = test::cell("way");
        Document document;
        document.fonts = {QFont("DejaVu Sans", 10)};
        document.pages.resize(40, {{TextItem{{72, 72, 400, 14}, "Ångström"}}});
        document.rows.resize(way.contains("short") ? 600 : 3000, {"Ångström", "Zoë"});
        const QTemporaryDir folder;
        const QString path = folder.filePath("list.pdf");
        const auto save = [&] {
            if (way.startsWith("csv"))
                return writeCsv(document, path), true;
            if (way.startsWith("pdf"))
                return writePdf(document, path);
            test::printInto(path);
            return printDocument(*defaultPrinter(), document);
        };
        const bool onVolume = way.endsWith("volume");
        QVERIFY(save());
        const qint64 whole = QFileInfo(path).size();
        const auto stage = [&](qint64 room) {
            if (way.endsWith("flushed"))
                test::failFlushes(room > 0 && room < whole);
            else if (!onVolume)
                test::limitFiles(room);
            else if (!test::mountSmall(folder.path(), room))
                test::skip("no volume can be mounted");
        };
        QSet<int> seen;
        for (qint64 room = 4096; room < 4 * whole; room += 4096 + whole / 12) {
            if (onVolume)
                stage(room);
            test::write(path, "good");
            if (!onVolume)
                stage(room);
            const auto error = test::failureOf(save);
            const QByteArray there = test::contents(path);
            const QStringList files = QDir(folder.path()).entryList(QDir::Files);
            stage(onVolume ? 0 : -1);
            seen << (error ? error->number() : 0);
            QCOMPARE(files, QStringList("list.pdf"));
            QVERIFY2(error ? there == "good" : qAbs(there.size() - whole) < 10, qPrintable(QString::number(room)));
            QVERIFY(!error || error->description().contains("file " + QDir::toNativeSeparators(path) + " can"));
        }
        QCOMPARE(seen, (QSet<int>{0, int(platform::PathFileAccess)}));
        setPrinterFactory({});
    }
};

ORLO_TEST(tst_layout)
#include "tst_layout.moc"
