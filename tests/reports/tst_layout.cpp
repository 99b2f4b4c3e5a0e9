#include "reports/engine/Pagination.h"
#include "reports/engine/Typesetter.h"

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
    return all.join(QStringLiteral(" | "));
}

/// Strips from letters: "d" a line of height 10, "h" a heading kept with the next, "b" one that begins a page, "T" of
/// height 70, "X" of height 130.
std::vector<StripSize> strips(const QString& text)
{
    std::vector<StripSize> made;
    for (const QChar c : text)
        made.push_back({c == u'T' ? 70.0 : c == u'X' ? 130.0 : 10.0, c == u'h', c == u'b'});
    return made;
}

} // namespace

class TestLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void breaksPages_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::vector<KeptTogether>>("kept");
        QTest::addColumn<std::vector<RepeatedHeading>>("headings");
        QTest::addColumn<QString>("pages");
        using Kept = std::vector<KeptTogether>;
        using Headings = std::vector<RepeatedHeading>;
        QTest::newRow("empty report is one page") << "" << Kept() << Headings() << "";
        QTest::newRow("fills to the edge") << "Tdddd" << Kept() << Headings() << "0@0 1@70 2@80 3@90 | 4@0";
        QTest::newRow("no orphan heading") << "Tddhd" << Kept() << Headings() << "0@0 1@70 2@80 | 3@0 4@10";
        QTest::newRow("nor one of two") << "Tdhhd" << Kept() << Headings() << "0@0 1@70 | 2@0 3@10 4@20";
        QTest::newRow("too high stands alone") << "dXd" << Kept() << Headings() << "0@0 | 1@0 | 2@0";
        QTest::newRow("heading of the too high") << "hXd" << Kept() << Headings() << "0@0 | 1@0 | 2@0";
        QTest::newRow("new page") << "ddbd" << Kept() << Headings() << "0@0 1@10 | 2@0 3@10";
        QTest::newRow("group kept whole") << "Thddd" << Kept{{1, 5}} << Headings() << "0@0 | 1@0 2@10 3@20 4@30";
        // strip 3 takes the total behind the group along, so the whole group goes with them
        QTest::newRow("group and what must follow it")
            << "Tddhd" << Kept{{1, 4}} << Headings() << "0@0 | 1@0 2@10 3@20 4@30";
        QTest::newRow("followed by more than a page holds")
            << "TddhX" << Kept{{1, 4}} << Headings() << "0@0 1@70 2@80 | 3@0 | 4@0";
        QTest::newRow("group that fits stays") << "Thdd" << Kept{{1, 4}} << Headings() << "0@0 1@70 2@80 3@90";
        QTest::newRow("group above a page is cut") << "hTTd" << Kept{{0, 4}} << Headings() << "0@0 1@10 | 2@0 3@70";
        QTest::newRow("outer can't, inner can")
            << "hTdhdd" << Kept{{0, 6}, {3, 6}} << Headings() << "0@0 1@10 2@80 | 3@0 4@10 5@20";
        QTest::newRow("inner behind the outer's heading")
            << "Thhdd" << Kept{{2, 5}} << Headings() << "0@0 | 1@0 2@10 3@20 4@30";
        QTest::newRow("heading repeated")
            << "hTdddd" << Kept() << Headings{{1, 6, 10}} << "0@0 1@10 2@80 3@90 | [0] 4@10 5@20";
        QTest::newRow("not behind its end") << "hTddd" << Kept() << Headings{{1, 4, 10}} << "0@0 1@10 2@80 3@90 | 4@0";
        QTest::newRow("outer heading first")
            << "hhTdd" << Kept() << Headings{{1, 5, 10}, {2, 5, 20}} << "0@0 1@10 2@20 3@90 | [0] [1] 4@30";
        QTest::newRow("headings leave room")
            << "hTdddd" << Kept() << Headings{{1, 6, 60}} << "0@0 1@10 2@80 3@90 | 4@0 5@10";
        QTest::newRow("kept group counts the heading")
            << "hTdTdd" << Kept{{3, 6}} << Headings{{1, 6, 20}} << "0@0 1@10 2@80 | [0] 3@20 4@90 | [0] 5@20";
    }
    void breaksPages()
    {
        QFETCH(QString, text);
        QFETCH(std::vector<KeptTogether>, kept);
        QFETCH(std::vector<RepeatedHeading>, headings);
        QTEST(told(paginate(strips(text), kept, headings, 100)), "pages");
    }

    void breaksLines_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("least"); ///< lines
        QTest::newRow("short") << "Wolf" << 1;
        QTest::newRow("own lines kept") << "one\ntwo\n\nthree\n" << 4;
        QTest::newRow("words") << QStringLiteral("Each year the den visits the fire station. ").repeated(20) << 15;
        QTest::newRow("one endless word") << QString(400, u'W') << 20;
        QTest::newRow("accents beyond Latin") << QStringLiteral("Żółć Ďábelské Ωμέγα ").repeated(20) << 5;
        QTest::newRow("surrogates") << QString::fromUtf8("🦊🐺🐻").repeated(60) << 5;
        QTest::newRow("control characters") << QString(QStringLiteral("a\tb\r\nc") + QChar(0)) << 2;
        QTest::newRow("long blanks") << QString(QString(500, u' ') + u'x') << 1;
    }
    void breaksLines()
    {
        QFETCH(QString, text);
        QFETCH(int, least);
        Typesetter typesetter;
        const int font = typesetter.font(Style{});
        const QStringList lines = typesetter.broken(font, text, 150);
        QVERIFY2(lines.size() >= least, qPrintable(QString::number(lines.size())));
        for (const QString& line : lines)
            QVERIFY(typesetter.width(font, line) <= 150.02);
        const auto letters = [](QString all) {
            all.removeIf([](QChar c) { return c.isSpace() || c.category() == QChar::Other_Control; });
            return all;
        };
        QCOMPARE(letters(lines.join(u' ')), letters(text));
    }

    void sharesFonts()
    {
        Typesetter typesetter;
        Style bold;
        bold.bold = true;
        QCOMPARE(typesetter.font(Style{}), typesetter.font(Style{}));
        QVERIFY(typesetter.font(bold) != typesetter.font(Style{}));
        const double sum = typesetter.width(0, u"fi") + typesetter.width(0, u"AV");
        QVERIFY(qAbs(sum - typesetter.width(0, u"fiAV")) < 0.01);
    }
};

QTEST_MAIN(TestLayout)
#include "tst_layout.moc"
