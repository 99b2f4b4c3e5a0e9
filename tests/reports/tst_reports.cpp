#include "platform/Conversion.h"
#include "reports/engine/Definition.h"
#include "reports/engine/Export.h"
#include "reports/engine/ReportError.h"
#include "store/Schema.h"
#include "store/engine/Database.h"
#include "support/Failure.h"
#include "support/Table.h"

#include <QTemporaryDir>

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
Purchase_List (Quantity) Values (3)
Other_Purchase_List (Item_Name, Quantity) Values ('Candles, "large"', 12))";

} // namespace

class TestReports : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    std::optional<store::Database> m_full;

    store::Database fresh(const QString& name) const
    {
        store::Database database = store::DBEngine::createDatabase(m_dir.filePath(name));
        store::createSchema(database);
        return database;
    }

    [[nodiscard]] static RunRequest request(const QString& file)
    {
        RunRequest request;
        request.reportFile = ORLO_SOURCE_DIR "/src/reports/files/" + file;
        request.databases = {{0, "full"}, {1, "full"}};
        return request;
    }
    std::optional<Document> run(const RunRequest& request, const Progress& progress = {})
    {
        return render(
            request, [&](const QString&) -> store::Database& { return *m_full; }, progress);
    }
    /// A definition of the test's own on the full database.
    Document runText(const QString& text, const QString& selection = {})
    {
        RunRequest own = request({});
        own.selectionFormula = selection;
        return *render(readDefinition(text), own, [&](const QString&) -> store::Database& { return *m_full; });
    }

