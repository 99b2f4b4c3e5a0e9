#include "platform/Conversion.h"
#include "reports/engine/Definition.h"
#include "reports/engine/Export.h"
#include "reports/engine/Paint.h"
#include "reports/engine/ReportError.h"
#include "store/Schema.h"
#include "store/engine/Database.h"
#include "support/Failure.h"
#include "support/Table.h"

#include <QPainter>
#include <QProcess>
#include <QStandardPaths>
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
Adults (Adult_SID, First_Name, Last_Name, Active) Values (3, 'Former', 'Adult', 'N')
Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title, Sort_Order) Values (1, 1, 'Den Leader', 1)
Leader_Den_Assignments (Adult_SID, Den_SID) Values (1, 2)
Leader_Pack_Assn (Position_Title, Leader_SID, Sort_Order) Values ('Cub Master', 2, 1)
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
    std::optional<store::Database> m_empty;

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
        const auto open = [&](const QString& path) -> store::Database& { return path == "full" ? *m_full : *m_empty; };
        return render(request, open, progress);
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
        m_empty = fresh("empty.mdb");
        for (const QString& row : QString::fromUtf8(People).split(u'\n', Qt::SkipEmptyParts))
            m_full->execute("Insert Into " + row);
        m_full->execute("Update Adults Set Assigned_Den_SID = 7 Where Adult_SID = 1");
        m_full->execute("Update Scouts Set Phone = '555-0101', Parent_Name1 = 'Ada', Parent1_Work_Phone = '555-0191', "
                        "Parent_Name2 = 'Bo' Where Scout_SID = 1");
    }

    void renders_data()
    {
        QTest::addColumn<QString>("inOrder"); ///< texts that follow one another, parted by semicolons
        QTest::addColumn<int>("rows");
        QTest::addColumn<QString>("nothing");
        const auto row = [](const char* file, int rows, const char* nothing, const char* inOrder) {
            QTest::newRow(file) << QString::fromUtf8(inOrder) << rows << nothing;
        };
        row("PurchaseList.rpt", 2, "There is nothing else to buy.",
            "Verrano (ORLO);Awards;4;Archery;Belt Loop;3;(award no longer in the catalogue);7;Other Items;12;"
            "Candles, \"large\"");
        row("AssignedAwards.rpt", 4, "No assigned awards match this selection.",
            "O'Neil, Pat;Wolf Den 9;6/8/2004;(award no longer in the catalogue);Ångström, Zoë Q.;Bear Den 10;6/7/2004;"
            "Archery;3;7/1/2004;Bobcat;4 awards;6 awards in all");
        row("AssignedAwards1.rpt", 2, "No assigned awards match this selection.",
            "Helper, Carl;Bobcat;Leader, Ann;Archery;2 awards in all");
        row("AwardListing.rpt", 2, "The catalogue holds no awards.",
            "Belt Loop;1 award;Archery;Rank Advancement;Bobcat;2 awards in all");
        row("AwardListDetail.rpt", 2, "The catalogue holds no awards.", "Archery;Hit the mark.;Bobcat");
        row("ScoutPhoneList.rpt", 3, "There are no active scouts.",
            "Loner, Kim;O'Neil, Pat;Ångström, Zoë Q.;555-0101;Ada;555-0191;Bo;3 scouts in all");
        row("ScoutPhoneList1.rpt", 3, "There are no active scouts.",
            "Wolf Den 9;O'Neil, Pat;Bear Den 10;Ångström, Zoë Q.;No den;Loner, Kim");
        row("AdultPhoneList.rpt", 2, "There are no active adults.",
            "Helper, Carl;Cub Master;Leader, Ann;555-02;ann@x.org;Den Leader, Bear Den 10;"
            "Leader, Wolf Den 9;2 adults in all");
        row("AdultPhoneList1.rpt", 3, "There are no active adults.",
            "Wolf Den 9;Leader, Ann;Bear Den 10;Leader, Ann;Den Leader;No den;Helper, Carl;2 adults in all;"
            "Positions of the Pack;Cub Master;Helper, Carl");
        row("CombinedRoster.rpt", 5, "There are no active scouts, and no active leaders of dens.",
            "Wolf Den 9;Leader;Leader, Ann;Scout;O'Neil, Pat;Bear Den 10, Owls;1 leader, 1 scout;Den Leader;"
            "Ångström, Zoë Q.;No den;Loner, Kim;3 scouts in all");
    }
    void renders()
    {
        const QString file = QTest::currentDataTag();
        QFETCH(QString, inOrder);
        RunRequest wanted = request(file);
        if (file.startsWith("Assigned"))
            wanted.selectionFormula = file.contains(u'1') ? "{Adults.Active} = \"Y\"" : "not ({Scouts.Scout_SID} > 4)";
        const Document document = *run(wanted);
        const QString text = textOf(document);
        qsizetype at = 0;
        for (const QString& part : inOrder.split(u';')) {
            const qsizetype found = text.indexOf(part + u'\n', at);
            QVERIFY2(found >= 0, qPrintable(part + "\n--- not found behind ---\n" + text.mid(at)));
            at = found + part.size();
        }
        QVERIFY(text.contains("Printed November 24, 2026\nPage 1 of 1\n"));
        QVERIFY(!text.contains("Former"));
        QTEST(int(document.rows.size()), "rows");

        wanted.databases = {{0, "empty"}, {1, "empty"}};
        QFETCH(QString, nothing);
        const QString emptyText = textOf(*run(wanted));
        QVERIFY2(emptyText.contains(nothing + u'\n') && emptyText.contains(text.section(u'\n', 0, 0)),
                 qPrintable(emptyText));
    }

    void selects_data()
    {
        test::table({"formula", "outcome"}, R"(
            {Scouts.Active} = "Y"                                      | 3 rows
            {scouts.ACTIVE} = "y"                                      | 3 rows
            {Scouts.Active} = "Y" and {Assigned_Awards_Scouts.Date_Assigned} = Date ( 2004, 06, 07) | 1 rows
            {Scouts.Scout_SID} = 1 and {Scouts.Assigned_Den_SID} = 2   | 0 rows
            {Assigned_Awards_Scouts.Date_Assigned} in Date ( 2004, 06, 07) to Date ( 2004, 06, 08) | 3 rows
            {Assigned_Awards_Scouts.Date_Assigned} in Date ( 2004, 06, 08) to Date ( 2004, 06, 07) | 0 rows
            {Assigned_Awards_Scouts.Date_Assigned} >= Date ( 2004, 06, 08) | 2 rows
            {Assigned_Awards_Scouts.Date_Assigned} <= Date ( 2004, 06, 07) | 2 rows
            {Scouts.Scout_SID} = 1 and Year({Date_Assigned}) = 2004 and {Award} like "b*" | 1 rows
            {Adults.Scout_SID} = 1 and {Adults.Active} = "Y"           | 1 rows
            {Adults.Assigned_Den_SID} = 2                              | 1 rows
            {Adults.Assigned_Den_SID} = 7                              | 1 rows
            {Adults.Active} = "Y"                                      | 2 rows
            {Scouts.Active} =                                          | failure 3075
            {Scouts.Shoe} = 1                                          | failure 3061
            1                                                          | failure 13
            Year({Date_Assigned}) = "x"                                | failure 13
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

    /// Many pages: nothing is lost, headings stand on each, the numbering is that of the whole.
    void runsOverPages()
    {
        std::optional<store::Database> many = fresh("many.mdb");
        std::swap(m_full, many);
        m_full->execute("Insert Into Dens (Den_SID, Den_Number, Den_Type, Active) Values (1, 10, 'Bear', 'Y')");
        const QString scout = "Insert Into Scouts (Scout_SID, First_Name, Last_Name, Active, Assigned_Den_SID) "
                              "Values (%1, 'F', 'Name%1', 'Y', 1)";
        for (int i = 1; i <= 200; ++i)
            m_full->execute(scout.arg(i));
        RunRequest wanted = request("ScoutPhoneList1.rpt");
        const Document all = *run(wanted);
        wanted.firstPage = 2;
        wanted.lastPage = 3;
        const Document some = *run(wanted);
        int calls = 0;
        const auto cancelled = run(wanted, [&](int, int) { return ++calls < 2; });
        std::swap(m_full, many);

        QVERIFY(all.pages.size() > 3);
        const QString text = textOf(all);
        for (int i = 1; i <= 200; ++i)
            QCOMPARE(text.count(QStringLiteral("\nName%1, F\n").arg(i)), 1);
        for (std::size_t page = 0; page < all.pages.size(); ++page) {
            const QString own = textOf(all, page, 1);
            QVERIFY(own.contains("\nTelephone\n"));
            QVERIFY(own.contains(QStringLiteral("Page %1 of %2").arg(page + 1).arg(all.pages.size())));
            QCOMPARE(own.contains("Bear Den 10 (continued)"), page > 0);
        }
        QCOMPARE(textOf(some), textOf(all, 1, 2));
        QCOMPARE(all.outline.size(), std::size_t(1));
        QVERIFY(!cancelled);
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

    void paintsWhatItPlaced()
    {
        const Document document = *run(request("PurchaseList.rpt"));
        QImage image(document.paper.toSize() * 2, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(2, 2);
        paintPage(painter, document, 0);
        painter.end();
        const auto inked = [&](const QRectF& box) {
            const QImage part = image.copy(QRectF(box.topLeft() * 2, box.size() * 2).toRect());
            for (int at = 0; at < part.width() * part.height(); ++at)
                if (qGray(part.pixel(at % part.width(), at / part.width())) < 160)
                    return true;
            return false;
        };
        int boxes = 0;
        for (const Item& item : document.pages[0].items)
            if (const auto* text = std::get_if<TextItem>(&item))
                QVERIFY2(inked(text->box), qPrintable(text->text));
            else if (const auto* box = std::get_if<BoxItem>(&item); box && ++boxes)
                QVERIFY(inked(box->box.adjusted(-1, -1, 1, 1)) && !inked(box->box.adjusted(1.5, 1.5, -1.5, -1.5)));
        QCOMPARE(boxes, 3); // one to tick on each line
    }

    void writesFiles()
    {
        const Document document = *run(request("PurchaseList.rpt"));
        QCOMPARE(csvText(document), QStringLiteral("Quantity,Award Name,Award Type\r\n4,Archery,Belt Loop\r\n"
                                                   "3,(award no longer in the catalogue),\r\n"));
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
        if (QStandardPaths::findExecutable("pdftotext").isEmpty())
            QSKIP("pdftotext is missing: the text of the PDF is not read back");
        QProcess reader;
        reader.start("pdftotext", {"-layout", path, "-"});
        QVERIFY(reader.waitForFinished());
        const QString text = QString::fromUtf8(reader.readAll()).simplified();
        QVERIFY2(text.contains("4 Archery Belt Loop") && text.contains("Page 1 of 1"), qPrintable(text));
    }
};

QTEST_MAIN(TestReports)
#include "tst_reports.moc"
