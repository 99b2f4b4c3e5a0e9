#include "reports/engine/Definition.h"

#include <QTemporaryDir>
#include <QTest>

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
        QCOMPARE(d.title, QStringLiteral("The \"List\""));
        QCOMPARE(d.paper, QSizeF(792, 612));
        QCOMPARE(d.margins.left(), 72.0);
        QVERIFY(qAbs(d.margins.top() - 34.02) < 0.01);
        QCOMPARE(d.source.query, QStringLiteral("Select A, B\nFrom T"));
        QCOMPARE(d.lookups.at(0).source.slot, 1);
        QCOMPARE(d.fields.at(0).name, QStringLiteral("T.A"));
        QVERIFY(d.sort.at(0).descending && d.groups.at(0).descending && d.groups.at(0).newPage);
        QCOMPARE(d.styles.at(std::size_t(d.groups.at(0).header.rows.at(0).elements.at(0).style)).size, 14.0);
        QCOMPARE(d.detail.rows.size(), std::size_t(3));
        QCOMPARE(d.detail.rows.at(0).elements.at(1).left, 72.0);
        QCOMPARE(d.detail.rows.at(0).shade, 8);
        const Definition* inner = d.subreport(QStringLiteral("INNER"));
        QVERIFY(inner && inner->source.slot == 2 && inner->linkedField == QLatin1String("A"));
        QCOMPARE(d.exports.at(0).heading, QStringLiteral("A"));
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("line");
        QTest::addColumn<int>("column");
        const auto row = [](const char* name, const QString& text, int line, int column) {
            QTest::newRow(name) << text << line << column;
        };
        row("empty", "", 1, 1);
        row("no source", "report \"x\"\n", 2, 1);
        row("unknown statement", source + "  colour red\n", 5, 3);
        row("unknown in a row", source + "detail {\n row 3pt {\n }\n}\n", 6, 6);
        row("unknown style", source + "detail {\n text 0 huge = 1\n}\n", 6, 9);
        row("formula", source + "detail {\n text 0 = 1 + \n}\n", 6, 15);
        row("continued formula", source + "let {X} = 1 + \\\n  )\n", 6, 3);
        row("unit", source + "detail {\n space 4\n}\n", 6, 9);
        row("length too large", source + "detail {\n space 400in\n}\n", 6, 8);
        row("block not closed", source + "detail {\n", 6, 1);
        row("query not closed", "source {\nSelect 1\n", 3, 1);
        row("brace too many", source + "}\n", 5, 1);
        row("words behind", source + "detail {\n} x\n", 6, 1);
        row("subreport twice", source + "subreport \"S\" {\n" + source + "}\nsubreport \"s\" {\n" + source + "}\n", 11,
            15);
        row("paper in a subreport", source + "subreport \"S\" {\npaper a4\n}\n", 6, 7);
        row("group without a key", source + "group \"G\" {\n}\n", 6, 2);
    }
    void refuses()
    {
        QFETCH(QString, text);
        try {
            (void)readDefinition(text);
            QFAIL("the definition was read");
        } catch (const ReportError& error) {
            QCOMPARE(error.number(), 3075);
            QTEST(error.place().line, "line");
            QTEST(error.place().column, "column");
        }
    }

    void tellsTheFile()
    {
        QTemporaryDir dir;
        QFile file(dir.filePath(QStringLiteral("Broken.rpt")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("report \"x\"\nbogus\n");
        file.close();
        try {
            (void)readDefinitionFile(dir.path() + QStringLiteral("\\BROKEN.RPT"));
            QFAIL("the file was read");
        } catch (const ReportError& error) {
            QVERIFY2(error.description().contains(QLatin1String("Broken.rpt, line 2")),
                     qPrintable(error.description()));
        }
        try {
            (void)readDefinitionFile(dir.filePath(QStringLiteral("None.rpt")));
            QFAIL("the file was found");
        } catch (const ReportError& error) {
            QCOMPARE(error.number(), 53);
        }
    }
};

QTEST_GUILESS_MAIN(TestDefinition)
#include "tst_definition.moc"
