#include "reporting/Pagination.h"
#include "reporting/Typesetter.h"
#include "support/Main.h"

#include <QTest>

using namespace orlo::reports;

namespace
{

/// Pages as text: strips by number, repeated headings in brackets, pages parted by bars.
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
    return all.join(" | ");
}

/// Strips from letters: "d" a line of 10, "h" a heading kept with the next, "b" one that begins a page, "T" 70, "X"
/// 130.
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
    void breaksPages_data()
    {
        using Kept = std::vector<KeptTogether>;
        using Headings = std::vector<RepeatedHeading>;
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("pages");
        QTest::addColumn<Kept>("kept");
        QTest::addColumn<Headings>("headings");
        const auto row = [](const char* name, const char* text, const char* pages, const Kept& kept = {},
                            const Headings& headings = {}) {
            QTest::newRow(name) << text << pages << kept << headings;
        };
        row("empty report is one page", "", "");
        row("fills to the edge", "Tdddd", "0@0 1@70 2@80 3@90 | 4@0");
        row("no orphan headings", "Tdhhd", "0@0 1@70 | 2@0 3@10 4@20");
        row("too high stands alone", "dXd", "0@0 | 1@0 | 2@0");
        row("heading of the too high", "hXd", "0@0 | 1@0 | 2@0");
        row("new page", "ddbd", "0@0 1@10 | 2@0 3@10");
        row("group kept whole", "Thddd", "0@0 | 1@0 2@10 3@20 4@30", {{1, 5}});
        row("group and what must follow it", "Tddhd", "0@0 | 1@0 2@10 3@20 4@30", {{1, 4}});
        row("followed by more than a page holds", "TddhX", "0@0 1@70 2@80 | 3@0 | 4@0", {{1, 4}});
        row("group that fits stays", "Thdd", "0@0 1@70 2@80 3@90", {{1, 4}});
        row("group that would leave too much empty", "Thddd", "0@0 1@70 2@80 3@90 | 4@0", {{1, 5, 0.2}});
        row("group above a page is cut", "hTTd", "0@0 1@10 | 2@0 3@70", {{0, 4}});
        row("outer can't, inner can", "hTdhdd", "0@0 1@10 2@80 | 3@0 4@10 5@20", {{0, 6}, {3, 6}});
        row("heading repeated", "hTdddd", "0@0 1@10 2@80 3@90 | [0] 4@10 5@20", {}, {{1, 6, 10}});
        row("outer heading first", "hhTdd", "0@0 1@10 2@20 3@90 | [0] [1] 4@30", {}, {{1, 5, 10}, {2, 5, 20}});
        row("headings leave room", "hTdddd", "0@0 1@10 2@80 3@90 | 4@0 5@10", {}, {{1, 6, 60}});
        row("kept group counts the heading", "hTdTdd", "0@0 1@10 2@80 | [0] 3@20 4@90 | [0] 5@20", {{3, 6}},
            {{1, 6, 20}});
    }
    void breaksPages()
    {
        QFETCH(QString, text);
        QFETCH(std::vector<KeptTogether>, kept);
        QFETCH(std::vector<RepeatedHeading>, headings);
        QTEST(told(paginate(strips(text), kept, headings, 100)), "pages");
    }

    /// No character is lost and no line is too long.
    void breaksLines()
    {
        Typesetter typesetter;
        const int font = typesetter.font(Style{});
        for (const auto& [text, least] :
             {std::pair(QStringLiteral("one\ntwo\n\nthree\n"), 4),
              {QStringLiteral("Each year the den. ").repeated(40), 10},
              {QString(400, u'W'), 20},
              {QStringLiteral("Żółć Ďábelské 🦊🐺🐻 Ωμέγα ").repeated(20), 5},
              {QStringLiteral("a\tb\r\nc") + QChar(0), 2},
              {QString(500, u' ') + u'x', 1}}) {
            const QStringList lines = typesetter.broken(font, text, 150);
            QVERIFY2(lines.size() >= least, qPrintable(text));
            for (const QString& line : lines)
                QVERIFY2(typesetter.width(font, line) <= 150.02, qPrintable(line));
            const auto isNoLetter = [](QChar c) { return c.isSpace() || c.category() == QChar::Other_Control; };
            QCOMPARE(lines.join(u' ').removeIf(isNoLetter), QString(text).removeIf(isNoLetter));
        }
        // Characters that join are narrower than they are apart.
        QVERIFY(typesetter.width(font, u"ببب") < 3 * typesetter.width(font, u"ب") - 1);
    }
};

ORLO_TEST(tst_layout)
#include "tst_layout.moc"
