#include "platform/Conversion.h"
#include "reports/engine/Definition.h"
#include "reports/engine/Export.h"
#include "reports/engine/Paint.h"
#include "reports/engine/ReportError.h"
#include "store/Schema.h"
#include "store/engine/Database.h"

#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

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

const QStringList people{
    "Insert Into Dens (Den_SID, Den_Number, Den_Name, Den_Type, Active) Values (1, 10, 'Owls', 'Bear', 'Y')",
    "Insert Into Dens (Den_SID, Den_Number, Den_Name, Den_Type, Active) Values (2, 9, '', 'Wolf', 'Y')",
    "Insert Into Scouts (Scout_SID, First_Name, Last_Name, MI, Phone, Active, Assigned_Den_SID, Parent_Name1, "
    "Parent1_Work_Phone, Parent_Name2) Values (1, 'Zoë', 'Ångström', 'Q', '555-0101', 'Y', 1, 'Ada', '555-0191', 'Bo')",
    "Insert Into Scouts (Scout_SID, First_Name, Last_Name, Active, Assigned_Den_SID) Values (2, 'Pat', \"O'Neil\", "
    "'Y', 2)",
    "Insert Into Scouts (Scout_SID, First_Name, Last_Name, Active) Values (3, 'Kim', 'Loner', 'Y')",
    "Insert Into Scouts (Scout_SID, First_Name, Last_Name, Active) Values (4, 'Old', 'Gone', 'N')",
    "Insert Into Adults (Adult_SID, First_Name, Last_Name, Active, Phone, Email, Assigned_Den_SID) Values (1, 'Ann', "
    "'Leader', 'Y', '555-0201', 'ann@example.org', 7)",
    "Insert Into Adults (Adult_SID, First_Name, Last_Name, Active) Values (2, 'Carl', 'Helper', 'Y')",
    "Insert Into Adults (Adult_SID, First_Name, Last_Name, Active) Values (3, 'Former', 'Adult', 'N')",
    "Insert Into Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title, Sort_Order) Values (1, 1, 'Den Leader', 1)",
    "Insert Into Leader_Den_Assignments (Adult_SID, Den_SID) Values (1, 2)",
    "Insert Into Leader_Pack_Assn (Position_Title, Leader_SID, Sort_Order) Values ('Cub Master', 2, 1)",
};
const QStringList awards{
    "Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type, Description) Values (1, 'Archery', 'Belt "
    "Loop', "
    "'Hit the mark.')",
    "Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type) Values (2, 'Bobcat', 'Rank Advancement')",
    "Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Quantity) Values (1, 1, #6/7/2004#, "
    "3)",
    "Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned) Values (1, 2, #7/1/2004#)",
    "Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned) Values (2, 99, #6/8/2004#)",
    "Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned) Values (4, 1, #6/7/2004#)",
    "Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned) Values (1, 1, #6/7/2004#)",
    "Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned) Values (2, 2, #6/7/2004#)",
    "Insert Into Purchase_List (Award_Name, Insignia_Type, Quantity) Values ('Archery', 'Belt Loop', 4)",
    "Insert Into Purchase_List (Quantity) Values (3)",
    "Insert Into Other_Purchase_List (Item_Name, Quantity) Values ('Candles, \"large\"', 12)",
};

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

    [[nodiscard]] RunRequest request(const QString& file) const
    {
        RunRequest request;
        request.reportFile = QStringLiteral(ORLO_SOURCE_DIR "/src/reports/files/") + file;
        request.databases = {{0, QStringLiteral("full")}, {1, QStringLiteral("full")}};
        return request;
    }

    std::optional<Document> run(const RunRequest& request, const Progress& progress = {})
    {
        return render(
            request,
            [&](const QString& path) -> store::Database& { return path == QLatin1String("full") ? *m_full : *m_empty; },
            progress);
    }

    /// A definition of the test's own on the full database.
    Document runText(const QString& text)
    {
        RunRequest own;
        own.databases = {{0, QStringLiteral("full")}};
        return *render(readDefinition(text), own, [&](const QString&) -> store::Database& { return *m_full; });
    }