private Q_SLOTS:
    void initTestCase()
    {
        platform::setToday(QDate(2026, 11, 24));
        m_full = fresh("full.mdb");
        for (const QString& row : QString::fromUtf8(People).split(u'\n', Qt::SkipEmptyParts))
            m_full->execute("Insert Into " + row);
        m_full->execute("Update Adults Set Assigned_Den_SID = 7 Where Adult_SID = 1");
    }

    void selects_data()
    {
        test::table({"formula", "outcome"}, R"(
            {Scouts.Active} = "Y"                                      | 3 rows
            {Scouts.Active} = "Y" and {Assigned_Awards_Scouts.Date_Assigned} = Date ( 2004, 06, 07) | 1 rows
            {Assigned_Awards_Scouts.Date_Assigned} in Date ( 2004, 06, 07) to Date ( 2004, 06, 08) | 3 rows
            {Assigned_Awards_Scouts.Date_Assigned} in Date ( 2004, 06, 08) to Date ( 2004, 06, 07) | 0 rows
            {Scouts.Scout_SID} = 1 and Year({Date_Assigned}) = 2004 and {Award} like "b*" | 1 rows
            {Adults.Scout_SID} = 1 and {Adults.Active} = "Y"           | 1 rows
            {Adults.Assigned_Den_SID} = 2                              | 1 rows
            {Adults.Assigned_Den_SID} = 7                              | 1 rows
            {Scouts.Active} =                                          | failure 3075
            {Scouts.Shoe} = 1                                          | failure 3061
            1                                                          | failure 13
            Year({Date_Assigned}) = "x"                                | failure 13
            {Scouts.Active} > {Scouts.Scout_SID}                       | failure 13
        )");
    }
    void selects()
    {
        QFETCH(QString, formula);
        RunRequest wanted = request(formula.contains("Adults") ? "AssignedAwards1.rpt" : "AssignedAwards.rpt");
        wanted.selectionFormula = formula;
        wanted.reportTitle = " for Date: 6/7/2004";
        QString outcome;
        const int failure = test::failureNumber([&] {
            const Document document = *run(wanted);
            outcome = QStringLiteral("%1 rows").arg(document.rows.size());
            QVERIFY(textOf(document).contains("\nfor Date: 6/7/2004\n"));
            QCOMPARE(document.title, "Assigned Awards for Date: 6/7/2004");
        });
        QTEST(failure == 0 ? outcome : QStringLiteral("failure %1").arg(failure), "outcome");
    }

    /// What goes into the query selects the rows that the formula itself selects: an "or" with a function keeps it out.
    void handsDownTheSameSelection_data()
    {
        test::table({"formula", "rows"}, R"(
            {Last_Name} = "ÅNGSTRÖM"                        | 2
            {Whole_Name} = "zoë ångström"                   | 2
            {Whole_Name} <> "KIM LONER"                     | 4
            {Kind} >= "MANY"                                | 2
            not ({Den} = 1)                                 | 1
            {Den} <> 1 or {Kind} = "FEW"                    | 3
            {Given} in Date(2004, 6, 7) to Date(2004, 6, 8) | 3
            {Given} <> #6/8/2004#                           | 3
            {Share} = 0.5                                   | 1
            {Share} > 0.25 and {Share} <= 1                 | 4
            {Many} = true                                   | 2
        )");
    }
    void handsDownTheSameSelection()
    {
        QFETCH(QString, formula);
        const QString definition =
            "source {\nSelect S.Last_Name, S.First_Name & ' ' & S.Last_Name As Whole_Name, S.Assigned_Den_SID As Den, "
            "IIf(S.Scout_SID = 1, 'Many', 'Few') As Kind, 1 / (S.Scout_SID * 1.0) As Share, S.Scout_SID = 1 As Many, "
            "A.Date_Assigned As Given From Scouts As S Left Join Assigned_Awards_Scouts As A "
            "On A.Scout_SID = S.Scout_SID\n}\nsort {Last_Name}\nsort {Given}\n";
        const Document inQuery = runText(definition, formula);
        QTEST(QString::number(inQuery.rows.size()), "rows");
        QCOMPARE(csvText(inQuery),
                 csvText(runText(definition, QStringLiteral("(%1) or Length(\"\") = 2").arg(formula))));
    }

    void needsItsFiles()
    {
        const auto failure = [&](const QString& file, const Slots& databases) {
            RunRequest wanted = request(file);
            wanted.databases = databases;
            return test::failureNumber([&] { return run(wanted); });
        };
        QCOMPARE(failure("AwardListing.rpt", {}), 3024);
        QCOMPARE(failure("ScoutPhoneList1.rpt", {{0, "full"}, {1, {}}}), 3024);
        QCOMPARE(failure("scoutphonelist.RPT", {{0, "full"}, {1, {}}}), 0); // the alphabetical list has one slot
    }

    // $ stands for a source with three lines.
    void tellsWhereADefinitionIsWrong_data()
    {
        test::table({"text", "failure"}, R"(
            $detail {\n text 0 = {Last_Name}\n text 0 = {Shoe}\n}\n | 3061 in line 6
            # x\nsource {\nSelect Shoe From Scouts\n}\n             | 3061 in line 2
            source {\nSelect * From Shoes\n}\n                      | 3078 in line 1
            $detail {\n text 0 = PageNumber\n}\n                    | 3075 in line 5
            $detail {\n subreport "None"\n}\n                       | 3061 in line 5
            $detail {\n text 0 = Count("None")\n}\n                 | 3061 in line 5
            $let {A} = {B}\nlet {B} = 1\n                           | 3061 in line 4
            $let {last_name} = 1\n                                  | 3075 in line 4
        )");
    }
    void tellsWhereADefinitionIsWrong()
    {
        QFETCH(QString, text);
        text.replace("$", "source {\nSelect Last_Name, First_Name From Scouts\n}\n");
        const auto error = test::failureOf<ReportError>([&] { return runText(text); });
        QVERIFY(error);
        QTEST(QStringLiteral("%1 in line %2").arg(error->number()).arg(error->place().line), "failure");
    }

    /// Page ranges, and the first page ahead of the others, are those of the whole; a cancelled run gives nothing.
    void runsOverPages()
    {
        const QString scout = "Insert Into Scouts (Scout_SID, First_Name, Last_Name, Active, Assigned_Den_SID) ";
        m_full->execute(scout + "Select Scout_SID + 100, 'F', Last_Name, 'Y', 1 From Scouts");
        for (int more = 100; more <= 25'600; more *= 2)
            m_full->execute(scout + QStringLiteral("Select Scout_SID + %1, First_Name, Last_Name, 'Y', 1 From Scouts "
                                                   "Where Scout_SID > 100")
                                        .arg(more));
        RunRequest wanted = request("ScoutPhoneList1.rpt");
        int laidOut = 0;
        std::optional<Document> first;
        const auto open = [&](const QString&) -> store::Database& { return *m_full; };
        const auto all = render(
            wanted, open,
            [&](int done, int) {
                laidOut = done;
                return true;
            },
            [&](Document&& page) {
                first = page;
                QVERIFY(laidOut < 500);
            });
        wanted.firstPage = 2;
        wanted.lastPage = 3;
        const Document some = *run(wanted);
        int calls = 0;
        QVERIFY(!run(wanted, [&](int, int) { return ++calls < 2; }));
        m_full->execute("Delete From Scouts Where Scout_SID > 100");

        QVERIFY(laidOut > 1000 && first && !first->complete && all->complete);
        const QString ofAll = QStringLiteral(" of %1\n").arg(all->pages.size());
        QCOMPARE(textOf(*first).replace(" of …\n", ofAll), textOf(*all, 0, 1));
        QCOMPARE(first->pages[0].items.size(), all->pages[0].items.size());
        QCOMPARE(textOf(some), textOf(*all, 1, 2));
        QVERIFY(textOf(some).contains("Bear Den 10 (continued)") && textOf(some).contains("Page 2" + ofAll));
        QCOMPARE(all->outline.size(), std::size_t(3));
    }

    void keepsAListOfItsOwnOnOnePage()
    {
        const QString source = "source {\nSelect First_Name, Last_Name From Scouts\n}\ndetail {\n";
        const Document document = runText(
            source + "text 0 = {Last_Name}\nspace 150pt\n}\nreport-footer {\nsubreport \"S\"\n}\nsubreport \"S\" {\n" +
            source + "text 0 = {First_Name}\nspace 20pt\n}\n}\n");
        QCOMPARE(textOf(document, 0, 1), "Ångström\nO'Neil\nLoner\nGone\n");
        QCOMPARE(textOf(document, 1, 1), "Zoë\nPat\nKim\nOld\n");
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

    void writesFiles()
    {
        const Document document = *run(request("PurchaseList.rpt"));
        QCOMPARE(csvText(document), QStringLiteral("Quantity,Award Name,Award Type\r\n4,Archery,Belt Loop\r\n"
                                                   "3,(award no longer in the catalogue),\r\n"));
        const auto& items = document.pages[0].items;
        const auto isBox = [](const Item& item) { return std::holds_alternative<BoxItem>(item); };
        QCOMPARE(std::count_if(items.begin(), items.end(), isBox), 3); // one to tick on each line
        Document quoting;
        quoting.columns = QStringList{"a,b", "say \"x\""};
        quoting.rows = {{"two\nlines", "é"}};
        QCOMPARE(csvText(quoting), QStringLiteral("\"a,b\",\"say \"\"x\"\"\"\r\n\"two\nlines\",é\r\n"));

        const QString path = m_dir.filePath("list.pdf");
        const QString none = m_dir.filePath("none.pdf");
        QVERIFY(writePdf(document, path));
        QVERIFY(!writePdf(document, none, [](int, int) { return false; }) && !QFile::exists(none));
        QVERIFY(test::failureOf<ReportError>([&] { return writePdf(document, m_dir.filePath("no/such.pdf")); }));
        QVERIFY(test::failureOf<ReportError>([&] { return writeCsv(document, m_dir.filePath("no/such.csv")); }));
    }
};

QTEST_MAIN(TestReports)
#include "tst_reports.moc"
