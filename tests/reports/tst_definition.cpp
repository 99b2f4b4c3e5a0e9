#include "reports/engine/Definition.h"
#include "support/Failure.h"
#include "support/Table.h"

using namespace orlo;
using namespace orlo::reports;

namespace
{
const QString source = QStringLiteral("source slot 0 {\nSelect A, B\nFrom T\n}\n");
} // namespace

class TestDefinition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads()
    {
        const Definition d = readDefinition(
            QStringLiteral("# remark\r\nreport \"The \"\"List\"\"\"\npaper letter landscape\n"
                           "margins left 1in top 12mm\nstyle big 14pt bold gray 30%\n") +
            source +
            QStringLiteral(
                "lookup {A} = {Key} slot 1 {\n  Select Key, N From U\n}\n"
                "let {Long} = {A} & \\\n   {B}\nfield {T.A} = {A}\nunique {A}\nsort descending {B}\n"
                "group \"G\" {\n by descending {N}\n keep-together\n repeat-header\n new-page\n"
                " header {\n text 0 2in right big = \"x = {y}\"\n }\n}\n"
                "detail if {A} > 1 {\n row above 2pt shade 8% rule-below 0.25pt if {B} = \"{\" {\n tick-box 0\n"
                "  text 1in = {Long}\n }\n space 3pt\n subreport \"Inner\" 0.5in\n}\n"
                "subreport \"Inner\" {\n source slot 2 {\nSelect 1\n}\nlink {K} = {A}\ndetail {\n"
                "text 0 big = 1\n}\n}\nexport {\n\"A\" = {A}\n}\n"));
        QCOMPARE(d.title, "The \"List\"");
        QCOMPARE(d.paper, QSizeF(792, 612));
        QCOMPARE(d.margins.left(), 72.0);
        QVERIFY(qAbs(d.margins.top() - 34.02) < 0.01);
        QCOMPARE(d.source.query, QStringLiteral("Select A, B\nFrom T"));
        QVERIFY(d.sort.at(0).descending && d.groups.at(0).descending && d.groups.at(0).newPage);
        QCOMPARE(d.styles.at(std::size_t(d.groups.at(0).header.rows.at(0).elements.at(0).style)).size, 14.0);
        QCOMPARE(d.detail.rows.size(), std::size_t(3));
        QCOMPARE(d.detail.rows.at(0).elements.at(1).left, 72.0);
        QCOMPARE(d.detail.rows.at(0).shade, 8);
        const Definition* inner = d.subreport(QStringLiteral("INNER"));
        QVERIFY(inner && inner->source.slot == 2 && inner->linkedField == QLatin1String("A"));
    }

    // $ stands for the source that a definition needs.
    void refuses_data()
    {
        test::table({"text", "place"}, R"(
            | 1, 1
            report "x"\n | 2, 1
            $  colour red\n | 5, 3
            $detail {\n row 3pt {\n }\n}\n | 6, 6
            $detail {\n text 0 huge = 1\n}\n | 6, 9
            $detail {\n text 0 = 1 + \n}\n | 6, 15
            $let {X} = 1 + \\n  )\n | 6, 3
            $detail {\n space 4\n}\n | 6, 9
            $detail {\n space 400in\n}\n | 6, 8
            $detail {\n | 6, 1
            source {\nSelect 1\n | 3, 1
            $}\n | 5, 1
            $detail {\n} x\n | 6, 1
            $subreport "S" {\n$}\nsubreport "s" {\n$}\n | 11, 15
            $subreport "S" {\npaper a4\n}\n | 6, 7
            $group "G" {\n}\n | 6, 2
        )");
    }
    void refuses()
    {
        QFETCH(QString, text);
        const auto error = test::failureOf<ReportError>([&] { return readDefinition(text.replace(u'$', source)); });
        QVERIFY(error && error->number() == 3075);
        QTEST(QStringLiteral("%1, %2").arg(error->place().line).arg(error->place().column), "place");
    }
};

QTEST_GUILESS_MAIN(TestDefinition)
#include "tst_definition.moc"
