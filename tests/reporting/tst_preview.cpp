#include "reporting/PreviewSteps.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "reporting/Export.h"
#include "reporting/view/Printing.h"
#include "reporting/view/RunProgress.h"
#include "reporting/view/SharedDocument.h"
#include "support/Controls.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Picture.h"
#include "support/PrintedFile.h"
#include "support/System.h"
#include "support/Table.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <QPrintDialog>
#include <QPrinter>

using namespace orlo;
using namespace orlo::reporting;
using test::OpenPreview;

namespace
{

#ifdef __SANITIZE_ADDRESS__
constexpr bool KeepsFreedMemory = true;
#else
constexpr bool KeepsFreedMemory = false;
#endif

// Works the next dialog as soon as it is up.
template <class Dialog>
void whenDialogIsUp(const std::function<void(Dialog&)>& act)
{
    QTimer::singleShot(50, qApp, [act] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        dialog ? act(*dialog) : whenDialogIsUp<Dialog>(act);
    });
}

// The words of the windows of progress that come up meanwhile, at once.
std::shared_ptr<QStringList> progressTexts()
{
    setProgressDelay(0);
    const std::shared_ptr<QTimer> timer = std::make_shared<QTimer>();
    const auto texts = std::shared_ptr<QStringList>(new QStringList, [timer](QStringList* last) { delete last; });
    QObject::connect(timer.get(), &QTimer::timeout, [told = texts.get()] {
        if (const auto* dialog = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget()))
            *told = {dialog->labelText()};
    });
    timer->start(0);
    return texts;
}

} // namespace

