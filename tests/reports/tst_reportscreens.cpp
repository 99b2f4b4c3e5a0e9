#include "platform/Conversion.h"
#include "reporting/view/PageText.h"
#include "reporting/view/PreviewWindow.h"
#include "reporting/view/ReportControl.h"
#include "shell/forms/Module1.h"
#include "shell/frame/Screens.h"
#include "shell/frame/mdiPendrake.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/PrintedFile.h"
#include "support/RecordScreen.h"
#include "support/Sqlite.h"
#include "support/Table.h"
#include "widgets/ComboBox.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>

using namespace orlo;

namespace
{

QByteArray script(const QString& name)
{
    return test::contents(ORLO_SOURCE_DIR "/tests/reports/" + name);
}

struct Screen : test::RecordScreen {
    using RecordScreen::RecordScreen;
    reporting::ReportControl& report = *form.findChild<reporting::ReportControl*>();

    widgets::ComboBox& box(const char* name) const { return get<widgets::ComboBox>(name); }
    QLineEdit& field(const char* name) const { return get<QLineEdit>(name); }
    void click(const QString& button) const
    {
        QTest::mouseClick(&get(button.toUtf8().constData()), Qt::LeftButton, {}, {8, 8});
    }
    void print() const { click(form.findChild<QWidget*>("cmdPrintList") ? "cmdPrintList" : "cmdPrint"); }
    void view() const { click(form.findChild<QWidget*>("cmdPreviewList") ? "cmdPreviewList" : "cmdView"); }
};

} // namespace

class tst_reportscreens : public QObject
{
    Q_OBJECT

