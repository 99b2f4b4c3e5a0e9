#include "reports/engine/view/DocumentSearch.h"
#include "reports/engine/view/PageView.h"
#include "reports/engine/view/PreviewWindow.h"
#include "reports/engine/view/Printing.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QWindow>

using namespace orlo::reports;

namespace
{

constexpr int Pages = 5;

// Each page has its number as a word, the word "row" twice and one line of the list.
std::shared_ptr<const Document> sampleDocument(int pages = Pages)
{
    const QStringList numbers{QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three"),
                              QStringLiteral("four"), QStringLiteral("five")};
    auto document = std::make_shared<Document>();
    document->title = QStringLiteral("Pack: 47/awards");
    document->fonts = {QFont(QStringLiteral("DejaVu Sans"), 10)};
    document->columns = {QStringLiteral("Name"), QStringLiteral("Quantity")};
    for (int page = 0; page < pages; ++page) {
        Page content;
        content.items.emplace_back(TextItem{{72, 72, 400, 14}, QStringLiteral("Page %1").arg(numbers[page])});
        content.items.emplace_back(TextItem{{72, 400, 400, 14}, QStringLiteral("first row and another ROW")});
        content.items.emplace_back(BoxItem{{72, 700, 468, 20}, 0, Qt::black, Qt::darkGreen});
        document->outline.push_back({QStringLiteral("Den %1").arg(page + 1), 0, page});
        document->rows.push_back({QStringLiteral("Café, \"%1\"").arg(page), QString::number(page)});
        document->pages.push_back(content);
    }
    return document;
}

int pagesOf(const QString& pdf)
{
    QFile file(pdf);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    static const QRegularExpression page(QStringLiteral("/Type\\s*/Page\\b"));
    return static_cast<int>(QString::fromLatin1(file.readAll()).count(page));
}

template <class Dialog>
void whenDialogIsUp(std::function<void(Dialog&)> act)
{
    QTimer::singleShot(50, qApp, [act = std::move(act)] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (dialog)
            act(*dialog);
        else
            whenDialogIsUp<Dialog>(act);
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
        if (!QTest::qWaitForWindowActive(window))
            qFatal("the preview doesn't become active");
    }
    ~OpenPreview() { delete window; }
    template <class T>
    T* child(const char* name) const
    {
        T* found = window->findChild<T*>(QLatin1String(name));
        if (!found)
            qFatal("no %s", name);
        return found;
    }
    int page() const { return child<QSpinBox>("spnPage")->value(); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    QRgb pixel(QPointF onPaper, int page) const
    {
        const PageView& view = window->view();
        const QRectF sheet = view.pageBox(page);
        const QImage image = view.viewport()->grab().toImage();
        const QPointF at = sheet.topLeft() + onPaper * sheet.width() / 612;
        return image.pixel((at * image.devicePixelRatio()).toPoint());
    }

    QPointer<PreviewWindow> window;
};

} // namespace

class TestPreview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { setPrinterFactory({}); }