private Q_SLOTS:
    void initTestCase()
    {
        platform::setToday(QDate(2026, 11, 24));
        m_full = fresh(QStringLiteral("full.mdb"));
        m_empty = fresh(QStringLiteral("empty.mdb"));
        for (const QString& statement : people + awards)
            m_full->execute(statement);
    }

    void renders_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("inOrder"); ///< texts that follow one another
        QTest::addColumn<int>("rows");
        QTest::addColumn<QString>("nothing");
        const QString noAwards = QStringLiteral("No assigned awards match this selection.");
        const QString noScouts = QStringLiteral("There are no active scouts.");
        const QString noAdults = QStringLiteral("There are no active adults.");
        const auto row = [](const char* file, const QStringList& inOrder, int rows, const QString& nothing) {
            QTest::newRow(file) << QString::fromLatin1(file) << inOrder << rows << nothing;
        };
        row("PurchaseList.rpt",
            {"Verrano (ORLO)", "Awards", "4", "Archery", "Belt Loop", "3", "(award no longer in the catalogue)", "7",
             "Other Items", "12", "Candles, \"large\""},
            2, "There is nothing else to buy.");
        row("AssignedAwards.rpt",
            {"O'Neil, Pat", "Wolf Den 9", "6/8/2004", "(award no longer in the catalogue)", "Ångström, Zoë Q.",
             "Bear Den 10", "6/7/2004", "Archery", "3", "7/1/2004", "Bobcat", "4 awards", "6 awards in all"},
            4, noAwards);
        row("AssignedAwards1.rpt", {"Helper, Carl", "Bobcat", "Leader, Ann", "Archery", "2 awards in all"}, 2,
            noAwards);
        row("AwardListing.rpt", {"Belt Loop", "1 award", "Archery", "Rank Advancement", "Bobcat", "2 awards in all"}, 2,
            "The catalogue holds no awards.");
        row("AwardListDetail.rpt", {"Archery", "Hit the mark.", "Bobcat"}, 2, "The catalogue holds no awards.");
        row("ScoutPhoneList.rpt",
            {"Loner, Kim", "O'Neil, Pat", "Ångström, Zoë Q.", "555-0101", "Ada", "555-0191", "Bo", "3 scouts in all"},
            3, noScouts);
        row("ScoutPhoneList1.rpt",
            {"Wolf Den 9", "O'Neil, Pat", "Bear Den 10", "Ångström, Zoë Q.", "No den", "Loner, Kim"}, 3, noScouts);
        row("AdultPhoneList.rpt",
            {"Helper, Carl", "Cub Master", "Leader, Ann", "555-0201", "ann@example.org", "Den Leader, Bear Den 10",
             "Leader, Wolf Den 9", "2 adults in all"},
            2, noAdults);
        row("AdultPhoneList1.rpt",
            {"Wolf Den 9", "Leader, Ann", "Bear Den 10", "Leader, Ann", "Den Leader", "No den", "Helper, Carl",
             "2 adults in all", "Positions of the Pack", "Cub Master", "Helper, Carl"},
            3, noAdults);
        row("CombinedRoster.rpt",
            {"Wolf Den 9", "Leader", "Leader, Ann", "Scout", "O'Neil, Pat", "Bear Den 10, Owls", "1 leader, 1 scout",
             "Den Leader", "Ångström, Zoë Q.", "No den", "Loner, Kim", "3 scouts in all"},
            5, "There are no active scouts, and no active leaders of dens.");
    }
    void renders()
    {
        QFETCH(QString, file);
        QFETCH(QStringList, inOrder);
        RunRequest wanted = request(file);
        if (file.startsWith(QLatin1String("Assigned")))
            wanted.selectionFormula = file.contains(u'1') ? "{Adults.Active} = \"Y\"" : "not ({Scouts.Scout_SID} > 4)";
        const Document document = *run(wanted);
        const QString text = textOf(document);
        qsizetype at = 0;
        for (const QString& part : inOrder) {
            const qsizetype found = text.indexOf(part + u'\n', at);
            QVERIFY2(found >= 0, qPrintable(part + "\n--- not found behind ---\n" + text.mid(at)));
            at = found + part.size();
        }
        QVERIFY(text.contains(QLatin1String("Printed November 24, 2026\nPage 1 of 1\n")));
        QVERIFY(!text.contains(QLatin1String("Former")));
        QTEST(int(document.rows.size()), "rows");

        wanted.databases = {{0, QStringLiteral("empty")}, {1, QStringLiteral("empty")}};
        QFETCH(QString, nothing);
        const QString emptyText = textOf(*run(wanted));
        QVERIFY2(emptyText.contains(nothing + u'\n') && emptyText.contains(text.section(u'\n', 0, 0)),
                 qPrintable(emptyText));
    }

    void selects_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("formula");
        QTest::addColumn<int>("rows");
        const QString scouts = QStringLiteral("AssignedAwards.rpt");
        const QString adults = QStringLiteral("AssignedAwards1.rpt");
        const QString active = QStringLiteral(" and {Scouts.Active} = \"Y\"");
        QTest::newRow("active only") << scouts << "{Scouts.Active} = \"Y\"" << 3;
        QTest::newRow("case-blind") << scouts << "{scouts.ACTIVE} = \"y\"" << 3;
        QTest::newRow("all of it") << scouts
                                   << "{Scouts.Scout_SID} = 1 and {Scouts.Assigned_Den_SID} = 1 and "
                                      "{Assigned_Awards_Scouts.Date_Assigned} = Date ( 2004, 06, 07)" +
                                          active
                                   << 1;
        QTest::newRow("range") << scouts
                               << "{Assigned_Awards_Scouts.Date_Assigned} in Date ( 2004, 06, 07) to Date ( 2004, 06, "
                                  "08)" +
                                      active
                               << 2;
        QTest::newRow("range reversed") << scouts
                                        << "{Assigned_Awards_Scouts.Date_Assigned} in Date ( 2004, 06, 08) to Date ( "
                                           "2004, 06, 07)" +
                                               active
                                        << 0;
        QTest::newRow("from") << scouts << "{Assigned_Awards_Scouts.Date_Assigned} >= Date ( 2004, 06, 08)" << 2;
        QTest::newRow("until") << scouts << "{Assigned_Awards_Scouts.Date_Assigned} <= Date ( 2004, 06, 07)" << 2;
        QTest::newRow("person outside den")
            << scouts << "{Scouts.Scout_SID} = 1 and {Scouts.Assigned_Den_SID} = 2" << 0;
        QTest::newRow("half of it for the rows") << scouts
                                                 << "{Scouts.Scout_SID} = 1 and Year({Date_Assigned}) = 2004 "
                                                    "and {Award} like \"b*\""
                                                 << 1;
        QTest::newRow("adult") << adults << "{Adults.Scout_SID} = 1 and {Adults.Active} = \"Y\"" << 1;
        QTest::newRow("adult's second den") << adults << "{Adults.Assigned_Den_SID} = 2" << 1;
        QTest::newRow("adult's den of an old file") << adults << "{Adults.Assigned_Den_SID} = 7" << 1;
        QTest::newRow("each award once") << adults << "{Adults.Active} = \"Y\"" << 2;
    }
    void selects()
    {
        QFETCH(QString, file);
        QFETCH(QString, formula);
        RunRequest wanted = request(file);
        wanted.selectionFormula = formula;
        wanted.reportTitle = QStringLiteral(" for Date: 6/7/2004");
        const Document document = *run(wanted);
        QTEST(int(document.rows.size()), "rows");
        QVERIFY(textOf(document).contains(QLatin1String("\nfor Date: 6/7/2004\n")));
        QCOMPARE(document.title, QStringLiteral("Assigned Awards for Date: 6/7/2004"));
    }

    /// What goes into the query selects the rows that the formula itself selects: an "or" with a function keeps it out.
    void handsDownTheSameSelection_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<int>("rows");
        const auto row = [](const char* formula, int rows) {
            QTest::newRow(formula) << QString::fromUtf8(formula) << rows;
        };
        row("{Last_Name} = \"ÅNGSTRÖM\"", 2);
        row("{Last_Name} = \"O'NEIL\"", 1);
        row("{Last_Name} > \"loner\"", 3);
        row("{Whole_Name} = \"zoë ångström\"", 2);
        row("{Whole_Name} <> \"KIM LONER\"", 4);
        row("{Whole_Name} in \"k\" to \"p\"", 2);
        row("{Kind} = \"few\"", 3);
        row("{Kind} >= \"MANY\"", 2);
        row("{Den} = 1", 2);
        row("not ({Den} = 1)", 1);
        row("{Den} <> 1 or {Kind} = \"FEW\"", 3);
        row("{Given} = Date(2004, 6, 7)", 2);
        row("{Given} in Date(2004, 6, 7) to Date(2004, 6, 8)", 3);
        row("{Given} <> #6/8/2004#", 3);
        row("{Share} = 0.5", 1);
        row("{Share} > 0.25 and {Share} <= 1", 4);
        row("{Many} = true", 2);
        row("{Many} = false", 3);
    }
    void handsDownTheSameSelection()
    {
        QFETCH(QString, formula);
        const Definition definition = readDefinition(QStringLiteral(R"(source {
    Select S.Last_Name, S.First_Name & " " & S.Last_Name As Whole_Name, S.Assigned_Den_SID As Den,
           IIf(S.Scout_SID = 1, "Many", "Few") As Kind, 1 / (S.Scout_SID * 1.0) As Share, S.Scout_SID = 1 As Many,
           A.Date_Assigned As Given
    From Scouts As S Left Join Assigned_Awards_Scouts As A On A.Scout_SID = S.Scout_SID
}
sort {Last_Name}
sort {Given}
)"));
        QStringList told;
        for (const QString& text : {formula, QStringLiteral("(%1) or Length(\"x\") = 2").arg(formula)}) {
            RunRequest own;
            own.databases = {{0, QStringLiteral("full")}};
            own.selectionFormula = text;
            const auto document = render(definition, own, [&](const QString&) -> store::Database& { return *m_full; });
            QTEST(int(document->rows.size()), "rows");
            told << csvText(*document);
        }
        QCOMPARE(told[0], told[1]);
    }

    void fails_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("formula");
        QTest::addColumn<Slots>("databases");
        QTest::addColumn<int>("number");
        const Slots both{{0, QStringLiteral("full")}, {1, QStringLiteral("full")}};
        const Slots cleared{{0, QStringLiteral("full")}, {1, QString()}};
        QTest::newRow("missing file") << "NoSuch.rpt"
                                      << "" << both << 53;
        QTest::newRow("cleared slot") << "ScoutPhoneList1.rpt"
                                      << "" << cleared << 3024;
        QTest::newRow("no slot") << "AwardListing.rpt"
                                 << "" << Slots{} << 3024;
        QTest::newRow("formula breaks off") << "AssignedAwards.rpt"
                                            << "{Scouts.Active} = " << both << 3075;
        QTest::newRow("unknown field") << "AssignedAwards.rpt"
                                       << "{Scouts.Shoe} = 1" << both << 3061;
        QTest::newRow("no condition") << "AssignedAwards.rpt"
                                      << "1" << both << 13;
        QTest::newRow("two kinds") << "AssignedAwards.rpt"
                                   << "Year({Date_Assigned}) = \"x\"" << both << 13;
    }
    void fails()
    {
        QFETCH(QString, file);
        QFETCH(QString, formula);
        QFETCH(Slots, databases);
        QFETCH(int, number);
        RunRequest wanted = request(file);
        wanted.selectionFormula = formula;
        wanted.databases = databases;
        try {
            (void)run(wanted);
            QFAIL("the run went through");
        } catch (const platform::RuntimeError& error) {
            QCOMPARE(error.number(), number);
        }
    }

    void clearedSecondSlotServesTheAlphabeticalList()
    {
        RunRequest wanted = request(QStringLiteral("scoutphonelist.RPT"));
        wanted.databases[1] = QString();
        QCOMPARE(run(wanted)->rows.size(), std::size_t(3));
    }

    void tellsWhereADefinitionIsWrong_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("line");
        const QString source = QStringLiteral("source {\nSelect Last_Name, First_Name From Scouts\n}\n");
        QTest::newRow("field") << source + "detail {\n text 0 = {Last_Name}\n text 0 = {Shoe}\n}\n" << 3061 << 6;
        QTest::newRow("query's field") << "# x\nsource {\nSelect Shoe From Scouts\n}\n" << 3061 << 2;
        QTest::newRow("query's table") << "source {\nSelect * From Shoes\n}\n" << 3078 << 1;
        QTest::newRow("page number in a row") << source + "detail {\n text 0 = PageNumber\n}\n" << 3075 << 5;
        QTest::newRow("subreport") << source + "detail {\n subreport \"None\"\n}\n" << 3061 << 5;
        QTest::newRow("group in a summary") << source + "detail {\n text 0 = Count(\"None\")\n}\n" << 3061 << 5;
        QTest::newRow("let uses a later one") << source + "let {A} = {B}\nlet {B} = 1\n" << 3061 << 4;
        QTest::newRow("let named as a column") << source + "let {last_name} = 1\n" << 3075 << 4;
    }
    void tellsWhereADefinitionIsWrong()
    {
        QFETCH(QString, text);
        try {
            (void)runText(text);
            QFAIL("the run went through");
        } catch (const ReportError& error) {
            QTEST(error.number(), "number");
            QTEST(error.place().line, "line");
        }
    }

    /// Many pages: nothing is lost, headings stand on each, the numbering is that of the whole.
    void runsOverPages()
    {
        std::optional<store::Database> many = fresh(QStringLiteral("many.mdb"));
        std::swap(m_full, many);
        for (int i = 1; i <= 200; ++i)
            m_full->execute(QStringLiteral("Insert Into Scouts (Scout_SID, First_Name, Last_Name, Active, "
                                           "Assigned_Den_SID) Values (%1, 'F', 'Name%1', 'Y', 1)")
                                .arg(i));
        m_full->execute(people[0]);
        RunRequest wanted = request(QStringLiteral("ScoutPhoneList1.rpt"));
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
            QVERIFY(own.contains(QLatin1String("\nTelephone\n")));
            QVERIFY(own.contains(QStringLiteral("Page %1 of %2").arg(page + 1).arg(all.pages.size())));
            QCOMPARE(own.contains(QLatin1String("Bear Den 10 (continued)")), page > 0);
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
        m_full->execute(
            QStringLiteral("Update Insignias Set Description = '%1' Where Insignia_SID = 2").arg(words.join(u' ')));
        const Document document = *run(request(QStringLiteral("AwardListDetail.rpt")));
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
        const Document document = *run(request(QStringLiteral("PurchaseList.rpt")));
        QImage image(document.paper.toSize() * 2, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(2, 2);
        paintPage(painter, document, 0);
        painter.end();
        const auto inked = [&](const QRectF& box) {
            for (int y = int(box.top() * 2); y < int(box.bottom() * 2); ++y)
                for (int x = int(box.left() * 2); x < int(box.right() * 2); ++x)
                    if (qGray(image.pixel(x, y)) < 160)
                        return true;
            return false;
        };
        int boxes = 0;
        for (const Item& item : document.pages[0].items) {
            if (const auto* text = std::get_if<TextItem>(&item))
                QVERIFY2(inked(text->box), qPrintable(text->text));
            if (const auto* box = std::get_if<BoxItem>(&item)) {
                ++boxes;
                QVERIFY(inked(box->box.adjusted(-1, -1, 1, 1)) && !inked(box->box.adjusted(1.5, 1.5, -1.5, -1.5)));
            }
        }
        QCOMPARE(boxes, 3); // one to tick on each line
    }

    void writesFiles()
    {
        const Document document = *run(request(QStringLiteral("PurchaseList.rpt")));
        QCOMPARE(csvText(document), QStringLiteral("Quantity,Award Name,Award Type\r\n4,Archery,Belt Loop\r\n"
                                                   "3,(award no longer in the catalogue),\r\n"));
        Document quoting;
        quoting.columns = QStringList{QStringLiteral("a,b"), QStringLiteral("say \"x\"")};
        quoting.rows = {{QStringLiteral("two\nlines"), QStringLiteral("é")}};
        QCOMPARE(csvText(quoting), QStringLiteral("\"a,b\",\"say \"\"x\"\"\"\r\n\"two\nlines\",é\r\n"));

        const QString path = m_dir.filePath(QStringLiteral("list.pdf"));
        QVERIFY(writePdf(document, path));
        QVERIFY(!writePdf(document, m_dir.filePath(QStringLiteral("none.pdf")), [](int, int) { return false; }));
        QVERIFY(!QFile::exists(m_dir.filePath(QStringLiteral("none.pdf"))));
        QVERIFY_THROWS_EXCEPTION(ReportError, writePdf(document, m_dir.filePath(QStringLiteral("no/such.pdf"))));
        QVERIFY_THROWS_EXCEPTION(ReportError, writeCsv(document, m_dir.filePath(QStringLiteral("no/such.csv"))));
        if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
            QSKIP("pdftotext is missing: the text of the PDF is not read back");
        QProcess reader;
        reader.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), path, QStringLiteral("-")});
        QVERIFY(reader.waitForFinished());
        const QString text = QString::fromUtf8(reader.readAll()).simplified();
        QVERIFY2(text.contains(QLatin1String("4 Archery Belt Loop")) && text.contains(QLatin1String("Page 1 of 1")),
                 qPrintable(text));
    }
};

QTEST_MAIN(TestReports)
#include "tst_reports.moc"