    std::unique_ptr<test::AppFolder> m_folder;

private Q_SLOTS:
    void init()
    {
        platform::setToday(QDate(2026, 2, 14));
        m_folder = std::make_unique<test::AppFolder>();
        test::fill(script("people.sql"));
        const QDir files(QStringLiteral(ORLO_SOURCE_DIR "/src/reports/files"));
        for (const QString& file : files.entryList({"*.rpt", "*.inc"}))
            QVERIFY(QFile::copy(files.filePath(file), m_folder->path() + u'/' + file));
    }
    void cleanup()
    {
        m_folder.reset();
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->objectName() == "previewWindow")
                window->close();
    }

    void doubleClickOpensOneWindow()
    {
        const Screen screen("dlgScoutList");
        screen.view();
        QTest::mouseDClick(&screen.get("cmdView"), Qt::LeftButton, {}, {8, 8});
        QTest::mouseRelease(&screen.get("cmdView"), Qt::LeftButton, {}, {8, 8});
        QCOMPARE(std::ranges::count(QApplication::topLevelWidgets(), "previewWindow", &QWidget::objectName), 1);
    }

    void menuOpensWaitingDialog()
    {
        auto& frame = mdiPendrake::instance();
        frame.show();
        const QPointer menu = &test::showForm("frmReportsMenu");
        const QString assigned = "dlgReportSelect1|Set Selection Criteria for Awards Report";
        const QString awards = "dlgAwardsList|Print Awards List";
        for (const auto& [command, expected] : {std::pair("mnuRepAssignedAwards", assigned),
                                                {"mnuRepAwardList", awards},
                                                {"mnuRptScoutList", "dlgScoutList|Scout List Report"},
                                                {"mnuRptAdultList", "dlgAdultList|Adult List Report"},
                                                {"ID_COMBINED_ROSTER", "dlgCombinedRoster|Combined Roster"},
                                                {"cmdAssignedAwards", assigned},
                                                {"cmdAwardsList", awards}}) {
            QString shown;
            QTimer::singleShot(50, &frame, [&] {
                QWidget* dialog = QApplication::activeModalWidget();
                shown = dialog->objectName() + u'|' + dialog->windowTitle();
                QTest::keyClick(dialog, Qt::Key_Escape);
            });
            if (auto* action = frame.findChild<QAction*>(command))
                action->trigger();
            else
                test::control<QAbstractButton>(*menu, command).click();
            QCOMPARE(shown, expected);
        }
        test::control<QAbstractButton>(*menu, "Command1").click();
        QTRY_VERIFY(!menu);
    }

    // What a run sets on the control, after other runs; the slots are the report's and the subreport's.
    void setsTheReport_data() { test::tableOf("reports/reportscreens_setsTheReport.txt"); }
    void setsTheReport()
    {
        auto [run, clicks, title] = test::cells("run", "clicks", "title");
        title.replace("@", "Assigned Awards  for Date: 2/14/2026");
        const Screen screen(run.section(u' ', 0, 0));
        reporting::ReportControl& report = screen.report;
        const auto filledSlots = [&](const QString& subreport) {
            QString filled;
            for (int slot = 0; slot < 3; ++slot)
                if (!report.databaseFile(slot, subreport).isEmpty())
                    filled += QString::number(report.databaseFile(slot, subreport) == databasePath() ? slot : 9);
            return filled;
        };
        const QString pdf = m_folder->path() + "/out.pdf";
        test::printInto(pdf);
        for (const QString& choice : clicks.split(u' ', Qt::SkipEmptyParts)) {
            screen.view();
            screen.click(choice);
        }
        screen.view();
        const QPointer<QWidget> before = report.preview();
        for (const bool toPrinter : {true, false}) {
            report.setFirstPage(2), report.setLastPage(1); // as another program may
            toPrinter ? screen.print() : screen.view();
            QCOMPARE(report.destination(), int(toPrinter));
            const QString file = report.reportFile();
            QVERIFY(file.startsWith(gAppPath + u'\\') && file.endsWith(".rpt"));
            QTEST(report.objectName() + u' ' + file.mid(gAppPath.size() + 1).chopped(4), "report");
            const QString subreport = report.subreportToChange();
            QTEST(subreport, "subreport");
            QTEST(filledSlots({}) + u'/' + (subreport.isEmpty() ? QString() : filledSlots(subreport)), "slots");
            QCOMPARE(report.windowTitle(), title);
            QVERIFY(report.windowOption() && report.firstPage() == 1 && report.lastPage() == 0);
            QTEST(QString::number(report.windowState()), "state");
        }
        QCOMPARE(test::pagesOf(pdf), 1);
        const QPointer<reporting::PreviewWindow> preview = report.preview();
        QVERIFY(before && before != preview && preview->windowTitle().startsWith(title));
        QCOMPARE(preview->isMaximized(), report.windowState() == 2);
        QVERIFY(preview->findChild<QDockWidget*>()->isVisible());
        const QPointer<QWidget> form = &screen.form;
        screen.click("cmdCancel");
        QTRY_VERIFY(!form);
        QVERIFY(preview && preview->isVisible());
    }

    // The report's file is printed, read back and compared with what the plain SQL engine gives for the same file.
    void printsWhatTheDatabaseHolds_data() { test::tableOf("reports/reportscreens_printsWhatTheDatabaseHolds.txt"); }
    void printsWhatTheDatabaseHolds()
    {
        auto [run, clicks, heading, nothing] = test::cells("run", "clicks", "heading", "nothing");
        nothing
            .replace("@", "There are no active adults. Positions of the Pack "
                          "No active adult holds a position of the pack.")
            .replace("%", "There are no active scouts, and no active leaders of dens.")
            .replace("#", "Awards There are no awards to buy. Other Items There is nothing else to buy.");
        heading = test::withoutBlanks(heading.section(u';', 0, 0) + "Pack 12, Zoë's" + heading.section(u';', 1) +
                                      "Verrano (ORLO)");
        const QString chosen = clicks.startsWith("opt") ? clicks.mid(3) : clicks.isEmpty() ? "''" : "Description";
        const QString sql = QString::fromUtf8(script("printed.sql")).replace("%1", chosen);
        const QString query = sql.section(run + u';', 1).section(u'\n', 1).section("\n--", 0, 0);
        const QString file = m_folder->path() + "/Quorrel11.mdb";
        test::fill(script("pack.sql"));
        const Screen screen(run.section(u' ', 0, 0));
        const QString pdf = m_folder->path() + "/out.pdf";
        const auto printed = [&] {
            test::printInto(pdf);
            screen.print();
            return test::textOf(pdf);
        };
        if (auto* from = screen.form.findChild<QLineEdit*>("txtDateFrom"))
            from->clear(); // all dates
        if (auto* start = screen.form.findChild<QLineEdit*>("txtStartDate"))
            start->setText("1/1/2024");
        if (!clicks.isEmpty())
            screen.click(clicks);
        const QString text = printed();
        if (text.isEmpty())
            QSKIP("pdftotext is missing: the texts of the reports are not read back");
        const QStringList lines = test::sqlite(file, (sql.section("\n--", 0, 0) + query).toUtf8().constData());
        QVERIFY(lines.size() > 20);
        qsizetype at = 0;
        for (const QString& line : lines) {
            const QString wanted = test::withoutBlanks(line);
            const qsizetype found = text.indexOf(wanted, at);
            if (found < 0) {
                QStringList printedLines = test::linesOf(pdf);
                for (qsizetype passed = 0; !printedLines.isEmpty() && passed < at;)
                    passed += test::withoutBlanks(printedLines.takeFirst()).size();
                QFAIL(qPrintable("not printed: " + line + "\nWhat is printed there:\n" +
                                 printedLines.mid(0, 12).join(u'\n')));
            }
            at = found + wanted.size();
        }
        const int pages = test::pagesOf(pdf);
        QVERIFY(pages > 1);
        QCOMPARE(text.count(heading), pages);
        for (int page = 1; page <= pages; ++page)
            QVERIFY(text.contains(QStringLiteral("PrintedFebruary14,2026Page%1of%2").arg(page).arg(pages)));

        for (const char* table : {"Scouts", "Adults", "Insignias", "Purchase_List", "Other_Purchase_List"})
            test::execute(QString("Delete From ") + table);
        test::execute("Update PackInfo Set [Pack Number] = 0"); // nobody has entered it
        QCOMPARE(printed(),
                 heading.remove("Pack12,") + test::withoutBlanks(nothing + "Printed February 14, 2026 Page 1 of 1"));
    }

    // The criteria are people, person, den, comparison and dates. # stands for 6/7/2004, * for "<All>", the brackets
    // for the fields of the people. The condition that they are active is left out; the title is in parentheses.
    void selects_data() { test::tableOf("reports/reportscreens_selects.txt"); }
    void selects()
    {
        auto [criteria, formula, title] = test::cells("criteria", "formula", "title");
        const QStringList chosen = criteria.replace("*", "<All>").replace("#", "6/7/2004").split(u';');
        const QString& people = chosen[0];
        formula.replace("#", "( 2004, 06, 07)").replace("[Date]", "{Assigned_Awards_" + people + ".Date_Assigned}");
        formula.replace("[SID]", "{" + people + ".Scout_SID}").replace("[Den]", "{" + people + ".Assigned_Den_SID}");
        formula += (formula.isEmpty() ? "{" : " and {") + people + ".Active} = \"Y\"";
        title = title.replace("#", "6/7/2004").chopped(1).mid(1);

        const Screen screen("dlgReportSelect1");
        screen.click("optAdults");
        screen.box("cmbScoutOrAdult").setText("Ito, Ann B"); // the earlier choice doesn't count
        screen.view();
        screen.click("opt" + people);
        screen.box("cmbDen").setText("Bear Den 2");
        screen.box("cmbScoutOrAdult").setText(chosen[1]);
        screen.box("cmbDen").setText(chosen[2]);
        screen.box("cmdDateRangeOperator").setListIndex(chosen[3].toInt());
        screen.field("txtDateFrom").setText(chosen[4]);
        screen.field("txtDateTo").setText(chosen[5]);
        screen.view();
        QCOMPARE(screen.report.selectionFormula(), formula);
        QCOMPARE(screen.report.windowTitle(), "Assigned Awards " + title);
        QCOMPARE(screen.report.reportTitle(), title);
        const auto* preview = screen.report.preview(); // the report takes the formula
        QVERIFY(preview && (title.isEmpty() || !findText(preview->document(), title.trimmed()).empty()));
    }
};

ORLO_TEST(tst_reportscreens)

#include "tst_reportscreens.moc"
