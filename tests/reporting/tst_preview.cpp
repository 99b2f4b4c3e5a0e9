#include "platform/Conversion.h"
#include "reporting/view/PageText.h"
#include "reporting/view/PageView.h"
#include "reporting/view/PreviewWindow.h"
#include "reporting/view/Printing.h"
#include "reporting/view/SharedDocument.h"
#include "support/Controls.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/PrintedFile.h"
#include "support/System.h"
#include "support/Table.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <QPrintDialog>
#include <QPrinter>

using namespace orlo;
using namespace orlo::reporting;

namespace
{

#ifdef __SANITIZE_ADDRESS__
constexpr bool KeepsFreedMemory = true;
#else
constexpr bool KeepsFreedMemory = false;
#endif

constexpr int Pages = 5;

// Each page has its number as a word, the word "row" twice and one line of the list.
std::shared_ptr<const Document> sampleDocument(int pages = Pages)
{
    auto document = std::make_shared<Document>();
    document->title = "Pack: 47/awards";
    document->fonts = {QFont("DejaVu Sans", 10)};
    document->columns = {"Name", "Quantity"};
    for (int page = 0; page < pages; ++page) {
        const QString number = QLocale::c().toString(QDate(2026, page + 1, 1), "MMMM");
        document->pages.push_back(
            {{TextItem{{72, 72, 400, 14}, "Page " + number}, TextItem{{72, 400, 400, 14}, "first row and another ROW"},
              BoxItem{{72, 700, 468, 20}, 0, Qt::black, Qt::darkGreen}}});
        document->outline.push_back({"Den " + number, 0, page});
        document->rows.push_back({QStringLiteral("Café, \"%1\"").arg(page), QString::number(page)});
    }
    return document;
}

QRectF hitOf(const Document& document, const QString& text, std::size_t hit = 0)
{
    const TextSpan span = findText(document, text).at(hit);
    return PageText(document, span.page).boxes(span.from, span.to).at(0);
}

// Works the next dialog as soon as it is up.
template <class Dialog>
void whenDialogIsUp(const std::function<void(Dialog&)>& act)
{
    QTimer::singleShot(50, qApp, [act] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        dialog ? act(*dialog) : whenDialogIsUp<Dialog>(act);
    });
}

class OpenPreview
{
public:
    explicit OpenPreview(std::shared_ptr<const Document> document = sampleDocument())
        : window(new PreviewWindow(std::move(document)))
    {
        window->resize(700, 600);
        window->show();
        static_cast<void>(QTest::qWaitForWindowActive(window));
    }
    ~OpenPreview() { delete window; }
    template <class T>
    T* child(const char* name) const
    {
        return window->findChild<T*>(name);
    }
    QSpinBox& box() const { return *child<QSpinBox>("spnPage"); }
    int page() const { return box().value(); }
    bool isAtTop(int page) const { return qRound(window->view().pageBox(page - 1).top()) == 16; }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    QRgb pixel(QPointF onPaper, int page) const
    {
        const PageView& view = window->view();
        const QImage image = view.viewport()->grab().toImage();
        const QPointF at = view.pageBox(page).topLeft() + onPaper * view.pageBox(page).width() / 612;
        return image.pixel((at * image.devicePixelRatio()).toPoint());
    }

    QPointer<PreviewWindow> window;
};

} // namespace