    void goesThroughPages_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::newRow("next") << "actNext" << 1 << 2;
        QTest::newRow("next to last") << "actNext" << 4 << 5;
        QTest::newRow("previous") << "actPrevious" << 3 << 2;
        QTest::newRow("first") << "actFirst" << 4 << 1;
        QTest::newRow("last") << "actLast" << 1 << 5;
    }
    void goesThroughPages()
    {
        QFETCH(QString, action);
        QFETCH(int, from);
        QFETCH(int, to);
        const OpenPreview preview;
        preview.child<QSpinBox>("spnPage")->setValue(from);
        QCOMPARE(preview.window->view().currentPage(), from - 1);
        QToolButton* button = nullptr;
        for (auto* each : preview.window->findChildren<QToolButton*>()) {
            if (each->defaultAction() && each->defaultAction()->objectName() == action)
                button = each;
        }
        QVERIFY(button && !button->accessibleName().isEmpty());
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(preview.page(), to);
        QCOMPARE(preview.child<QAction>("actNext")->isEnabled(), to < Pages);
        QCOMPARE(preview.child<QAction>("actFirst")->isEnabled(), to > 1);
        if (to < Pages)
            QCOMPARE(qRound(preview.window->view().pageBox(to - 1).top()), 16);
    }

    void readsByKeys()
    {
        const OpenPreview preview;
        const QScrollBar* bar = preview.window->view().verticalScrollBar();
        preview.key(Qt::Key_Down);
        QVERIFY(bar->value() > 0);
        preview.key(Qt::Key_Home);
        QCOMPARE(bar->value(), 0);
        // Whatever doesn't fit into the window is read before the next page starts, and each page from its top.
        QSet<int> readFromTop{0};
        for (int i = 0; i < 4 * Pages && bar->value() < bar->maximum(); ++i) {
            preview.key(Qt::Key_PageDown);
            if (qRound(preview.window->view().pageBox(preview.page() - 1).top()) == 16)
                readFromTop << preview.page() - 1;
        }
        QCOMPARE(readFromTop.size(), Pages);
        QCOMPARE(bar->value(), bar->maximum());
        QCOMPARE(preview.page(), Pages);
        preview.key(Qt::Key_PageUp);
        QVERIFY(bar->value() < bar->maximum());
        preview.key(Qt::Key_End);
        QCOMPARE(preview.page(), Pages);
        preview.key(Qt::Key_Home, Qt::ControlModifier);
        QCOMPARE(preview.page(), 1);
    }

    void pageDownGoesPageByPageWhereAPageFits()
    {
        const OpenPreview preview;
        preview.window->view().setFit(PageView::Fit::Page);
        for (int page = 2; page <= Pages; ++page) {
            preview.key(Qt::Key_PageDown);
            QCOMPARE(preview.page(), page);
        }
        for (int page = Pages - 1; page >= 1; --page) {
            preview.key(Qt::Key_PageUp);
            QCOMPARE(preview.page(), page);
        }
    }

    void zooms()
    {
        const OpenPreview preview;
        const PageView& view = preview.window->view();
        auto* box = preview.child<QComboBox>("cboZoom");
        const auto type = [&](const QString& text) {
            box->setFocus();
            box->lineEdit()->selectAll();
            QTest::keyClicks(box->lineEdit(), text);
            QTest::keyClick(box->lineEdit(), Qt::Key_Return);
        };
        type(QStringLiteral("150 %"));
        QCOMPARE(view.zoom(), 1.5);
        QCOMPARE(box->currentText(), QStringLiteral("150%"));
        type(QStringLiteral("wide"));
        QCOMPARE(view.zoom(), 1.5);
        QCOMPARE(box->currentText(), QStringLiteral("150%"));
        preview.key(Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(view.zoom(), 2.0);
        preview.key(Qt::Key_Minus, Qt::ControlModifier);
        preview.key(Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(view.zoom(), 1.25);
        preview.key(Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(view.zoom(), 1.0);
        QCOMPARE(qRound(view.pageBox(0).width()), qRound(612 * view.logicalDpiX() / 72.0));

        type(QStringLiteral("Fit Width"));
        const auto slack = [&] { return view.viewport()->width() - view.pageBox(0).width(); };
        QVERIFY2(slack() >= 32 && slack() <= 34, qPrintable(QString::number(slack())));
        preview.window->resize(560, 600);
        QTRY_VERIFY(slack() >= 32 && slack() <= 34);
        type(QStringLiteral("Fit Page"));
        QVERIFY(view.pageBox(0).height() <= view.viewport()->height());
        QCOMPARE(box->currentText(), QStringLiteral("Fit Page"));
    }

    void keepsTheMiddleWhenZooming()
    {
        const OpenPreview preview;
        PageView& view = preview.window->view();
        view.setZoom(1);
        QCOMPARE(view.verticalScrollBar()->value(), 0);
        view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum() / 2);
        const auto middle = [&] {
            const QRectF sheet = view.pageBox(2);
            return (view.viewport()->height() / 2.0 - sheet.top()) / sheet.height();
        };
        const double before = middle();
        view.setZoom(3);
        QVERIFY2(qAbs(middle() - before) < 0.002, qPrintable(QString::number(middle() - before)));
    }

    void paintsWhitePaperInADarkPalette()
    {
        QPalette dark;
        dark.setColor(QPalette::Dark, QColor(20, 20, 20));
        dark.setColor(QPalette::Base, Qt::black);
        dark.setColor(QPalette::Text, Qt::white);
        const OpenPreview preview;
        preview.window->setPalette(dark);
        preview.child<QSpinBox>("spnPage")->setValue(2);
        QCOMPARE(preview.pixel({300, 300}, 1), QColor(Qt::white).rgb());
        QVERIFY(qGreen(preview.pixel({300, -4}, 1)) < 60);
        preview.window->view().goToPage(1);
        preview.window->view().setFit(PageView::Fit::Page);
        QCOMPARE(preview.pixel({300, 710}, 1), QColor(Qt::darkGreen).rgb());
    }

    void findsTextAroundTheEnd()
    {
        const OpenPreview preview;
        preview.child<QSpinBox>("spnPage")->setValue(4);
        preview.window->view().setFocus();
        preview.key(Qt::Key_F, Qt::ControlModifier);
        auto* text = preview.child<QLineEdit>("txtFind");
        const auto* state = preview.child<QLabel>("lblFindState");
        QVERIFY(text->hasFocus());
        QTest::keyClicks(text, QStringLiteral("row"));
        QCOMPARE(state->text(), QStringLiteral("7 of 10"));
        for (int i = 0; i < 4; ++i)
            preview.key(Qt::Key_Return);
        QCOMPARE(state->text(), QStringLiteral("1 of 10"));
        QCOMPARE(preview.page(), 1);
        preview.key(Qt::Key_F3, Qt::ShiftModifier);
        QCOMPARE(state->text(), QStringLiteral("10 of 10"));

        text->selectAll();
        QTest::keyClicks(text, QStringLiteral("page THREE"));
        QCOMPARE(state->text(), QStringLiteral("1 of 1"));
        QCOMPARE(preview.page(), 3);
        const auto hits = findText(preview.window->document(), QStringLiteral("page three"));
        const QRgb marked = preview.pixel(hits.at(0).box.topLeft() + QPointF(0.5, 1.5), 2);
        QVERIFY2(marked != QColor(Qt::white).rgb(), "the place found is marked");
        QTest::keyClicks(text, QStringLiteral("x"));
        QCOMPARE(state->text(), QStringLiteral("Not found"));

        preview.key(Qt::Key_Escape);
        QVERIFY(!text->isVisible() && preview.window->isVisible());
        preview.key(Qt::Key_Escape);
        QTRY_VERIFY(!preview.window);
    }

    void placesHitsInTheirLine()
    {
        Document document = *sampleDocument(1);
        document.pages[0].items = {TextItem{{100, 50, 300, 40}, QStringLiteral("aab\nbaa")}};
        const auto line = findText(document, QStringLiteral("BAA"));
        const auto part = findText(document, QStringLiteral("b"));
        QCOMPARE(line.size(), 1u);
        QCOMPARE(part.size(), 2u);
        QCOMPARE(part[0].box.top(), 50.0);
        QCOMPARE(part[0].box.right(), 100 + line[0].box.width()); // the same letters without kerning
        QCOMPARE(part[1].box.left(), 100.0);
        QCOMPARE(part[1].box.top(), part[0].box.bottom());
    }

    void followsThePageList()
    {
        const OpenPreview preview;
        preview.window->setPageListVisible(true);
        auto* pages = preview.child<QListView>("lstPages");
        const QModelIndex third = pages->model()->index(2, 0);
        pages->scrollTo(third);
        QTest::mouseClick(pages->viewport(), Qt::LeftButton, {}, pages->visualRect(third).center());
        QCOMPARE(preview.page(), 3);
        preview.child<QAction>("actLast")->trigger();
        QCOMPARE(pages->currentIndex().row(), Pages - 1);
    }

    void savesByTheDialog_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("file");
        QTest::newRow("pdf") << "actSavePdf"
                             << "list.pdf";
        QTest::newRow("csv") << "actSaveCsv"
                             << "list.csv";
    }
    void savesByTheDialog()
    {
        QFETCH(QString, action);
        QFETCH(QString, file);
        const QTemporaryDir folder;
        const OpenPreview preview;
        QString proposed;
        whenDialogIsUp<QFileDialog>([&](QFileDialog& dialog) {
            proposed = QFileInfo(dialog.selectedFiles().value(0)).fileName();
            dialog.findChild<QLineEdit*>()->setText(folder.filePath(QStringLiteral("list"))); // without a suffix
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        preview.window->findChild<QAction*>(action)->trigger();
        QCOMPARE(proposed, QStringLiteral("Pack- 47-awards.") + file.right(3));
        const QString path = folder.filePath(file);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{file});
        if (file.endsWith(QStringLiteral("pdf"))) {
            QCOMPARE(pagesOf(path), Pages);
            return;
        }
        QFile csv(path);
        QVERIFY(csv.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(csv.readAll());
        QVERIFY2(text.contains(QStringLiteral("\"Café, \"\"4\"\"\",4\r\n")), qPrintable(text));
    }

    void failedSaveLeavesTheOldFile()
    {
        const QTemporaryDir folder;
        const QString inMissingFolder = folder.filePath(QStringLiteral("none/list.pdf"));
        const QString folderInTheWay = folder.filePath(QStringLiteral("way.csv"));
        QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("way.csv/inside")));
        const OpenPreview preview;
        QStringList told;
        const auto answer = [&] {
            whenDialogIsUp<QMessageBox>([&](QMessageBox& box) {
                told << box.text();
                box.accept();
            });
        };
        answer();
        QVERIFY(!preview.window->savePdf(inMissingFolder));
        answer();
        QVERIFY(!preview.window->saveCsv(folderInTheWay));
        QCOMPARE(told.size(), 2);
        QVERIFY(told[0].contains(inMissingFolder));
        QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"way.csv"});
    }

    void printsByTheDialog_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<int>("pages");
        QTest::newRow("all") << "printAll" << Pages;
        QTest::newRow("range") << "printRange" << 2;
        QTest::newRow("current") << "printCurrentPage" << 1;
    }
    void printsByTheDialog()
    {
        QFETCH(QString, option);
        QFETCH(int, pages);
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("out.pdf"));
        setPrinterFactory([&] {
            auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
            printer->setOutputFileName(file);
            return printer;
        });
        const OpenPreview preview;
        whenDialogIsUp<QPrintDialog>([&](QPrintDialog& dialog) {
            dialog.findChild<QRadioButton*>(option)->click();
            dialog.findChild<QSpinBox*>(QStringLiteral("from"))->setValue(2);
            dialog.findChild<QSpinBox*>(QStringLiteral("to"))->setValue(3);
            dialog.accept();
        });
        preview.key(Qt::Key_P, Qt::ControlModifier);
        QCOMPARE(pagesOf(file), pages);
    }

    void isNotBlockedByADialogOfAnotherWindow()
    {
        QWidget frame;
        frame.show();
        QDialog dialog(&frame);
        dialog.setWindowModality(Qt::WindowModal);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        const OpenPreview preview;
        QVERIFY(!preview.window->parent() && !preview.window->windowHandle()->transientParent());
        QTest::mouseClick(preview.window->view().viewport(), Qt::LeftButton);
        QTest::keyClick(preview.window->windowHandle(), Qt::Key_End);
        QCOMPARE(preview.page(), Pages);
        QTest::keyClick(preview.window->windowHandle(), Qt::Key_W, Qt::ControlModifier);
        QTRY_VERIFY(!preview.window);
        QVERIFY(dialog.isVisible());
    }

    void takesADocumentWithoutPages()
    {
        const OpenPreview preview(sampleDocument(0));
        preview.key(Qt::Key_PageDown);
        preview.key(Qt::Key_End);
        preview.key(Qt::Key_F, Qt::ControlModifier);
        preview.key(Qt::Key_A);
        QVERIFY(!preview.child<QAction>("actPrint")->isEnabled());
        QVERIFY(!preview.window->grab().isNull());
    }
};

QTEST_MAIN(TestPreview)
#include "tst_preview.moc"
