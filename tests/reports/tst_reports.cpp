#include "platform/Conversion.h"
#include "reporting/Definition.h"
#include "reporting/Export.h"
#include "reporting/ReportError.h"
#include "store/engine/Database.h"
#include "store/schema/Schema.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Table.h"

#include <QDir>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <functional>

using namespace orlo;
using namespace orlo::reports;

namespace
{

/// The texts of some pages, each item a line.
QString textOf(const Document& document, std::size_t first = 0, std::size_t count = SIZE_MAX)
{
    QString text;
    for (std::size_t i = first; i < document.pages.size() && i - first < count; ++i)
        for (const Item& item : document.pages[i].items)
            if (const auto* one = std::get_if<TextItem>(&item))
                text += QString(one->text).replace(u'\n', u' ') + u'\n';
    return text;
}

// The rows of the full database: table, columns, values.
constexpr auto People = R"(
Dens (Den_SID, Den_Number, Den_Name, Den_Type, Active) Values (1, 10, 'Owls', 'Bear', 'Y')
Dens (Den_SID, Den_Number, Den_Name, Den_Type, Active) Values (2, 9, '', 'Wolf', 'Y')
Scouts (Scout_SID, First_Name, Last_Name, MI, Active, Assigned_Den_SID) Values (1, 'Zoë', 'Ångström', 'Q', 'Y', 1)
Scouts (Scout_SID, First_Name, Last_Name, Active, Assigned_Den_SID) Values (2, 'Pat', 'O''Neil', 'Y', 2)
Scouts (Scout_SID, First_Name, Last_Name, Active) Values (3, 'Kim', 'Loner', 'Y')
Scouts (Scout_SID, First_Name, Last_Name, Active) Values (4, 'Old', 'Gone', 'N')
Adults (Adult_SID, First_Name, Last_Name, Active, Phone, Email) Values (1, 'Ann', 'Leader', 'Y', '555-02', 'ann@x.org')
Adults (Adult_SID, First_Name, Last_Name, Active) Values (2, 'Carl', 'Helper', 'Y')
Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title, Sort_Order) Values (1, 1, 'Den Leader', 1)
Leader_Den_Assignments (Adult_SID, Den_SID) Values (1, 2)
Insignias (Insignia_SID, Insignia_Name, Insignia_Type, Description) Values (1, 'Archery', 'Belt Loop', 'Hit the mark.')
Insignias (Insignia_SID, Insignia_Name, Insignia_Type) Values (2, 'Bobcat', 'Rank Advancement')
Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Quantity) Values (1, 1, #6/7/2004#, 3)
Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned) Values (1, 2, #7/1/2004#)
Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned) Values (2, 99, #6/8/2004#)
Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned) Values (4, 1, #6/7/2004#)
Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned) Values (1, 1, #6/7/2004#)
Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned) Values (2, 2, #6/7/2004#)
Purchase_List (Award_Name, Insignia_Type, Quantity) Values ('Archery', 'Belt Loop', 4)
Purchase_List (Quantity) Values (3))";

const QString Names = QStringLiteral("source {\nSelect First_Name,\n Last_Name From Scouts\n}\n");

} // namespace

class tst_reports : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    std::optional<store::Database> m_full;

    [[nodiscard]] static RunRequest request(const QString& file, const QString& selection = {})
    {
        RunRequest request;
        request.reportFile = ORLO_SOURCE_DIR "/src/reports/files/" + file;
        request.databases = {{0, "full"}, {1, "full"}};
        request.selectionFormula = selection;
        return request;
    }
    store::Database& open(const QString&) { return *m_full; }
    std::optional<Document> run(const RunRequest& request, const Progress& progress = {}, const FirstPage& shown = {})
    {
        return render(request, std::bind_front(&tst_reports::open, this), progress, shown);
    }
    /// A definition of the test's own, or a shipped one, on the full database.
    Document runText(const QString& text, const QString& selection = {})
    {
        if (text.endsWith(".rpt"))
            return *run(request(text, selection));
        return *render(readDefinition(text), request({}, selection), std::bind_front(&tst_reports::open, this));
    }

