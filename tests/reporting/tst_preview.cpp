#include "platform/Conversion.h"
#include "reporting/view/NoticeBar.h"
#include "reporting/view/PageView.h"
#include "reporting/view/PreviewWindow.h"
#include "reporting/view/Printing.h"
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

namespace
{

#ifdef __SANITIZE_ADDRESS__
constexpr bool KeepsFreedMemory = true;
#else
constexpr bool KeepsFreedMemory = false;
#endif

constexpr int Pages = 5;

// "5" is a document of five pages. Each has its number as a word, the word "row" twice and one line of the list. What
// follows after commas is left out ("first" of all pages, "outline") or added: a text, as "2 at 72 200 300 24: words"
// on page 2, or a line, box or picture with its colours, an entry of the outline, as "entry 0 2 500: words".
std::shared_ptr<const Document> documentOf(const QString& text = QString::number(Pages))
{
    auto document = std::make_shared<Document>();
    document->title = "Pack: 47/awards";
    document->fonts = {QFont("DejaVu Sans", 10)};
    document->columns = {"Name", "Quantity"};
    const QStringList parts = text.split(", ");
    for (int page = 0; page < parts[0].toInt(); ++page) {
        const QString number = QLocale::c().toString(QDate(2026, page + 1, 1), "MMMM");
        document->pages.push_back(
            {{TextItem{{72, 72, 400, 14}, "Page " + number}, TextItem{{72, 400, 400, 14}, "first row and another ROW"},
              BoxItem{{72, 700, 468, 20}, 0, Qt::black, Qt::darkGreen}}});
        document->outline.push_back({"Den " + number, 0, page});
        document->rows.push_back({QStringLiteral("Café, \"%1\"").arg(page), QString::number(page)});
    }
    for (const QString& part : parts.mid(1)) {
        QString words = part.section(": ", 1).replace("\\n", "\n");
        const QStringList at = part.section(':', 0, 0).split(' ');
        const auto number = [&](int i) { return at.value(i).toDouble(); };
        if (part == "first")
            document->complete = false;
        else if (part == "no outline")
            document->outline.clear();
        else if (at[0] == "paper")
            document->paper = {number(1), number(2)};
        else if (part == "blank")
            document->pages[0].items.clear();
        else if (at[0] == "entry")
            document->outline.push_back({words, at[1].toInt(), at[2].toInt() - 1, number(3)});
        else {
            std::vector<Item>& items = document->pages[at[0].toUInt() - 1].items;
            const QRectF box(number(2), number(3), number(4), number(5));
            const QColor color(words.section(' ', 0, 0)), fill(words.section(' ', 1, 1));
            const auto empty = int(words.count('_'));
            if (at[1] == "line")
                items.push_back(LineItem{box.topLeft(), {number(4), number(5)}, number(6), color});
            else if (at[1] == "box")
                items.push_back(BoxItem{box, number(6), color, fill.isValid() ? fill : Qt::transparent});
            else if (at[1] == "picture") {
                items.push_back(PictureItem{box, QImage(2, 2, QImage::Format_RGB32)});
                std::get<PictureItem>(items.back()).picture.fill(color);
            } else
                items.push_back(TextItem{box, words.remove('_'), 0, Qt::black, empty});
        }
    }
    return document;
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
    explicit OpenPreview(std::shared_ptr<const Document> document = documentOf())
        : window(new PreviewWindow(std::move(document)))
    {
        window->resize(700, 600);
        window->show();
        static_cast<void>(QTest::qWaitForWindowActive(window));
    }
    ~OpenPreview() { delete window; }
    template <class T>
    T* child(const QString& name) const
    {
        return window->findChild<T*>(name);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    QPointer<PreviewWindow> window;
};

// A window of pages that a case works step by step, and all that it shows.
class Steps : public QObject
{
    Q_OBJECT

public:
    explicit Steps(const QString& document) : m_preview(documentOf(document))
    {
        const PageView* view = &this->view();
        connect(view, &PageView::currentPageChanged, this, [this, view](int page) {
            note(QStringLiteral("page %1").arg(page + 1));
            if (page != view->currentPage())
                note(QStringLiteral("but shows %1").arg(view->currentPage() + 1));
        });
        connect(view, &PageView::scrolled, this, [this] { note("scrolled"); });
        connect(view, &PageView::zoomChanged, this, [this] { note("zoom"); });
        connect(view, &PageView::selectionChanged, this, [this] { note("selection"); });
        QDesktopServices::setUrlHandler("file", this, "opened");
        QGuiApplication::clipboard()->clear();
        run("size 900 540");
    }
    ~Steps() override { QDesktopServices::unsetUrlHandler("file"); }

    // The lines of the window's picture.
    QStringList picture() const
    {
        if (!m_preview.window)
            return {"closed"};
        QStringList lines = test::pictureOf(*m_preview.window);
        lines.removeIf([](const QString& line) { return line.endsWith("], hidden"); }); // a list behind another
        lines.replaceInStrings(QRegularExpression("^((cboZoom|spnPage): .*), hidden"), "\\1"); // for lack of room
        QStringList off;
        for (const auto* action : m_preview.window->findChildren<QAction*>(QRegularExpression("^act")))
            off += action->isEnabled() ? QStringList() : QStringList(action->objectName().sliced(3));
        const QRectF box = view().pageBox(view().currentPage());
        lines += "off: " + off.join(' ');
        lines += QStringLiteral("page: at %1, %2, %3 x %4")
                     .arg(QString::number(box.left()), QString::number(box.top()), QString::number(box.width()),
                          QString::number(box.height()));
        lines += "described: " + view().accessibleDescription() + "; " +
                 m_preview.child<QComboBox>("cboZoom")->accessibleDescription();
        lines += "pointer: " + QVariant::fromValue(view().viewport()->cursor().shape()).toString();
        if (const auto* outline = m_preview.child<QTreeWidget>("treOutline"))
            lines += "entry: " + outline->currentItem()->text(0);
        return lines + QStringList("clipboard: " + QGuiApplication::clipboard()->text().replace('\n', "\\n"));
    }

    // Does a step; what it tells, other than by the picture.
    QStringList run(const QString& step)
    {
        const QString word = step.section(' ', 0, 0), rest = step.section(' ', 1);
        const auto part = [&](int i) { return rest.section(' ', i, i); };
        m_told.clear();
        QStringList seen;
        if (word == "key") {
            const QKeyCombination key = QKeySequence(rest)[0];
            QTest::keyClick(QApplication::focusWidget(), key.key(), key.keyboardModifiers());
        } else if (word == "type")
            for (const QChar c : rest)
                QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, c, Qt::NoModifier);
        else if (word == "wheel")
            wheel(part(0).toInt(), part(1) == "Ctrl" ? Qt::ControlModifier : Qt::NoModifier);
        else if (word == "size") // of what shows the pages
            m_preview.window->resize(m_preview.window->size() + QSize(part(0).toInt(), part(1).toInt()) -
                                     view().viewport()->size());
        else if (word == "do")
            action(rest).trigger();
        else if (word == "click")
            click(part(0), part(1).toInt());
        else if (word == "focus")
            m_preview.child<QWidget>(rest)->setFocus(Qt::TabFocusReason);
        else if (word == "show")
            m_preview.window->setDocument(documentOf(rest));
        else if (word == "goto")
            view().goToPage(part(0).toInt() - 1, part(1).toDouble());
        else if (word == "tell")
            m_preview.window->tell(rest);
        else if (word == "notice")
            m_preview.child<QLabel>("lblNotice")->window()->findChild<NoticeBar*>()->tell("saved", rest);
        else if (word == "commands")
            seen += commands();
        else if (word == "color")
            seen += colorAt(part(0), {part(1).toDouble(), part(2).toDouble()}).name();
        else
            mouse(word, part(0).toInt() - 1, {part(1).toDouble(), part(2).toDouble()}, part(3) == "Shift");
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return seen + (m_told.isEmpty() ? QStringList() : QStringList("told: " + m_told.join(", ")));
    }

    Q_INVOKABLE void opened(const QUrl& url) { note("opened " + url.toLocalFile()); }

private:
    [[nodiscard]] PageView& view() const { return m_preview.window->view(); }
    void note(const QString& what) { m_told += m_told.value(m_told.size() - 1) == what ? QStringList() : QStringList(what); }

    // The menus and the tool bar: texts, keys, tips, and whether there is a sign.
    QStringList commands() const
    {
        QStringList lines;
        const auto* tools = m_preview.child<QToolBar>("tlbPreview");
        QList<const QWidget*> holders{tools};
        for (const auto* menu : m_preview.window->menuBar()->findChildren<QMenu*>())
            holders += menu->title().isEmpty() ? QList<const QWidget*>() : QList<const QWidget*>{menu};
        for (const QWidget* holder : std::as_const(holders))
            for (auto* action : holder->actions()) {
                const auto* shown = holder == tools ? tools->widgetForAction(action) : nullptr;
                const QString text = action->isSeparator() || !shown ? action->text() : shown->accessibleName();
                lines += QStringList{holder->windowTitle() + holder->property("title").toString(), text,
                                     QKeySequence::listToString(action->shortcuts()), action->toolTip(),
                                     action->icon().isNull() ? "no sign" : "sign"}
                             .join(" | ");
            }
        return lines;
    }
    QAction& action(const QString& name) const
    {
        for (auto* action : m_preview.window->findChildren<QAction*>())
            if (action->objectName() == "act" + name || action->text().remove('&') == name)
                return *action;
        test::fail("no such action: " + name);
        throw 0;
    }
    void click(const QString& name, int row) const
    {
        auto* control = m_preview.child<QWidget>(name);
        if (const auto* rows = qobject_cast<QAbstractItemView*>(control))
            QTest::mouseClick(rows->viewport(), Qt::LeftButton, {},
                              rows->visualRect(rows->model()->index(row - 1, 0)).center());
        else
            QTest::mouseClick(control, Qt::LeftButton);
    }
    void wheel(int notches, Qt::KeyboardModifiers modifiers) const
    {
        const QPointF at(100, 200);
        QWheelEvent event(at, view().viewport()->mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(view().viewport(), &event);
    }
    // press, move, drag, release and double, at a point of a page
    void mouse(const QString& word, int page, QPointF point, bool shift) const
    {
        const QPointF at = view().inViewport(page, {point, QSizeF()}).topLeft();
        const bool pressed = word == "press", held = pressed || word == "drag";
        const auto type = word == "double"             ? QEvent::MouseButtonDblClick
                          : pressed                    ? QEvent::MouseButtonPress
                          : word == "release"          ? QEvent::MouseButtonRelease
                                                       : QEvent::MouseMove;
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, view().viewport()->mapToGlobal(at), button, held ? Qt::LeftButton : Qt::NoButton,
                          shift ? Qt::ShiftModifier : Qt::NoModifier);
        QApplication::sendEvent(view().viewport(), &event);
    }
    // The colour of a page's point, or of a list's pixel.
    QColor colorAt(const QString& where, QPointF point) const
    {
        bool isPage = false;
        const int page = where.toInt(&isPage) - 1;
        auto& area = isPage ? view() : *m_preview.child<QAbstractScrollArea>(where);
        const QImage image = area.viewport()->grab().toImage();
        const QPointF at = isPage ? view().inViewport(page, {point, QSizeF()}).topLeft() : point;
        return image.pixelColor((at * image.devicePixelRatio()).toPoint());
    }

    OpenPreview m_preview;
    QStringList m_told;
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

    // A case is the document's text and then steps, "> words", with what each one changes below it, "-" for what is no
    // longer told, such as that a bar is hidden. "> all" tells everything.
    void steps_data() { test::cases({"case"}, "reporting/preview_steps.txt"); }
    void steps()
    {
        const QString text = test::cell("case").trimmed();
        QStringList seen(text.section('\n', 0, 0));
        Steps steps(seen[0]);
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
        test::comparePicture(seen, text);
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

    void savesByTheDialog()
    {
        platform::setToday(QDate(2026, 3, 5));
        const OpenPreview preview;
        const QTemporaryDir folder;
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
            preview.child<QToolButton>("cmdOpenSaved")->click();
            QCOMPARE(notice->text(), "No program of this computer opens " + saved + '.');
        }
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), (QStringList{"list.csv", "list.pdf"}));
        QCOMPARE(test::pagesOf(folder.filePath("list.pdf")), Pages);
        QVERIFY(test::contents(folder.filePath("list.csv")).contains("\"Café, \"\"4\"\"\",4\r\n"));
    }

    void tellsOfAFailedSave()
    {
        const QTemporaryDir folder; // a folder where the file is to go
        const OpenPreview preview;
        const auto told = test::answerNext();
        QVERIFY(!preview.window->saveCsv(folder.path()));
        const QString path = QDir::toNativeSeparators(folder.path());
        QCOMPARE(told->title + told->kind, "Pack: 47/awardsWarning, OK");
        QVERIFY2(told->text.startsWith("The file " + path + " can't be saved.\n\nThe file " + path + " can"),
                 qPrintable(told->text));
        QVERIFY(preview.child<QWidget>("noticeBar")->isHidden());
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
        for (const auto& [option, copies, collated, months] : // the copies from the last page to the first
             {std::tuple("printAll", 1, true, "JFMAM"),
              {"printRange", 2, true, "MFMF"},
              {"printRange", 2, false, "MMFF"},
              {"printCurrentPage", 1, true, "A"}}) {
            const OpenPreview preview;
            preview.window->view().goToPage(3);
            const QString file = folder.filePath(months);
            test::printInto(file);
            whenDialogIsUp<QPrintDialog>([&](QPrintDialog& dialog) {
                QCOMPARE((QList{dialog.minPage(), dialog.maxPage(), dialog.fromPage(), dialog.toPage()}),
                         (QList{1, Pages, 1, Pages}));
                QCOMPARE(dialog.printer()->docName(), "Pack: 47/awards");
                dialog.findChild<QRadioButton*>(option)->click();
                dialog.findChild<QSpinBox*>("from")->setValue(2);
                dialog.findChild<QSpinBox*>("to")->setValue(3);
                dialog.findChild<QSpinBox*>("copies")->setValue(copies);
                dialog.findChild<QCheckBox*>("collate")->setChecked(collated);
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
        QVERIFY(!printDocument(none, *documentOf(), 1, 0, [](int page, int) { return page < 2; }));
        QVERIFY(!QFile::exists(none.outputFileName()));
    }
};

ORLO_TEST(tst_preview)
#include "tst_preview.moc"