class tst_preview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        setPrinterFactory({});
        setProgressDelay(400);
        platform::setToday({});
    }

    // A case is the document's text and then steps, "> words", with what each one changes below it, "-" for what is no
    // longer told, such as that a bar is hidden. "> all" tells everything.
    void steps_data() { test::cases({"case"}, "reporting/preview_steps.txt"); }
    void steps()
    {
        const QString text = test::cell("case").trimmed();
        QStringList seen(text.section('\n', 0, 0));
        test::PreviewSteps steps(seen[0]);
        QStringList before = steps.picture();
        for (const QString& line : text.split('\n')) {
            if (!line.startsWith("> "))
                continue;
            const bool all = line == "> all";
            before = all ? QStringList() : before;
            seen += QStringList(line) + (all ? QStringList() : steps.run(line.sliced(2)));
            const QStringList now = steps.picture();
            seen += test::changesOf(before, now);
            before = now;
        }
        QVERIFY(seen.size() > 2);
        test::comparePicture(seen, text);
    }

    // Memory in the middle of the heap, which freeing alone leaves with the process, is returned with a large
    // document.
    void givesMemoryBack()
    {
        if (KeepsFreedMemory || test::residentMemory() == 0)
            test::skip("a sanitizer keeps freed memory, or the system doesn't tell");
        Document large;
        std::vector<QByteArray> between; // keeps the heap's end where it is; larger parts would be out of the heap
        for (int page = 0; page < 100; ++page) {
            large.pages.emplace_back().items.resize(600);
            between.emplace_back(200, 'x');
        }
        auto shared = sharedDocument(std::move(large));
        const qint64 before = test::residentMemory();
        shared.reset();
        const qint64 given = before - test::residentMemory();
        QVERIFY2(given > 5'000'000, qPrintable(QString::number(given)));
    }

    void savesByTheDialog()
    {
        platform::setToday(QDate(2026, 3, 5));
        auto document = std::make_shared<Document>(*test::documentOf());
        document->title = "Pack:  47/awards "; // "Pack- 47-awards" in a file's name
        const OpenPreview preview(document);
        QTemporaryDir folder;
        const auto progress = progressTexts();
        const auto* notice = preview.child<QLabel>("lblNotice");
        for (const auto& [action, suffix, caption, filter] :
             {std::tuple("actSavePdf", "pdf", "Save as PDF", "PDF files: the pages as they are (*.pdf)"),
              {"actSaveCsv", "csv", "Save as CSV",
               "CSV files: all rows and their subreports, for a spreadsheet (*.csv)"}}) {
            QStringList shown;
            whenDialogIsUp<QFileDialog>([&](QFileDialog& dialog) {
                shown = QStringList{dialog.windowTitle(), QFileInfo(dialog.selectedFiles().value(0)).fileName()} +
                        dialog.nameFilters();
                if (*suffix == 'c') // where the one before went
                    shown += dialog.directory().path();
                dialog.findChild<QLineEdit*>()->setText(folder.filePath("list")); // without a suffix
                QTest::keyClick(&dialog, Qt::Key_Return);
            });
            preview.child<QAction>(action)->trigger();
            QStringList wanted{caption, QStringLiteral("Pack- 47-awards 2026-03-05.") + suffix, filter};
            QCOMPARE(shown, *suffix == 'c' ? wanted << folder.path() : wanted);
            const QString saved = QDir::toNativeSeparators(folder.filePath("list.")) + suffix;
            QCOMPARE(notice->text(), "Saved as " + saved);
            QCOMPARE(notice->accessibleName(), notice->text());
            preview.child<QToolButton>("cmdOpenSaved")->click();
            QCOMPARE(notice->text(), "No program of this computer opens " + saved + '.');
        }
        QCOMPARE(*progress, QStringList("Saving the report…"));
        QTimer cancel;
        connect(&cancel, &QTimer::timeout, [] {
            if (auto* dialog = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget()))
                dialog->cancel();
        });
        cancel.start(0);
        preview.window->savePdf(folder.filePath("given up.pdf"));
        QVERIFY(notice->text().startsWith("No program of this computer opens "));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), (QStringList{"list.csv", "list.pdf"}));
        QCOMPARE(test::pagesOf(folder.filePath("list.pdf")), 5);
        const QByteArray csv = test::contents(folder.filePath("list.csv"));
        folder.remove(); // the next one goes elsewhere
        QString elsewhere;
        whenDialogIsUp<QFileDialog>([&](QFileDialog& dialog) {
            elsewhere = dialog.directory().path();
            dialog.reject();
        });
        preview.child<QAction>("actSaveCsv")->trigger();
        QCOMPARE(elsewhere, QDir::homePath());
        QVERIFY(csv.startsWith("\xEF\xBB\xBFName,Quantity\r\n") && csv.endsWith("\"Café, \"\"4\"\"\",4\r\n"));
    }

    void tellsOfAFailedSave()
    {
        const QTemporaryDir folder; // a folder where the file is to go
        const OpenPreview preview;
        const QString path = QDir::toNativeSeparators(folder.path());
        for (const auto save : {&PreviewWindow::savePdf, &PreviewWindow::saveCsv}) {
            const auto told = test::answerNext();
            (preview.window->*save)(folder.path());
            QCOMPARE(told->title + told->kind, "Pack: 47/awardsWarning, OK");
            QVERIFY2(told->text.startsWith("The file " + path + " can't be saved.\n\nThe file " + path + " can"),
                     qPrintable(told->text));
            QVERIFY(preview.child<QWidget>("noticeBar")->isHidden());
        }
        if (QSysInfo::kernelType() == "winnt")
            return; // the system's own dialog
        test::printInto(folder.filePath("none/list.pdf"));
        whenDialogIsUp<QPrintDialog>([](QPrintDialog& dialog) { dialog.done(QDialog::Accepted); });
        const auto told = test::answerNext();
        preview.child<QAction>("actPrint")->trigger();
        QVERIFY(told->title == "Pack: 47/awards" &&
                told->text.contains("none" + QString(QDir::separator()) + "list.pdf"));
    }

    // Whatever closes the preview also closes its dialogs.
    void goesUnderItsDialogs()
    {
        const QTemporaryDir folder; // a folder where the file is to go
        auto untitled = std::make_shared<Document>();
        untitled->pages.resize(1);
        QString offered;
        for (const char* action : {"actPrint", "actSavePdf", "actSaveCsv", ""}) {
            const OpenPreview preview(untitled);
            QCOMPARE(preview.window->windowTitle(), "Report");
            const auto goes = [&](QDialog& dialog) {
                const auto* files = qobject_cast<QFileDialog*>(&dialog);
                offered += files ? QFileInfo(files->selectedFiles().value(0)).fileName().first(6) : QString();
                delete preview.window;
            };
            if (qstrcmp(action, "actPrint") == 0 && QSysInfo::kernelType() == "winnt")
                continue; // the system's own dialog
            whenDialogIsUp<QDialog>(goes);
            if (*action)
                preview.child<QAction>(action)->trigger();
            else
                preview.window->saveCsv(folder.path());
            QVERIFY(!preview.window && !QApplication::activeModalWidget());
        }
        QCOMPARE(offered, "ReportReport");
    }

    void printsByTheDialog()
    {
        if (QSysInfo::kernelType() == "winnt")
            QSKIP("the dialog is the system's own, which no test reaches");
        const QTemporaryDir folder;
        for (const auto& [option, copies, collated, months] : // the copies from the last page to the first
             {std::tuple("printAll", 1, true, "JFMAM"),
              {"printRange", 2, true, "MFMF"},
              {"printRange", 2, false, "MMFF"},
              {"printCurrentPage", 1, true, "A"}}) {
            const OpenPreview preview(test::documentOf("5, paper 595 842"));
            preview.window->view().goToPage(3);
            const QString file = folder.filePath(months);
            test::printInto(file);
            QStringList offered;
            whenDialogIsUp<QPrintDialog>([&](QPrintDialog& dialog) {
                for (const int page : {dialog.minPage(), dialog.maxPage(), dialog.fromPage(), dialog.toPage()})
                    offered += QString::number(page);
                for (const QString part : {"printAll", "printRange", "printCurrentPage", "collate"})
                    if (const auto* box = dialog.findChild<QWidget*>(part); box->isEnabled() && !box->isHidden())
                        offered += part;
                offered << dialog.printer()->pageLayout().pageSize().name() << dialog.printer()->docName();
                dialog.findChild<QRadioButton*>(option)->click();
                dialog.findChild<QSpinBox*>("from")->setValue(2);
                dialog.findChild<QSpinBox*>("to")->setValue(3);
                dialog.findChild<QSpinBox*>("copies")->setValue(copies);
                dialog.findChild<QCheckBox*>("collate")->setChecked(collated);
                dialog.findChild<QCheckBox*>("reverse")->setChecked(copies > 1);
                dialog.accept();
            });
            const auto progress = progressTexts();
            preview.child<QAction>("actPrint")->trigger();
            QCOMPARE(*progress, QStringList("Printing the report…"));
            QCOMPARE(offered.join(' '), "1 5 1 5 printAll printRange printCurrentPage collate A4 Pack: 47/awards");
            QString printed;
            for (const QString& line : test::linesOf(file).filter("Page "))
                printed += line.trimmed()[5];
            QCOMPARE(printed, months);
        }
    }

    // What a printer with paper, or a file in its place, is given, and what is told meanwhile.
    void prints_data() { test::tableOf("reporting/preview_prints.txt"); }
    void prints()
    {
        const auto [text, printer, pages] = test::cells("document", "printer", "pages");
        const QTemporaryDir folder;
        const QString file = folder.filePath(printer.contains("unreachable") ? "none/sheets.pdf" : "sheets.pdf");
        test::printInto(file);
        const std::unique_ptr<QPrinter> given = defaultPrinter();
        test::PaperPrinter paper(file, printer.split(", "));
        QPrinter& used = printer.startsWith("file") ? *given : paper;
        const auto document = test::documentOf(text);
        used.setPageOrientation(document->paper.width() > 700 ? QPageLayout::Portrait : QPageLayout::Landscape);
        preparePrinter(used, *document);
        QCOMPARE(used.docName(), document->title);
        QStringList told;
        const auto value = [&printer](const char* name) { // "copies 2"
            return QRegularExpression(name + QString(" (\\w+)")).match(printer).captured(1);
        };
        if (const QString sheet = value("on"); !sheet.isEmpty())
            used.setPageSize(QPageSize(sheet == "A5" ? QPageSize::A5 : QPageSize::A3));
        used.setCopyCount(std::max(value("copies").toInt(), 1));
        used.setCollateCopies(!printer.contains("loose"));
        used.setPageOrder(printer.contains("backwards") ? QPrinter::LastPageFirst : QPrinter::FirstPageFirst);
        const int last = value("stops").toInt();
        try {
            const auto goesOn = [&](int done, int all) {
                told += QStringLiteral("%1/%2").arg(done).arg(all);
                return done != last;
            };
            const bool done = printDocument(used, *document, pages.section(u' ', 0, 0).toInt(),
                                            pages.section(u' ', 1).toInt(), goesOn);
            told += done ? "printed" : "stopped";
        } catch (const platform::RuntimeError& error) {
            told += QString::number(error.number()) + ' ' + error.description();
        }
        told += paper.wasAborted() ? QStringList("given up") : QStringList();
        const QString words = QDir::fromNativeSeparators(told.join(' ')).replace(folder.path(), "$");
        QTEST(QString(words).remove(QRegularExpression("(?<=be written): .*")), "told"); // the system's own words
        if (QStandardPaths::findExecutable("pdftotext").isEmpty())
            QSKIP("pdftotext is missing: the printed pages are not looked at");
        if (!paper.wasAborted())
            QTEST(test::sheetsOf(file).join("; "), "sheets");
    }
};

ORLO_TEST(tst_preview)
#include "tst_preview.moc"
