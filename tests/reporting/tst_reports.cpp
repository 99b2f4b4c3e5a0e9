#include "reporting/Drawn.h"

#include "platform/Conversion.h"
#include "reporting/Definition.h"
#include "reporting/Export.h"
#include "reporting/ReportError.h"
#include "store/engine/Database.h"
#include "store/schema/Schema.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Picture.h"
#include "support/Table.h"

#include <QDir>
#include <QFontDatabase>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QStringEncoder>
#include <QTemporaryDir>

#include <functional>

using namespace orlo;
using namespace orlo::reporting;

namespace
{

// The texts of some pages, one line per item.
QString textOf(const Document& document, std::size_t first = 0, std::size_t count = SIZE_MAX)
{
    QString text;
    for (std::size_t i = first; i < document.pages.size() && i - first < count; ++i)
        for (const Item& item : document.pages[i].items)
            if (const auto* one = std::get_if<TextItem>(&item))
                text += QString(one->text).replace(u'\n', u' ') + u'\n';
    return text;
}

// The lines of a CSV file.
QStringList rowsOf(const Document& document)
{
    const QString text = csvText(document).trimmed().replace(QRegularExpression("(?<!\r)\n"), "\\n");
    return text.split("\r\n").replaceInStrings("\r", "\\r").replaceInStrings(QRegularExpression("^(?=.)"), "csv: ");
}

QByteArray fileOf(const QString& name)
{
    return test::contents(ORLO_SOURCE_DIR "/tests/reporting/" + name);
}

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
        request.databases = {{0, "full"}, {1, "full"}, {2, ""}};
        request.subreports = {{"ELSE", {{0, ""}}}, {"Here", request.databases}};
        request.selectionFormula = selection;
        return request;
    }
    store::Database& open(const QString&) { return *m_full; }
    std::optional<Document> run(const RunRequest& request, const Progress& progress = {}, const FirstPage& shown = {})
    {
        return render(request, std::bind_front(&tst_reports::open, this), progress, shown);
    }
    // A definition of the test, or a shipped one, on the full database.
    Document runText(const QString& text, const QString& selection = {})
    {
        if (text.endsWith(".rpt"))
            return *run(request(text, selection));
        return *render(readDefinition(text, ORLO_SOURCE_DIR "/tests/reporting"), request({}, selection),
                       std::bind_front(&tst_reports::open, this));
    }

    // The document in one font, whatever this computer's usual one is.
    Document drawnAlike(Definition definition, const RunRequest& wanted)
    {
        const auto setFonts = [](auto& self, Definition& of) -> void {
            for (Style& style : of.styles)
                style.family = style.family == "sans" ? "DejaVu Sans" : style.family;
            for (auto& [name, inner] : of.subreports)
                self(self, *inner);
        };
        setFonts(setFonts, definition);
        return *render(definition, wanted, std::bind_front(&tst_reports::open, this));
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QFontDatabase::hasFamily("DejaVu Sans")); // whose widths the drawn texts have
        platform::setToday(QDate(2026, 11, 24));
        m_full = store::DBEngine::createDatabase(m_dir.filePath("full.mdb"));
        store::createSchema(*m_full);
        for (const QByteArray& row : fileOf("pack.sql").trimmed().split('\n'))
            m_full->execute(QString::fromUtf8(row));
    }

    // The rows that a formula selects, in shipped reports and in one of the test ($). The part in the query selects
    // what the formula itself selects: an "or" with a function stays out of it.
    void selects_data() { test::tableOf("reporting/reports_selects.txt"); }
    void selects()
    {
        auto [formula, report] = test::cells("formula", "report");
        report = report == "$" ? fileOf("selected.rpt") : report + ".rpt";
        Document inQuery;
        const int failure = test::failureNumber([&] { return (inQuery = runText(report, formula)).rows.size(); });
        QTEST(QString::number(failure ? failure : int(inQuery.rows.size())), "rows");
        if (!failure)
            QCOMPARE(csvText(inQuery),
                     csvText(runText(report, QStringLiteral("(%1) or Length(\"\") = 2").arg(formula))));
    }

    void tellsWhereADefinitionIsWrong_data() { test::cases({"text", "failure"}, "reporting/faults.txt"); }
    void tellsWhereADefinitionIsWrong()
    {
        const QString text =
            test::cell("text").replace("$\n", "source {\nSelect First_Name,\n Last_Name From Scouts\n}\n");
        for (const char* selection : {"", "1 = 1"}) {
            const auto error = test::failureOf<ReportError>([&] { return runText(text, selection); });
            QTEST(error ? QStringLiteral("%1: %2\n").arg(error->number()).arg(error->description()) : "", "failure");
            QCOMPARE(error->source(), "Report engine");
        }
    }

    // Page ranges, and the first page shown ahead of the others, are those of the whole report.
    void runsOverPages()
    {
        m_full->execute("Insert Into Scouts (Scout_SID, First_Name, Last_Name, Active, Assigned_Den_SID) "
                        "Select 100 + A.Scout_SID + 4 * B.Scout_SID + 16 * C.Scout_SID + 64 * D.Scout_SID + "
                        "256 * E.Scout_SID, 'F', A.Last_Name, 'Y', IIf(D.Scout_SID + E.Scout_SID = 2, 2, 1) "
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
        wanted.lastPage = all->outline.back().page + 1;
        const Document some = *run(wanted, {}, [](Document&&) { QFAIL("the first page isn't wanted"); });
        wanted.firstPage = 0; // there is none before the first
        wanted.lastPage = 1;
        QCOMPARE(textOf(*run(wanted)), textOf(*all, 0, 1));
        m_full->execute("Delete From Scouts Where First_Name = 'F'");

        QVERIFY(told > 0.9 && first && !first->complete && first->outline.back().page == 0 && !first->fonts.empty() &&
                all->complete);
        const QString ofAll = QStringLiteral(" of %1\n").arg(all->pages.size());
        QCOMPARE(textOf(*first).replace(" of …\n", ofAll), textOf(*all, 0, 1));
        QCOMPARE(textOf(some), textOf(*all, 1, std::size_t(all->outline.back().page)));
        QCOMPARE(all->outline.size(), 3);
        for (const auto& mark : all->outline) // each where its group starts
            QVERIFY2(textOf(*all, std::size_t(mark.page), 1).contains(mark.text + '\n'), qPrintable(mark.text));
        QVERIFY(textOf(some).contains("Bear Den 10 (continued)") && textOf(some).contains("Page 2" + ofAll));
        QVERIFY(all->outline.back().page > 2 && some.outline.back().page + 1 == all->outline.back().page);
    }

    void printsWhatItSays_data() { test::cases({"text", "page"}, "reporting/printed.txt"); }
    // All that is drawn, of the test's reports, which are read as a Windows editor writes them, and of the shipped
    // ones.
    void placesWhatItSays_data() { test::cases({"text", "drawn"}, "reporting/placed.txt"); }
    void placesWhatItSays()
    {
        const bool isLabels = test::cell("text").contains(" height ");
        const QString four = "source {\nSelect Scout_SID As S From Scouts\n}\nsort {S}\n";
        const QString header = isLabels ? "" : "page-header {\ntext 0 = \"h\" & {S}\n}\n";
        const QString text = test::cell("text").replace("$\n", four + header).replace('\n', "\r\n");
        const Document document = drawnAlike(readDefinition(text, ORLO_SOURCE_DIR "/tests/reporting"), request({}));
        QCOMPARE(document.exactSize, isLabels);
        test::comparePicture(test::drawn(document) + (text.contains("\nexport {") ? rowsOf(document) : QStringList()),
                             test::cell("drawn"));
    }
    void drawsTheShipped_data() { test::cases({"selection", "drawn"}, "reporting/shipped.txt"); }
    void drawsTheShipped()
    {
        const QString name = QTest::currentDataTag();
        RunRequest wanted = request(name.section(", ", 0, 0), test::cell("selection") + ' '); // blanks select all
        wanted.reportTitle = wanted.selectionFormula.size() == 1 ? " " : " Some ";
        if (name.endsWith("people"))
            for (const QByteArray& row : fileOf("people.sql").trimmed().split('\n'))
                m_full->execute(QString::fromUtf8(row));
        const auto without = qScopeGuard([this] {
            m_full->execute("Delete From Scouts Where Scout_SID > 90");
            m_full->execute("Delete From Leader_Den_Assignments Where Den_SID = 91");
        });
        const Document document = drawnAlike(readDefinitionFile(wanted.reportFile), wanted);
        test::comparePicture(test::drawn(document) + rowsOf(document), test::cell("drawn"));
    }

    void printsWhatItSays() { QTEST(textOf(runText(test::cell("text")), 0, 1), "page"); }

    // An included file adds what the report lacks; its faults are reported with its name.
    void includesFiles()
    {
        const auto write = [&](const QString& to, const QByteArray& bytes) { test::write(m_dir.filePath(to), bytes); };
        const auto names = [&](QStringList files) { return files.replaceInStrings(m_dir.path() + '/', "").join(' '); };
        write("style.inc", fileOf("style.inc").leftJustified(4'000'000)); // above the report, as large as it may be
        QVERIFY(QDir(m_dir.path()).mkdir("examples"));
        write("examples/own.rpt", fileOf("own.rpt") + "# \xC3");
        write("examples/mark.png", fileOf("green.png").leftJustified(4'000'001));
        RunRequest wanted = request({});
        wanted.reportFile = m_dir.filePath("examples/own.rpt");
        const auto own = run(wanted);
        QCOMPARE(names(own->files + own->warnings.mid(0, 5) + own->warnings.last(1)),
                 "examples/own.rpt style.inc examples/pack.inc examples/pack.png examples/mark.png examples/sub.png "
                 "The file own.rpt isn't UTF-8, so its accented letters may be wrong. The file style.inc isn't UTF-8, "
                 "so its accented letters may be wrong. The font \"No Such\" isn't installed; another takes its place. "
                 "(style.inc, line 1, column 7) This reaches beyond the right margin. (own.rpt, line 12, column 6) "
                 "The picture can't be read. (own.rpt, line 13, column 9) "
                 "This column is too narrow for any word. (own.rpt, line 15, column 6)");
        QStringEncoder asNotepad(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
        write("examples/own.rpt", asNotepad(u"source {\nSelect 1 As A\n}\ninclude \"style.inc\"\n"));
        for (const auto& [file, bytes, told, files] : // the last ones too large, and broken off
             {std::tuple("style.inc", QByteArray("include \"style.inc\""), "Files are included too deeply. (style.inc",
                         "style.inc style.inc style.inc style.inc style.inc"),
              {"style.inc", QByteArray(4'000'001, ' '), "The file \"style.inc\" can't be found.", "style.inc"},
              {"examples/style.inc", "let {X} = {Own}", "There is no field {Own}. (style.inc, line 1, column 11)",
               "examples/own.rpt examples/style.inc"},
              {"examples/own.rpt", QByteArray(4'000'001, ' '), "This is no report file. (own.rpt)", ""},
              {"examples/own.rpt", "\xEF\xBB\xBFlet {X} = 1 +\\",
               "\"\\\" has no meaning here. (own.rpt, line 1, column 14)", ""}}) {
            write(file, bytes);
            const auto refused = test::failureOf<ReportError>([&] { return run(wanted); });
            QVERIFY2(refused->description().startsWith(told), qPrintable(refused->description()));
            QCOMPARE(names(refused->files()), files);
        }
    }

    // The manual's examples: changes ("diff") of the shipped files, whole reports ("rpt"), and the lines ("text") that
    // the report before them prints in this order; also the tables' formulas and their results.
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
            lines.replaceInStrings(QRegularExpression('^' + match.captured(1)), "");
            if (kind == "diff") {
                const QString path = folder.filePath(match.captured(3));
                const QString before = QString::fromUtf8(test::contents(path));
                const auto marked = [&](const char* mark) {
                    static const QRegularExpression sign("^.");
                    return QStringList(lines.filter(QRegularExpression(mark))).replaceInStrings(sign, "").join(u'\n') +
                           u'\n';
                };
                QCOMPARE(before.count(marked("^-")), 1);
                test::write(path, QString(before).replace(marked("^-"), marked("^[+]")).toUtf8());
                if (path.endsWith(".rpt"))
                    wanted.reportFile = path;
            } else if (kind == "rpt") {
                wanted.reportFile = folder.filePath("new.rpt");
                test::write(wanted.reportFile, lines.join(u'\n').toUtf8());
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

        static const QRegularExpression row("^\\|.*\\| `([^|]+)` \\| `([^|]*)` \\|$",
                                            QRegularExpression::MultilineOption);
        for (const QRegularExpressionMatch& match : row.globalMatch(manual)) {
            const QString page =
                textOf(runText("source {\nSelect 1 As A\n}\ndetail {\ntext 0 = " + match.captured(1) + "\n}\n"));
            QCOMPARE(match.captured(1) + " = " + page.trimmed(), match.captured(1) + " = " + match.captured(2));
            ++told;
        }
        QVERIFY(told > 50);
    }

    // However long the names, 8 points stay free between a text and the next one: these almost fill a line.
    void textsKeepApart()
    {
        QVERIFY(QFile::copy(m_full->name(), m_dir.filePath("long.mdb")));
        auto pack = store::DBEngine::openDatabase(m_dir.filePath("long.mdb"));
        for (const char* change : {"Scouts Set First_Name = '%1', Last_Name = '%1', Parent_Name1 = '%1'",
                                   "Adults Set First_Name = '%1', Last_Name = '%1'"})
            pack.execute(QStringLiteral("Update ") + QString(change).arg(QString("i ").repeated(20).trimmed()));
        const QDir files(QStringLiteral(ORLO_SOURCE_DIR "/src/reports/files"));
        for (const QString& file : files.entryList({"*.rpt"})) {
            const Document document = *render(request(file), [&](const QString&) -> store::Database& { return pack; });
            for (const Page& page : document.pages) {
                QList<std::pair<QRectF, QString>> texts; // the space that each takes on the paper
                for (const Item& item : page.items)
                    if (const auto* text = std::get_if<TextItem>(&item))
                        texts.append({text->box, text->text});
                for (const auto& [one, text] : std::as_const(texts))
                    for (const auto& [other, next] : std::as_const(texts))
                        if (one.left() < other.left() && one.top() < other.bottom() - 1 &&
                            other.top() < one.bottom() - 1)
                            QVERIFY2(other.left() - one.right() > 7.9, qPrintable(file + ": " + text + u'|' + next));
            }
        }
    }

    // The ten fill any paper's width; they and the examples, except labels, print without a warning.
    void fitsAnyPaper_data() { test::table({"width", "height"}, "612 | 792\n595 | 842\n792 | 612"); }
    void fitsAnyPaper()
    {
        const QDir folder(ORLO_SOURCE_DIR "/src/reports/files");
        const QStringList examples = QDir(folder.filePath("examples")).entryList({"*.rpt"});
        for (const QString& file : folder.entryList({"*.rpt"}) +
                                       QStringList(examples).replaceInStrings(QRegularExpression("^"), "examples/")) {
            Definition definition = readDefinitionFile(folder.filePath(file));
            definition.paper = {test::cell("width").toDouble(), test::cell("height").toDouble()};
            const Document document = *render(definition, request(file), std::bind_front(&tst_reports::open, this));
            if (document.exactSize) // labels have their own sheet
                continue;
            QVERIFY2(document.warnings.isEmpty(), qPrintable(file + document.warnings.join('\n')));
            if (file.startsWith("examples"))
                continue;
            double right = 0;
            for (const Item& item : document.pages[0].items)
                if (const auto* text = std::get_if<TextItem>(&item))
                    right = std::max(right, text->box.right());
            QVERIFY2(qAbs(definition.paper.width() - definition.margins.right() - right) < 1, qPrintable(file));
        }
    }

    // Reading, sorting, layout and export report their progress, and each can be cancelled.
    void tellsItsProgress()
    {
        RunRequest many = request({}, "Length(\"\") = 0");
        many.reportFile = ORLO_SOURCE_DIR "/tests/reporting/many.rpt";
        QList<int> told;
        const auto document = run(
            many, [&](int done, int total) { return told << done * 100 / total, true; },
            [](Document&&) { QFAIL("its pages compute with their number"); });
        QVERIFY2(document->rows.size() > 2000, qPrintable(QString::number(document->rows.size())));
        QVERIFY(std::is_sorted(told.begin(), told.end()) && told.count(0) > 1 && told.count(15) > 8);
        told.erase(std::unique(told.begin(), told.end()), told.end());
        for (const int end : {15, 20, 30, 80, 92, 100}) {
            const auto phase = std::ranges::count_if(told, [&](int percent) { return percent < end; });
            QVERIFY2(phase > 4, qPrintable(QString::number(end)));
            told.remove(0, phase);
        }
        for (int calls = 1; calls < 20; calls += 3)
            QVERIFY(!run(many, [&, left = calls](int, int) mutable { return --left > 0; }));
    }
};

ORLO_TEST(tst_reports)
#include "tst_reports.moc"