private Q_SLOTS:
    void initTestCase()
    {
        platform::setToday(QDate(2026, 11, 24));
        m_full = store::DBEngine::createDatabase(m_dir.filePath("full.mdb"));
        store::createSchema(*m_full);
        for (const QString& row : QString::fromUtf8(People).split(u'\n', Qt::SkipEmptyParts))
            m_full->execute("Insert Into " + row);
        m_full->execute("Update Scouts Set Birth_Date = #3/5/1996# Where Scout_SID = 1");
        m_full->execute("Update Scouts Set Birth_Date = #1/1/1001# Where Scout_SID = 2");
        m_full->execute("Update Scouts Set Birth_Date = #1/20/1997# Where Scout_SID = 3");
        m_full->execute("Update Adults Set Assigned_Den_SID = 7 Where Adult_SID = 1");
    }

    /// The rows that a formula selects, in shipped reports and in one of the test's own ($). What goes into the query
    /// selects what the formula itself selects: an "or" with a function keeps it out.
    void selects_data()
    {
        test::table({"formula", "report", "rows"}, R"(
            {Scouts.Active} = "Y"                                                          | AssignedAwards  | 3
            {Scouts.Active} = "Y" and {Assigned_Awards_Scouts.Date_Assigned} = #6/7/2004#  | AssignedAwards  | 1
            {Assigned_Awards_Scouts.Date_Assigned} in #6/7/2004# to Date ( 2004, 06, 08)   | AssignedAwards  | 3
            {Assigned_Awards_Scouts.Date_Assigned} in #6/8/2004# to #6/7/2004#             | AssignedAwards  | 0
            {Scouts.Scout_SID} = 1 and Year({Date_Assigned}) = 2004 and {Award} like "b*"  | AssignedAwards  | 1
            {Adults.Scout_SID} = 1 and {Adults.Active} = "Y"                               | AssignedAwards1 | 1
            {Adults.Assigned_Den_SID} = 2                                                  | AssignedAwards1 | 1
            {Adults.Assigned_Den_SID} = 7                                                  | AssignedAwards1 | 1
            {Last_Name} = "ÅNGSTRÖM"                                                       | $ | 2
            {Whole_Name} = "zoë ångström"                                                  | $ | 2
            {Whole_Name} <> "KIM LONER"                                                    | $ | 4
            {Kind} >= "MANY"                                                               | $ | 2
            not ({Den} = 1)                                                                | $ | 1
            {Den} <> 1 or {Kind} = "FEW"                                                   | $ | 3
            {Given} in Date(2004, 6, 7) to Date(2004, 6, 8)                                | $ | 3
            {Given} <> #6/8/2004#                                                          | $ | 3
            {Share} = 0.5                                                                  | $ | 1
            {Share} > 0.25 and {Share} <= 1                                                | $ | 4
            {Many} = true                                                                  | $ | 2
        )");
    }
    void selects()
    {
        QFETCH(QString, formula);
        QFETCH(QString, report);
        const QString own =
            "source {\nSelect S.Last_Name, S.First_Name & ' ' & S.Last_Name As Whole_Name, S.Assigned_Den_SID As Den, "
            "IIf(S.Scout_SID = 1, 'Many', 'Few') As Kind, 1 / (S.Scout_SID * 1.0) As Share, S.Scout_SID = 1 As Many, "
            "A.Date_Assigned As Given From Scouts As S Left Join Assigned_Awards_Scouts As A "
            "On A.Scout_SID = S.Scout_SID\n}\nsort {Last_Name}\nsort {Given}\n";
        report = report == "$" ? own : report + ".rpt";
        const Document inQuery = runText(report, formula);
        QTEST(QString::number(inQuery.rows.size()), "rows");
        QCOMPARE(csvText(inQuery), csvText(runText(report, QStringLiteral("(%1) or Length(\"\") = 2").arg(formula))));
    }

    // $ stands for a source of four lines.
    void tellsWhereADefinitionIsWrong_data()
    {
        test::table({"text", "failure"}, R"(
                                                                    | 3075 at 1, 1
            report "x"\n                                            | 3075 at 2, 1
            $  colour red\n                                         | 3075 at 5, 3
            $detail {\n row 3pt {\n }\n}\n                          | 3075 at 6, 6
            $detail {\n text 0 huge = 1\n}\n                        | 3075 at 6, 9
            $detail {\n text 0 = 1 + \n}\n                          | 3075 at 6, 15
            $let {X} = 1 + \\n  )\n                                 | 3075 at 6, 3
            $detail {\n space 4\n}\n                                | 3075 at 6, 9
            $detail {\n space 400in\n}\n                            | 3075 at 6, 8
            $detail {\n                                             | 3075 at 6, 1
            source {\nSelect 1\n                                    | 3075 at 3, 1
            $}\n                                                    | 3075 at 5, 1
            $detail {\n} x\n                                        | 3075 at 6, 1
            $subreport "S" {\n$}\nsubreport "s" {\n$}\n             | 3075 at 11, 15
            $subreport "S" {\npaper a4\n}\n                         | 3075 at 6, 7
            $group "G" {\n}\n                                       | 3075 at 6, 2
            $detail {\n text 0 = {Last_Name}\n text 0 = {Shoe}\n}\n | 3061 at 7, 11
            # x\nsource {\nSelect Shoe From Scouts\n}\n             | 3061 at 3, 8
            source {\nSelect * From Shoes\n}\n                      | 3078 at 2, 15
            source slot 5 {\nSelect * From Shoes\n}\n               | 3024 at 1, 8
            $detail {\n text 0 = PageNumber\n}\n                    | 3075 at 6, 11
            $detail {\n subreport "None"\n}\n                       | 3061 at 6, 12
            $detail {\n text 0 = Count("None")\n}\n                 | 3061 at 6, 11
            $let {A} = {B}\nlet {B} = 1\n                           | 3061 at 5, 11
            $let {last_name} = 1\n                                  | 3075 at 5, 5
            source {\nSelect Foo(1) From Scouts\n}\n               | 3075 at 2, 8
            $include "none.inc"\n                                   | 53 at 5, 9
            $include "../pack.inc"\n                                | 3075 at 5, 9
            $sort Count()\n                                         | 3075 at 5, 6
            $let {C} = Count()\nunique {C}\n                         | 3075 at 5, 11
            $detail {\n text 0 = Count("Page")\n}\n                 | 3075 at 6, 11
            $let {P} = PageNumber\ndetail {\n text 0 = {P}\n}\n      | 3075 at 5, 11
            $detail {\n text 0 (if true then "no") = 1\n}\n         | 3061 at 6, 10
            $style x color "blau"\n                                 | 3075 at 5, 15
            $headings columns 2 {\n}\n                              | 3075 at 5, 10
            $detail columns 2 {\n subreport "S"\n}\n               | 3075 at 6, 2
            $group "G" {\nby 1\n}\nexport {\n"A" = Sum(1, "G")\n}\n | 3075 at 9, 7
            $export {\n"A" = GroupNumber\n}\n                      | 3075 at 6, 7
            $let {S} = Count()\nnothing {\n text 0 = Previous({S})\n}\n | 3075 at 5, 11
            $sort OnFirstRecord\n                                   | 3075 at 5, 6
            $let {N} = ToNumber({Last_Name})\ndetail {\n text 0 = {N}\n}\n | 13 at 5, 11
        )");
    }
    void tellsWhereADefinitionIsWrong()
    {
        QFETCH(QString, text);
        const auto error = test::failureOf<ReportError>([&] { return runText(text.replace(u'$', Names)); });
        const Place at = error ? error->place() : Place();
        QTEST(error ? QStringLiteral("%1 at %2, %3").arg(error->number()).arg(at.line).arg(at.column) : "", "failure");
    }

    /// Page ranges, and the first page ahead of the others, are those of the whole; a cancelled run gives nothing.
    void runsOverPages()
    {
        m_full->execute("Insert Into Scouts (Scout_SID, First_Name, Last_Name, Active, Assigned_Den_SID) "
                        "Select 100 + A.Scout_SID + 4 * B.Scout_SID + 16 * C.Scout_SID + 64 * D.Scout_SID + "
                        "256 * E.Scout_SID, 'F', A.Last_Name, 'Y', 1 "
                        "From Scouts As A, Scouts As B, Scouts As C, Scouts As D, Scouts As E");
        RunRequest wanted = request("ScoutPhoneList1.rpt");
        double told = 0; // of the whole run
        std::optional<Document> first;
        const auto all = run(
            wanted, [&](double done, int total) { return (told = done / total) >= 0; },
            [&](Document&& page) {
                first = page;
                QVERIFY(told < 0.55);
            });
        wanted.firstPage = 2;
        wanted.lastPage = 3;
        const Document some = *run(wanted);
        int calls = 0;
        QVERIFY(!run(wanted, [&](int, int) { return ++calls < 2; }));
        m_full->execute("Delete From Scouts Where First_Name = 'F'");

        QVERIFY(told > 0.9 && first && !first->complete && all->complete);
        const QString ofAll = QStringLiteral(" of %1\n").arg(all->pages.size());
        QCOMPARE(textOf(*first).replace(" of …\n", ofAll), textOf(*all, 0, 1));
        QCOMPARE(textOf(some), textOf(*all, 1, 2));
        QCOMPARE(all->outline.size(), 3);
        for (const auto& mark : all->outline) // each where its group begins
            QVERIFY2(textOf(*all, std::size_t(mark.page), 1).contains(mark.text + '\n'), qPrintable(mark.text));
        QVERIFY(all->outline.back().page > 1);
        QVERIFY(textOf(some).contains("Bear Den 10 (continued)") && textOf(some).contains("Page 2" + ofAll));
    }

    void laysOutAListOfItsOwnOnOnePage()
    {
        const QString source = "source {\nSelect First_Name, Last_Name, MI From Scouts\n}\n";
        const Document document = runText(
            "# remark\r\nreport \"The \"\"List\"\"\"\npaper letter landscape\nmargins left 1in top 12mm\n"
            "style big 14pt\n" +
            source +
            "let {Long} = {Last_Name} & \\\n \"{\"\nsort descending {Last_Name}\n"
            "detail {\nrow below 110pt {\ntext 2in big = {Long}\n}\n}\nreport-footer {\ntext 0 = Count({MI}) & \"/\" & "
            "Count()\nsubreport \"S\"\n}\nsubreport "
            "\"s\" {\n" +
            source + "detail if {First_Name} <> \"Kim\" {\ntext 0 = {First_Name}\nspace 20pt\n}\n}\n");
        QCOMPARE(document.title, "The \"List\"");
        QCOMPARE(document.paper, QSizeF(792, 612));
        QCOMPARE(textOf(document, 0, 1), "O'Neil{\nLoner{\nGone{\nÅngström{\n1/4\n");
        QCOMPARE(textOf(document, 1, 1), "Zoë\nPat\nOld\n");
        const auto& first = std::get<TextItem>(document.pages[0].items[0]);
        QVERIFY(qAbs(first.box.left() - 216) < 0.01 && qAbs(first.box.top() - 34.02) < 0.01);
        QCOMPARE(document.fonts.at(std::size_t(first.font)).pointSizeF(), 14.0);
    }

    /// What stands in a report's text, and the texts of its first page.
    void printsWhatItSays_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("page");
        QTest::newRow("named source, without rows too") << "source {\nSelect 1 As N From Scouts Where 1 = 0\n}\nsource "
                                                           "\"Pack\" {\nSelect 7 As Num\n}\nlet {X} = {pack.num} "
                                                           "+ 1\npage-header {\ntext 0 = {X}\n}\n"
                                                        << "8\n";
        QTest::newRow("the last of two of a name")
            << "source {\nSelect 1 As N\n}\nsource \"Pack\" {\nSelect 7 As Num\n}\nlet {X} = {Pack.Num}\nsource "
               "\"pack\" "
               "{\nSelect 8 As Num\n}\nlet {x} = {X} & \"!\"\ndetail {\ntext 0 = {X}\nsubreport \"A\"\nsubreport "
               "\"B\"\n}\nsubreport \"A\" {\nsource {\nSelect 1 As N\n}\nsource \"Pack\" {\nSelect 9 As Num\n}\n"
               "detail {\ntext 0 = {Pack.Num}\n}\n}\nsubreport \"B\" {\nsource {\nSelect 1 As N\n}\ndetail {\ntext 0 = "
               "{Pack.Num}\n}\n}\n"
            << "8!\n9\n8\n";
        const QString awards =
            "source {\nSelect Scout_SID As S, IIf(IsNull(Quantity), 1, Quantity) As Q From "
            "Assigned_Awards_Scouts\n}\ngroup \"G\" {\nby {S}\nsort descending Sum({Q})\n%1header {\ntext 0 = "
            "GroupNumber & \": \" & Sum({Q}) & \" of \" & Sum({Q}, \"Report\")\n}\n}\n";
        QTest::newRow("groups by their sums") << awards.arg(QString()) << "1: 4 of 6\n2: 1 of 6\n3: 1 of 6\n";
        QTest::newRow("first group") << awards.arg("top 1\n") << "1: 4 of 4\n";
        QTest::newRow("running and neighbours")
            << "source {\nSelect Den_Number As N From Dens\n}\nsort {N}\ndetail {\ntext 0 = RunningSum({N}) & \"/\" & "
               "RunningCount() & \"/\" & Previous({N}) & \"/\" & Next({N}) & OnLastRecord & Median({N})\n}\n"
            << "9/1//10False9.5\n19/2/9/True9.5\n";
        QTest::newRow("columns")
            << "source {\nSelect Den_Number As N From Dens\n}\nsort {N}\ndetail columns 2 gap 1in {\ntext 0 "
               "= {N}\n}\npage-footer {\ntext 0 = Sum({N}, \"Page\")\n}\n"
            << "9\n10\n19\n";
        QTest::newRow("joined lookup")
            << "source {\nSelect 1 As A\n}\nlookup {A} = {K} joined {\nSelect 1 As K, Den_Type From Dens Order By "
               "Den_Number\n}\ndetail {\ntext 0 = {Den_Type}\n}\n"
            << "Wolf, Bear\n";
        QTest::newRow("blocks side by side")
            << "source {\nSelect 1 As A\n}\ndetail {\nrow {\nrows {\nrow {\ntext 0 = \"a\"\n}\nrow "
               "{\ntext 0 = \"b\"\n}\n}\nrows 2in {\nrow {\ntext 0 = \"c\"\n}\n}\n}\n}\n"
            << "a\nb\nc\n";
    }
    void printsWhatItSays()
    {
        QFETCH(QString, text);
        QTEST(textOf(runText(text), 0, 1), "page");
    }

    /// An included file gives what the report doesn't; its faults are told of it. What no paper shows well is told,
    /// too.
    void includesAndWarns()
    {
        const auto write = [&](const QString& name, const QByteArray& bytes) {
            QFile file(m_dir.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) >= 0);
        };
        write("style.inc", "style big font \"No Such\" 20pt color navy\npage-header {\ntext 0 big = {Head\xE9}\n}\n");
        write("own.rpt",
              "include \"style.inc\"\ninclude \"pack.inc\"\nlet {Heading} = 1\nlet {Subheading} = 2\n"
              "source {\nSelect 1 As A\n}\ndetail {\nrow {\ntext 0 2in (if {A} = 1 then \"big\" else \"plain\") = "
              "{A}\ntext 1in = 2\nline 8in 1pt\npicture 0 1in 20in \"mark.png\"\n}\n}\n");
        QVERIFY(QImage(2, 2, QImage::Format_RGB32).save(m_dir.filePath("mark.png")));
        RunRequest wanted = request({});
        wanted.reportFile = m_dir.filePath("own.rpt");
        const Document document = *run(wanted);
        QCOMPARE(document.files,
                 (QStringList{wanted.reportFile, m_dir.filePath("style.inc"), m_dir.filePath("pack.inc"),
                              m_dir.filePath("pack.png"), m_dir.filePath("mark.png")}));
        QCOMPARE(document.warnings.join(u'\n'),
                 "The file style.inc isn't UTF-8, so its accented letters may be wrong.\n"
                 "The font \"No Such\" isn't installed; another takes its place. (style.inc, line 1, column 7)\n"
                 "This reaches beyond the right margin. (own.rpt, line 12, column 6)\n"
                 "This picture is higher than a page's room for it. (own.rpt, line 13, column 9)\n"
                 "This text stands over the one that begins before it. (own.rpt, line 11, column 6)");
        write("style.inc", "page-header {\ntext 0 = {None}\n}\n");
        write("own.rpt", "source {\nSelect 1 As A\n}\ninclude \"style.inc\"\n");
        const auto error = test::failureOf<ReportError>([&] { return run(wanted); });
        QCOMPARE(error->description(), "There is no field {None}. (style.inc, line 2, column 10)");
    }

    /// The manual's examples: changes ("diff") of the shipped files, whole reports ("rpt"), and the lines ("text") that
    /// the report before them prints in their order; the tables' formulas and what they give.
    void runsTheManual()
    {
        const QString manual = QString::fromUtf8(test::contents(ORLO_SOURCE_DIR "/docs/manual/report-files.md"));
        const QTemporaryDir folder;
        const QDir files(QStringLiteral(ORLO_SOURCE_DIR "/src/reports/files"));
        for (const QString& file : files.entryList({"*.rpt", "*.inc"}))
            QVERIFY(QFile::copy(files.filePath(file), folder.filePath(file)));
        static const QRegularExpression block("^( *)```(diff|rpt|text) ?(.*)\n((?:.*\n)*?)\\1```$",
                                              QRegularExpression::MultilineOption);
        RunRequest wanted = request({});
        wanted.reportFile = folder.filePath("AwardListing.rpt");
        int told = 0;
        for (const QRegularExpressionMatch& match : block.globalMatch(manual)) {
            const QString kind = match.captured(2);
            QStringList lines = match.captured(4).chopped(1).split(u'\n');
            for (QString& line : lines)
                line = line.mid(match.captured(1).size());
            if (kind == "diff") {
                const QString path = folder.filePath(match.captured(3));
                const QString before = QString::fromUtf8(test::contents(path));
                const auto marked = [&](QChar mark) {
                    QString text;
                    for (const QString& line : lines)
                        if (line.startsWith(mark))
                            text += line.mid(1) + u'\n';
                    return text;
                };
                QCOMPARE(before.count(marked(u'-')), 1);
                QFile file(path);
                QVERIFY(file.open(QIODevice::WriteOnly));
                file.write(QString(before).replace(marked(u'-'), marked(u'+')).toUtf8());
                if (path.endsWith(".rpt"))
                    wanted.reportFile = path;
            } else if (kind == "rpt") {
                wanted.reportFile = folder.filePath("new.rpt");
                QFile file(wanted.reportFile);
                QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
                file.write(lines.join(u'\n').toUtf8());
            }
            const Document document = *run(wanted);
            QVERIFY2(document.warnings.isEmpty(), qPrintable(document.warnings.join(u'\n')));
            qsizetype at = 0;
            const QString printed = u'\n' + textOf(document).replace(u' ', u'\n');
            for (const QString& line : kind == "text" ? lines : QStringList()) {
                at = printed.indexOf(u'\n' + QString(line).replace(u' ', u'\n') + u'\n', at);
                QVERIFY2(at >= 0, qPrintable(line + " isn't in\n" + textOf(document)));
                ++told;
            }
        }
        QCOMPARE(told, 15);

        static const QRegularExpression row("^\\|.*\\| `([^|]+)` \\| `([^|]*)` \\|$",
                                            QRegularExpression::MultilineOption);
        int computed = 0;
        for (const QRegularExpressionMatch& match : row.globalMatch(manual)) {
            const QString page =
                textOf(runText("source {\nSelect 1 As A\n}\ndetail {\ntext 0 = " + match.captured(1) + "\n}\n"));
            QCOMPARE(match.captured(1) + " = " + page.trimmed(), match.captured(1) + " = " + match.captured(2));
            ++computed;
        }
        QVERIFY(computed > 35);
    }

    /// A text longer than a page runs on; no word of it is lost and none leaves the paper.
    void neverClips()
    {
        QStringList words;
        for (int i = 0; i < 3000; ++i)
            words << QStringLiteral("word%1").arg(i);
        m_full->execute("Update Insignias Set Description = '" + words.join(u' ') + "' Where Insignia_SID = 2");
        const Document document = *run(request("AwardListDetail.rpt"));
        QVERIFY(document.pages.size() > 1);
        const QString text = textOf(document).replace(u'\n', u' ');
        for (const QString& word : words)
            QVERIFY2(text.contains(u' ' + word + u' '), qPrintable(word));
        for (const Page& page : document.pages)
            for (const Item& item : page.items)
                if (const auto* one = std::get_if<TextItem>(&item))
                    QVERIFY(QRectF(QPointF(), document.paper).contains(one->box));
    }

    /// Reading, sorting, laying out and exporting tell how far they are, and each can be cancelled.
    void tellsItsProgress()
    {
        RunRequest many = request("PurchaseList.rpt");
        QTemporaryDir folder;
        many.reportFile = folder.filePath("many.rpt");
        QFile file(many.reportFile);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("report \"Many\"\nsource slot 0 {\nSelect A.Last_Name, B.Last_Name As B, C.Last_Name As C From "
                   "Scouts As A, "
                   "Scouts As B, Scouts As C, Scouts As D, Scouts As E, Scouts As F\n}\nsort {C}\ndetail {\ntext 0 = "
                   "{B}\n}\n");
        file.close();
        QList<int> told;
        const auto document = run(many, [&](int done, int total) {
            told << done * 100 / total;
            return true;
        });
        QVERIFY2(document->rows.size() > 2000, qPrintable(QString::number(document->rows.size())));
        QVERIFY(std::is_sorted(told.begin(), told.end()));
        for (const int end : {15, 20, 30, 80, 92, 100}) {
            const auto phase = std::ranges::count_if(told, [&](int percent) { return percent < end; });
            QVERIFY2(phase > 0, qPrintable(QString::number(end)));
            told.remove(0, phase);
        }
        for (int calls = 1; calls < 20; calls += 3)
            QVERIFY(!run(many, [&, left = calls](int, int) mutable { return --left > 0; }));
    }

    void writesFiles()
    {
        const Document document = *run(request("PurchaseList.rpt"));
        const auto boxes = std::ranges::count_if(
            document.pages[0].items, [](const Item& item) { return std::holds_alternative<BoxItem>(item); });
        QCOMPARE(boxes, 2); // one to tick on each line
        Document quoting;
        quoting.columns = QStringList{"a,b", "say \"x\""};
        quoting.rows = {{"two\nlines", "é"}};
        QCOMPARE(csvText(quoting), QStringLiteral("\"a,b\",\"say \"\"x\"\"\"\r\n\"two\nlines\",é\r\n"));

        // What a spreadsheet would compute is a text, telephone numbers stay; subreports follow, each row with its own.
        const Document blocks = runText("source {\nSelect Scout_SID, Last_Name From Scouts Where Scout_SID < 3\n}\n"
                                        "export {\n\"Name\" = {Last_Name}\n\"Text\" = \"@x\"\n}\n"
                                        "detail {\nsubreport \"Own\"\nsubreport \"All\"\n}\n"
                                        "subreport \"Own\" {\nsource {\nSelect Scout_SID As S From Scouts\n}\n"
                                        "link {S} = {Scout_SID}\nexport {\n\"No\" = \"=1+\" & {S}\n}\n"
                                        "subreport \"Deep\" {\nsource {\nSelect Scout_SID As T From Scouts\n}\n"
                                        "link {T} = {S}\n}\n}\n"
                                        "subreport \"All\" {\nsource {\nSelect \"+1 555\" As Phone From Scouts Where "
                                        "Scout_SID = 1\n}\n}\n");
        const QString first = blocks.rows[0][0];
        const QString csv = csvText(blocks);
        QVERIFY2(csv.startsWith("Name,Text\r\n" + first + ",'@x\r\n"), qPrintable(csv));
        QVERIFY2(csv.contains("\r\n\r\nOwn\r\nName,Text,No\r\n" + first + ",'@x,'=1+"), qPrintable(csv));
        QVERIFY2(csv.contains("\r\n\r\nDeep\r\nName,Text,No,T\r\n" + first + ",'@x,'=1+"), qPrintable(csv));
        QVERIFY2(csv.contains("\r\n\r\nAll\r\nPhone\r\n+1 555\r\n"), qPrintable(csv));

        const QString none = m_dir.filePath("none.pdf");
        QVERIFY(!writePdf(document, none, [](int, int) { return false; }) && !QFile::exists(none));
        QVERIFY(test::failureOf<ReportError>([&] { return writePdf(document, m_dir.filePath("no/such.pdf")); }));
        QVERIFY(test::failureOf<ReportError>([&] { return writeCsv(document, m_dir.filePath("no/such.csv")); }));
    }
};

ORLO_TEST(tst_reports)
#include "tst_reports.moc"