class tst_preview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        setPrinterFactory({});
        platform::setToday({});
    }

    void goesThroughPages()
    {
        const OpenPreview preview;
        QVERIFY(!preview.window->parent() && !preview.window->windowHandle()->transientParent()); // no dialog blocks it
        QVERIFY(!preview.window->testAttribute(Qt::WA_QuitOnClose)); // and the program ends without it
        using Step = std::tuple<const char*, int, int>;
        for (const auto& [action, from, to] : {Step("actNext", 1, 2), Step("actNext", 4, 5), Step("actPrevious", 3, 2),
                                               Step("actFirst", 4, 1), Step("actLast", 1, 5)}) {
            preview.box().setValue(from);
            QCOMPARE(preview.window->view().currentPage(), from - 1);
            preview.child<QAction>(action)->trigger();
            QCOMPARE(preview.page(), to);
            QCOMPARE(preview.child<QAction>("actNext")->isEnabled(), to < Pages);
            QCOMPARE(preview.child<QAction>("actFirst")->isEnabled(), to > 1);
            QVERIFY(to == Pages || preview.isAtTop(to));
        }
        PageView& view = preview.window->view();
        view.setZoom(0.2); // several pages fit; none but the wanted one is told
        view.goToPage(0);
        const QSignalSpy told(&view, &PageView::currentPageChanged);
        view.goToPage(3);
        QCOMPARE(told.size(), 1);
        preview.child<QAction>("actLast")->trigger();
        preview.window->setPageListVisible(true);
        auto* pages = preview.child<QListView>("lstPages");
        QCOMPARE(pages->currentIndex().row(), Pages - 1);
        const QRect third = pages->visualRect(pages->model()->index(2, 0));
        QTest::mouseClick(pages->viewport(), Qt::LeftButton, {}, third.center());
        QCOMPARE(preview.page(), 3);
    }

    // A page that doesn't fit into the window is read to its end before the next one starts, and each page from its
    // top; pages that fit are turned one by one.
    void readsByKeys()
    {
        const OpenPreview preview;
        const QScrollBar* bar = preview.window->view().verticalScrollBar();
        preview.key(Qt::Key_Down);
        QVERIFY(bar->value() > 20); // a line
        preview.key(Qt::Key_End);
        QCOMPARE(bar->value(), bar->maximum());
        preview.key(Qt::Key_Home);
        for (const auto& [key, end, page] :
             {std::tuple(Qt::Key_PageDown, bar->maximum(), Pages), {Qt::Key_PageUp, 0, 1}}) {
            QSet<int> readFromTop{1};
            for (int i = 0; i < 4 * Pages && bar->value() != end; ++i) {
                preview.key(key);
                if (preview.isAtTop(preview.page()))
                    readFromTop << preview.page();
            }
            QCOMPARE(readFromTop.size(), Pages);
            QCOMPARE(bar->value(), end);
            QCOMPARE(preview.page(), page);
        }
        preview.key(Qt::Key_Home, Qt::ControlModifier);
        preview.window->view().setFit(PageView::Fit::Page);
        QString pages = QString::number(preview.page());
        for (int step = 1; step < 2 * Pages - 1; ++step) {
            const bool on = step < Pages, space = step % 2 == 0;
            preview.key(space ? Qt::Key_Space
                        : on  ? Qt::Key_PageDown
                              : Qt::Key_PageUp,
                        space && !on ? Qt::ShiftModifier : Qt::NoModifier);
            pages += QString::number(preview.page());
        }
        QCOMPARE(pages, "123454321");
    }

    void zooms()
    {
        const OpenPreview preview;
        PageView& view = preview.window->view();
        auto* box = preview.child<QComboBox>("cboZoom");
        const auto type = [&](const QString& text) {
            box->setFocus();
            box->lineEdit()->selectAll();
            QTest::keyClicks(box->lineEdit(), text + u'\r');
        };
        for (const char* typed : {"150 %", "wide"}) {
            type(typed);
            QCOMPARE(view.zoom(), 1.5);
            QCOMPARE(box->currentText(), "150%");
        }
        for (const auto& [key, zoom] :
             {std::pair(Qt::Key_Plus, 2.0), {Qt::Key_Minus, 1.5}, {Qt::Key_Minus, 1.25}, {Qt::Key_0, 1.0}}) {
            preview.key(key, Qt::ControlModifier);
            QCOMPARE(view.zoom(), zoom);
        }
        QCOMPARE(view.verticalScrollBar()->value(), 0); // the top of the first page stays there, later the middle
        view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum() / 2);
        const auto middle = [&] {
            const QRectF sheet = view.pageBox(2);
            return (view.viewport()->height() / 2.0 - sheet.top()) / sheet.height();
        };
        const double before = middle();
        view.setZoom(3);
        QVERIFY(qAbs(middle() - before) < 0.002);

        box->setFocus();
        QTest::keyClicks(box->lineEdit(), "7"); // it isn't entered
        preview.key(Qt::Key_Escape);
        QCOMPARE(box->currentText(), "300%");
        preview.window->resize(640, 600); // a zoom set by hand stays
        QCOMPARE(view.zoom(), 3.0);
        view.setFit(PageView::Fit::Page);
        const QPointF at = view.viewport()->rect().center();
        QWheelEvent wheel(at, view.viewport()->mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::ControlModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &wheel);
        const double zoom = view.zoom();
        preview.window->resize(600, 500);
        QCOMPARE(view.zoom(), zoom);

        type("Fit Width");
        const auto fits = [&] { return qAbs(view.viewport()->width() - view.pageBox(0).width() - 33) <= 1; };
        QVERIFY(fits());
        preview.window->resize(560, 600);
        QTRY_VERIFY(fits());
        type("Fit Page");
        QVERIFY(view.pageBox(0).height() <= view.viewport()->height());
    }

    void findsTextAroundTheEnd()
    {
        const OpenPreview preview;
        preview.box().setValue(4);
        preview.window->view().setFocus();
        preview.key(Qt::Key_F, Qt::ControlModifier);
        auto* text = preview.child<QLineEdit>("txtFind");
        const auto* state = preview.child<QLabel>("lblFindState");
        QVERIFY(text->hasFocus());
        QTest::keyClicks(text, "row");
        QCOMPARE(state->text(), "7 of 10");
        const auto colorOfHit = [&] { return preview.pixel(hitOf(preview.window->document(), "row", 6).topLeft(), 3); };
        const QRgb current = colorOfHit(); // it has its own colour
        preview.key(Qt::Key_Return);
        QVERIFY(colorOfHit() != current);
        for (int i = 0; i < 4; ++i)
            preview.child<QToolButton>("cmdFindNext")->click();
        preview.child<QToolButton>("cmdFindPrevious")->click();
        QCOMPARE(state->text(), "1 of 10");
        QCOMPARE(preview.page(), 1);
        preview.key(Qt::Key_F3, Qt::ShiftModifier);
        QCOMPARE(state->text(), "10 of 10");

        text->selectAll();
        QTest::keyClicks(text, "page MARCH");
        QCOMPARE(state->text(), "1 of 1");
        QCOMPARE(preview.page(), 3);
        QCOMPARE(preview.pixel({300, 300}, 2), QColor(Qt::white).rgb());
        const QRectF hit = hitOf(preview.window->document(), "page march");
        QVERIFY(preview.pixel(hit.topLeft() + QPointF(0.5, 1.5), 2) != QColor(Qt::white).rgb()); // it is marked
        QTest::keyClicks(text, "x");
        QCOMPARE(state->text(), "Not found");

        preview.key(Qt::Key_Escape);
        QVERIFY(!text->isVisible() && preview.window->isVisible());
        preview.key(Qt::Key_W, Qt::ControlModifier);
        QTRY_VERIFY(!preview.window);

        Document hebrew; // right to left
        hebrew.fonts = {QFont()};
        hebrew.pages = {{{TextItem{{0, 0, 400, 14}, "שלום עולם"}}}};
        QVERIFY(hitOf(hebrew, "שלום").left() > hitOf(hebrew, "עולם").right());
    }

    // Other pages replace those that were searched, fewer or more; the reader's place stays.
    void findsInOtherPages()
    {
        for (const auto& [open, pages, told, toldNext] :
             {std::tuple(true, 3, "1 of 6", "2 of 6"), {true, 7, "10 of 14", "11 of 14"}, {false, 3, "", "3 of 6"}}) {
            const OpenPreview preview;
            preview.key(Qt::Key_F, Qt::ControlModifier);
            QTest::keyClicks(QApplication::focusWidget(), "row");
            preview.key(Qt::Key_F3, Qt::ShiftModifier);
            const auto* state = preview.child<QLabel>("lblFindState");
            QCOMPARE(state->text(), "10 of 10");
            if (!open)
                preview.key(Qt::Key_Escape);
            PageView& view = preview.window->view();
            view.goToPage(1, 10);
            const int place = view.verticalScrollBar()->value();
            preview.window->setDocument(sampleDocument(pages));
            QCOMPARE(view.verticalScrollBar()->value(), place);
            QCOMPARE(preview.page(), 2);
            QVERIFY(!open || state->text() == told);
            preview.key(Qt::Key_F3);
            QCOMPARE(state->text(), toldNext);
        }
    }

    void marksAndCopiesText()
    {
        auto document = std::make_shared<Document>(*sampleDocument());
        document->pages[0] = {{TextItem{{72, 72, 60, 12}, "Bear Den"},
                               TextItem{{200, 72, 60, 12}, "Ann Ito", 0, Qt::black, 1},
                               TextItem{{72, 100, 60, 24}, "a long\nname"}}};
        const OpenPreview preview(document);
        PageView& view = preview.window->view();
        const auto at = [&](double x, double y) {
            const QRectF sheet = view.pageBox(0);
            return (sheet.topLeft() + QPointF(x, y) * sheet.width() / 612).toPoint();
        };
        const auto moveTo = [&](QPointF to) {
            QMouseEvent move(QEvent::MouseMove, to, view.viewport()->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(view.viewport(), &move);
        };
        const auto drag = [&](QPoint from, QPoint to) {
            QTest::mousePress(view.viewport(), Qt::LeftButton, {}, from);
            moveTo(to);
            QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, to);
        };
        const auto copied = [&] {
            QGuiApplication::clipboard()->setText("nothing");
            preview.key(Qt::Key_C, Qt::ControlModifier);
            return QGuiApplication::clipboard()->text();
        };
        QCOMPARE(copied(), "nothing");
        drag(at(73, 78), at(131, 122)); // to the end of the third text
        QCOMPARE(copied(), "Bear Den\t\tAnn Ito\na long name");
        QVERIFY(preview.pixel({74, 72.5}, 0) != QColor(Qt::white).rgb());
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, at(75, 78));
        QCOMPARE(copied(), "Bear");
        const int before = view.verticalScrollBar()->value(); // dragging beside the texts moves the paper
        drag(at(300, 300), at(300, 250));
        QVERIFY(view.verticalScrollBar()->value() > before);
        QCOMPARE(copied(), "nothing");
        view.goToPage(0);
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at(73, 78)); // other pages end a selection
        preview.window->setDocument(std::make_shared<const Document>(*document));
        moveTo(at(131, 122));
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at(131, 122));
        QCOMPARE(copied(), "nothing");
        QCOMPARE(view.verticalScrollBar()->value(), 0);
        preview.key(Qt::Key_A, Qt::ControlModifier);
        QVERIFY(copied().startsWith("Bear Den\t") && copied().endsWith("first row and another ROW"));
    }

    void tellsReadersItsText()
    {
        const OpenPreview preview;
        PageView& view = preview.window->view();
        auto* reader = QAccessible::queryAccessibleInterface(&view);
        auto* text = reader->textInterface();
        QVERIFY(text);
        QCOMPARE(text->text(0, text->characterCount()), "Page January\nfirst row and another ROW");
        QCOMPARE(reader->child(0)->object(), view.viewport());
        view.goToPage(1);
        int from = 0;
        int to = 0;
        QCOMPARE(text->textAtOffset(16, QAccessible::LineBoundary, &from, &to), "first row and another ROW");
        QCOMPARE(std::pair(from, to), std::pair(14, 39));
        QCOMPARE(text->offsetAtPoint(text->characterRect(20).center()), 20);
        QCOMPARE(text->offsetAtPoint(view.viewport()->mapToGlobal(QPoint(2, 2))), -1);
        text->addSelection(20, 23);
        view.copy();
        QCOMPARE(QGuiApplication::clipboard()->text(), "row");
        view.setZoom(3);
        text->scrollToSubstring(20, 23);
        QVERIFY(view.viewport()->rect().contains(view.viewport()->mapFromGlobal(text->characterRect(20).center())));
        text->selection(0, &from, &to);
        QCOMPARE(std::pair(from, to), std::pair(20, 23));
        text->removeSelection(0);
        QCOMPARE(text->selectionCount(), 0);
        text->setCursorPosition(30);
        QCOMPARE(text->cursorPosition(), 30);
        view.goToPage(2); // the reader starts at its top
        QCOMPARE(text->cursorPosition(), 0);
        text->setCursorPosition(30);
        preview.window->setDocument(std::make_shared<Document>()); // what it knew is gone
        QCOMPARE(text->cursorPosition(), 0);
        text->setCursorPosition(30);
        text->addSelection(0, 3);
        view.copy();
        QCOMPARE(text->characterCount() + text->selectionCount(), 0);
    }

    // Memory in the middle of the heap, which freeing alone leaves with the process, is returned with a large
    // document.
    void givesMemoryBack()
    {
        if (KeepsFreedMemory || test::residentMemory() == 0)
            test::skip("a sanitizer keeps freed memory, or the system doesn't tell");
        Document large;
        std::vector<QByteArray> between; // keeps the heap's end where it is
        for (int page = 0; page < 1000; ++page) {
            large.pages.emplace_back().items.resize(100);
            between.emplace_back(200, 'x');
        }
        auto shared = sharedDocument(std::move(large));
        const qint64 before = test::residentMemory();
        shared.reset();
        const qint64 given = before - test::residentMemory();
        QVERIFY2(given > 5'000'000, qPrintable(QString::number(given)));
    }

    void copiesAddresses()
    {
        auto document = std::make_shared<Document>(*sampleDocument());
        for (const auto& [page, text] : {std::pair(0, "Ann: ann@x.org or paul@fern-hollow.org"),
                                         {2, "b.long@fern.\nhollow.org"},
                                         {4, "ANN@x.org"}})
            document->pages[std::size_t(page)].items.push_back(TextItem{{72, 200, 300, 24}, text});
        const OpenPreview preview(document);
        preview.child<QAction>("actCopyAddresses")->trigger();
        QCOMPARE(QGuiApplication::clipboard()->text(), "ann@x.org; paul@fern-hollow.org; b.long@fern.hollow.org");
        QCOMPARE(preview.child<QLabel>("lblNotice")->text(), "3 e-mail addresses are on the clipboard.");
        preview.window->setDocument(sampleDocument());
        preview.child<QAction>("actCopyAddresses")->trigger();
        QVERIFY(preview.child<QLabel>("lblNotice")->text().startsWith("There are no e-mail addresses"));
        QVERIFY(!preview.child<QAction>("actRefresh")->isEnabled());
    }

    // What can be done with pages, with the first one of more, and with none.
    void offersWhatItCan()
    {
        const OpenPreview preview;
        for (const auto& [pages, complete, live] :
             {std::tuple(3, true, "Print SavePdf SaveCsv SelectAll CopyAddresses Next Last"),
              {1, false, "SelectAll"},
              {0, true, "SaveCsv"}}) {
            auto document = std::make_shared<Document>(*sampleDocument(pages));
            document->complete = complete;
            preview.child<QTabWidget>("tabPageList")->setCurrentIndex(1);
            preview.window->setDocument(document);
            QCOMPARE(preview.child<QTabWidget>("tabPageList")->currentIndex(), int(pages > 0));
            QStringList names;
            for (const QString name : {"Print", "SavePdf", "SaveCsv", "SelectAll", "CopyAddresses", "Next", "Last"})
                if (preview.window->findChild<QAction*>("act" + name)->isEnabled())
                    names << name;
            QCOMPARE(names.join(' '), live);
        }
    }

    void goesToATypedPage_data() { test::table({"typed", "page"}, "4 | 4\n99 | 5\n12345678901234 | 5\n0 | 2"); }
    void goesToATypedPage()
    {
        const OpenPreview preview;
        preview.box().setValue(2);
        preview.key(Qt::Key_G, Qt::ControlModifier);
        QVERIFY(preview.box().hasFocus());
        QTest::keyClicks(QApplication::focusWidget(), test::cell("typed") + u'\r');
        QTEST(QString::number(preview.page()), "page");
        QCOMPARE(preview.window->view().currentPage() + 1, preview.page());
        QVERIFY(preview.window->view().hasFocus());
    }

    // An entry leads to its line, and the line being read marks its entry.
    void followsTheOutline()
    {
        auto document = std::make_shared<Document>(*sampleDocument());
        document->outline = {{"Bear", 0, 0, 100}, {"Ann", 1, 0, 110}, {"Wolf", 0, 1, 500}, {"Lion", 0, 4, 700}};
        const OpenPreview preview(document);
        preview.window->setPageListVisible(true);
        PageView& view = preview.window->view();
        auto* outline = preview.child<QTreeWidget>("treOutline");
        const auto pick = [&](int entry) { outline->setCurrentItem(outline->topLevelItem(entry)); };
        const auto marked = [&] { return outline->currentItem()->text(0); };
        pick(1);
        QCOMPARE(preview.page(), 2);
        const QRectF sheet = view.pageBox(1);
        QVERIFY(qAbs(sheet.top() + 500 * sheet.width() / 612 - 16) <= 1);
        QCOMPARE(marked(), "Wolf");
        pick(2); // it can't be scrolled to the top
        QCOMPARE(marked(), "Lion");
        preview.key(Qt::Key_Home);
        QCOMPARE(marked(), "Bear");
        view.verticalScrollBar()->setValue(view.verticalScrollBar()->value() + 150);
        QCOMPARE(marked(), "Ann");
        preview.box().setValue(4);
        QCOMPARE(marked(), "Wolf");
    }

    // Tab goes round the window, with an outline and without; Escape first moves the focus to the pages.
    void tabAndEscape_data() { test::table({"outline"}, "with an outline\nwithout one"); }
    void tabAndEscape()
    {
        auto document = std::make_shared<Document>(*sampleDocument());
        if (test::cell("outline") == "without one")
            document->outline.clear();
        OpenPreview preview(document);
        preview.window->setPageListVisible(true);
        auto& view = preview.window->view();
        QSet<QWidget*> reached;
        for (QWidget* at = &view; at && !reached.contains(at); at = QApplication::focusWidget()) {
            reached += at;
            QTest::keyClick(at, Qt::Key_Tab);
        }
        for (const char* name : {"lstPages", "spnPage", "cboZoom", "vwPages"}) {
            auto* control = preview.child<QWidget>(name);
            QVERIFY2(reached.contains(control), name);
            control->setFocus();
            QTest::keyClick(control, Qt::Key_Escape);
            QCOMPARE(preview.window->isVisible(), control != &view);
            QVERIFY(control == &view || view.hasFocus());
        }
    }

    void savesByTheDialog()
    {
        platform::setToday(QDate(2026, 3, 5));
        const OpenPreview preview;
        for (const QString suffix : {"Pdf", "Csv"}) {
            const QTemporaryDir folder;
            const QString file = "list." + suffix.toLower();
            QString proposed;
            whenDialogIsUp<QFileDialog>([&](QFileDialog& dialog) {
                proposed = QFileInfo(dialog.selectedFiles().value(0)).fileName();
                dialog.findChild<QLineEdit*>()->setText(folder.filePath("list")); // without a suffix
                QTest::keyClick(&dialog, Qt::Key_Return);
            });
            preview.window->findChild<QAction*>("actSave" + suffix)->trigger();
            QCOMPARE(proposed, "Pack- 47-awards 2026-03-05." + suffix.toLower());
            const QString saved = folder.filePath(file);
            QVERIFY(preview.child<QLabel>("lblNotice")->text().contains(QDir::toNativeSeparators(saved)));
            QVERIFY(preview.child<QToolButton>("cmdOpenSaved")->isVisible());
            QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{file});
            QVERIFY(suffix == "Pdf" ? test::pagesOf(saved) == Pages
                                    : test::contents(saved).contains("\"Café, \"\"4\"\"\",4\r\n"));
        }
    }

    void tellsOfAFailedSave()
    {
        const QTemporaryDir folder; // a folder where the file is to go
        const OpenPreview preview;
        const auto told = test::answerNext();
        QVERIFY(!preview.window->saveCsv(folder.path()));
        QVERIFY2(told->text.count(QDir::toNativeSeparators(folder.path())) == 2, qPrintable(told->text));
    }

    // Whatever closes the preview also closes its dialogs.
    void goesUnderItsDialogs()
    {
        const QTemporaryDir folder; // a folder where the file is to go
        for (const char* action : {"actPrint", "actSavePdf", "actSaveCsv", ""}) {
            const OpenPreview preview;
            const auto goes = [&](QDialog&) { delete preview.window; };
            if (qstrcmp(action, "actPrint") == 0 && QSysInfo::kernelType() == "winnt")
                continue; // the system's own dialog
            whenDialogIsUp<QDialog>(goes);
            if (*action)
                preview.child<QAction>(action)->trigger();
            else
                QVERIFY(!preview.window->saveCsv(folder.path()));
            QVERIFY(!preview.window && !QApplication::activeModalWidget());
        }
    }

    void printsByTheDialog()
    {
        if (QSysInfo::kernelType() == "winnt")
            QSKIP("the dialog is the system's own, which no test reaches");
        const QTemporaryDir folder;
        for (const auto& [option, copies, months] : // the copies from the last page to the first
             {std::tuple("printAll", 1, "JFMAM"), {"printRange", 2, "MFMF"}, {"printCurrentPage", 1, "J"}}) {
            const OpenPreview preview;
            const QString file = folder.filePath(option);
            test::printInto(file);
            whenDialogIsUp<QPrintDialog>([&](QPrintDialog& dialog) {
                dialog.findChild<QRadioButton*>(option)->click();
                dialog.findChild<QSpinBox*>("from")->setValue(2);
                dialog.findChild<QSpinBox*>("to")->setValue(3);
                dialog.findChild<QSpinBox*>("copies")->setValue(copies);
                dialog.findChild<QCheckBox*>("reverse")->setChecked(copies > 1);
                dialog.accept();
            });
            preview.key(Qt::Key_P, Qt::ControlModifier);
            QString printed;
            for (const QString& line : test::linesOf(file).filter("Page "))
                printed += line.trimmed()[5];
            QCOMPARE(printed, months);
        }
        QPrinter none;
        none.setOutputFileName(folder.filePath("none.pdf"));
        QVERIFY(!printDocument(none, *sampleDocument(), 1, 0, [](int page, int) { return page < 2; }));
        QVERIFY(!QFile::exists(none.outputFileName()));
    }
};

ORLO_TEST(tst_preview)
#include "tst_preview.moc"
