#include "reporting/Shopping.h"

#include "platform/Application.h"
#include "platform/RuntimeError.h"
#include "reporting/view/LiveReport.h"
#include "reporting/view/PageText.h"
#include "reporting/view/PageView.h"
#include "reporting/view/PreviewWindow.h"
#include "reporting/view/ReportControl.h"
#include "reporting/view/ReportMessage.h"
#include "reporting/view/RunProgress.h"
#include "store/engine/Database.h"
#include "support/Controls.h"
#include "support/Main.h"
#include "support/Picture.h"
#include "support/PrintedFile.h"
#include "support/Table.h"

#include <QtWidgets/QtWidgets>

#include <stdexcept>

using namespace orlo;
using namespace orlo::reporting;
using test::GoodReport;

class tst_reportcontrol : public QObject, test::Shopping
{
    Q_OBJECT

    static QWidget* messageWindow() { return test::topLevel("reportMessage"); }

    ReportControl* m_watched = nullptr;
    std::vector<std::pair<bool, std::size_t>> m_painted; // at each painting of its preview: complete, and pages

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const PreviewWindow* preview = event->type() == QEvent::Paint ? m_watched->preview() : nullptr;
        if (preview && watched == preview->view().viewport())
            m_painted.emplace_back(preview->document().complete, preview->document().pages.size());
        return false;
    }
private Q_SLOTS:
    void initTestCase()
    {
        QElapsedTimer time; // long work shows a window without being asked to
        time.start();
        RunProgress progress("work");
        QVERIFY(QApplication::overrideCursor());
        for (; !QApplication::activeModalWidget(); QTest::qSleep(20))
            QVERIFY(progress(1, 10) && time.elapsed() < 3000);
        QVERIFY(!QApplication::overrideCursor() && time.elapsed() >= 400);
        const auto* dialog = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget());
        QCOMPARE(dialog->objectName() + dialog->findChild<QPushButton*>()->text(), "reportProgressCancel");
        QVERIFY(!dialog->autoClose() && !dialog->autoReset() && dialog->minimumWidth() == 360 &&
                dialog->minimum() == 0);
        for (const auto& [wait, done, total, shown] : // it never goes back
             {std::tuple(80, 6, 10, 610), {80, 3, 10, 610}, {80, 25, 20, 2020}, {80, 0, 0, 1}}) {
            QTest::qSleep(wait);
            QVERIFY(progress(done, total));
            QCOMPARE(dialog->value() * 100 + dialog->maximum(), shown);
        }
        makeDatabase("a.mdb", "Apple", "Axe");
        makeDatabase("b.mdb", "Bread", "Bucket");
        makeDatabase("many.mdb", "Marble", "Mug", 300);
        makeDatabase("long.mdb", "Marble", "Mug", 120);
    }
    void cleanup()
    {
        setDatabaseProvider({});
        setPrinterFactory({});
        setProgressDelay(400);
        for (const char* file : {"new.inc", "new.png", "pack.inc"})
            QFile::remove(path(file));
        QApplication::closeAllWindows();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // A screen keeps its control while the program closes its database, replaces the file and opens the new one.
    void readsTheFileThatStandsThereNow()
    {
        const QString file = path("current.mdb");
        QVERIFY(QFile::copy(path("a.mdb"), file));
        store::Database open = store::DBEngine::openDatabase(file);
        setDatabaseProvider([&](const QString& name) { return name == file ? &open : nullptr; });
        const auto shopping = control("current.mdb");
        QCOMPARE(shown(*shopping), "Apple Axe");
        open.close();
        QVERIFY(QFile::remove(file) && QFile::copy(path("b.mdb"), file));
        QCOMPARE(shown(*shopping), "Bread Bucket");
        shopping->setDatabaseFile(0, path("a.mdb")); // again the main report's, after a run
        QCOMPARE(shown(*shopping), "Apple Bucket");
        shopping->setDatabaseFile(0, file);
        open = store::DBEngine::openDatabase(file);
        open.execute("Update Items Set Name = 'Butter'"); // the open connection sees it
        shopping->setSubreportToChange("OTHERS");
        shopping->setDatabaseFile(0, m_folder.path() + "\\MANY.mdb");
        QCOMPARE(shown(*shopping), "Butter Mug");
        for (const auto& [name, keepsSlots] : {std::pair("\\SHOPPING.RPT", true), {"\\other\\shopping.rpt", false}}) {
            shopping->setReportFile(m_folder.path() + name);
            QCOMPARE(!shopping->databaseFile(0, "Others").isEmpty(), keepsSlots);
        }
        set(*shopping, "current.mdb");
        // Nothing that a run opened stays open.
        open.close();
        QVERIFY(QFile::remove(file));
        QCOMPARE(shopping->run(), int(platform::DatabaseNotFound));
    }

    // F5 shows the changed data at the same place; the other reports run on the same file.
    void refreshesAndRunsOthers()
    {
        platform::setFolder(m_folder.path());
        QVERIFY(QFile::copy(path("many.mdb"), path("now.mdb")));
        const auto shopping = control("now.mdb");
        QCOMPARE(shopping->run(), 0);
        PreviewWindow& preview = *shopping->preview();
        preview.view().setZoom(1.5);
        preview.view().goToPage(2, 100);
        const int place = preview.view().verticalScrollBar()->value();
        store::DBEngine::openDatabase(path("now.mdb")).execute("Update Items Set Name = 'Butter'");
        QVERIFY(QTest::qWaitForWindowActive(&preview));
        QTest::keyClick(&preview, Qt::Key_F5);
        QVERIFY(!findText(preview.document(), "Butter").empty() && findText(preview.document(), "Marble").empty());
        QCOMPARE(preview.view().verticalScrollBar()->value(), place);
        QCOMPARE(preview.view().zoom(), 1.5);

        QDir(m_folder.path()).mkpath("examples/folder.rpt");
        write("Axe.old.rpt", "detali");
        write("Able.rpt", GoodReport); // sorted by its title
        write("examples/Same.rpt", QString(GoodReport).replace("\"Shopping\"", "\"Axe.old\""));
        const QString tools = QString(GoodReport).replace("\"Shopping\"", "\"Tools & more\"");
        write("examples/Tools.rpt", tools.section("source", 0, 1) + "source slot 1" + tools.section("source", 2));
        auto* more = preview.findChild<QMenu*>("mnuMoreReports");
        QVERIFY(more->menuAction()->isVisible() && preview.findChild<QWidget*>("dckPageList")->isHidden());
        Q_EMIT more->aboutToShow();
        Q_EMIT more->aboutToShow(); // is the same again
        QStringList titles;
        for (const QAction* action : more->actions())
            titles << action->text();
        QCOMPARE(titles.join('|'), "Axe.old (Axe.old)|Shopping (Able)||Axe.old (Same)|Tools && more");
        more->actions().last()->trigger();
        QPointer<PreviewWindow> other;
        QTRY_VERIFY((other = qobject_cast<PreviewWindow*>(QApplication::activeWindow())) && other != &preview);
        QCOMPARE(other->windowTitle(), "Tools & more");
        QVERIFY(other->isMaximized() && other->findChild<QWidget*>("dckPageList")->isVisible());
        more->actions().first()->trigger();
        QTRY_VERIFY(messageWindow());
        for (const QString item : {"Mug", "Bucket"}) { // of the second slot, or of the first if that isn't set
            shopping->setDatabaseFile(1, item == "Mug" ? QString() : path("b.mdb"));
            QCOMPARE(shopping->run(), 0);
            more = shopping->preview()->findChild<QMenu*>("mnuMoreReports");
            Q_EMIT more->aboutToShow();
            more->actions().last()->trigger();
            delete other;
            QTRY_VERIFY((other = qobject_cast<PreviewWindow*>(QApplication::activeWindow())) &&
                        other->windowTitle() == "Tools & more");
            QVERIFY(!findText(other->document(), "Butter").empty() && !findText(other->document(), item).empty());
        }
        platform::setFolder({});
    }

    void tellsWhatIsWrong_data() { test::tableOf("reporting/reportcontrol_tellsWhatIsWrong.txt"); }
    void tellsWhatIsWrong()
    {
        const auto [find, put, told] = test::cells("find", "put", "told");
        const auto shopping = control();
        if (find == "report file")
            shopping->setReportFile(path(put));
        else if (find == "database")
            shopping->setDatabaseFile(0, path(put));
        else if (find == "selection")
            shopping->setSelectionFormula(put);
        else if (find == "printer")
            shopping->setDestination(ToPrinter);
        setPrinterFactory([] { return nullptr; });
        write("slip.inc", "detali {");
        report(QString(GoodReport).replace(find, put));
        QTEST(QString::number(shopping->run()), "number");
        QVERIFY(!shopping->preview());
        QWidget* window = messageWindow();
        QVERIFY(window && !window->isMinimized() && !window->parent() && !window->testAttribute(Qt::WA_QuitOnClose));
        const QString text = window->findChild<QLabel*>("lblReportMessage")->text();
        QCOMPARE(window->findChild<QLabel*>("lblReportMessage")->accessibleName(), text);
        const QString folder = QDir::toNativeSeparators(m_folder.path() + '/');
        // Where case doesn't count, the file has the name by which it was asked for.
        const auto named = [](QString words) { return words.replace("shopping", "Shopping"); };
        QCOMPARE(named(text).replace(folder, "$/", Qt::CaseInsensitive), told);
        QCOMPARE(named(window->windowTitle()), (find == "report file" ? "none - " : "Shopping - ") + platform::title());
        const auto* sign = window->findChild<QLabel*>("");
        const int size = window->style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
        const QPixmap warns = window->style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size, size);
        QVERIFY(sign->pixmap().toImage() == warns.toImage() && sign->alignment() == Qt::AlignTop);
        window->findChild<QPushButton*>()->click();
        QVERIFY(!messageWindow());

        // The next run on the same object starts from the beginning and removes an old message.
        shopping->setWindowTitle("List");
        QVERIFY(shopping->run() != 0 && messageWindow());
        QCOMPARE(messageWindow()->windowTitle(), "List - " + platform::title());
        shopping->setSelectionFormula({});
        shopping->setDestination(ToPreview);
        set(*shopping, "a.mdb");
        shopping->setWindowState(PreviewMinimised);
        QCOMPARE(shown(*shopping), "Apple Axe");
        QVERIFY(!messageWindow() && shopping->preview()->isMinimized() && !shopping->preview()->isActiveWindow());
        QCOMPARE(shopping->preview()->windowTitle(), "List");
    }

    void showsTheFirstPageBeforeTheLastIsLaidOut()
    {
        const auto shopping = longControl();
        m_watched = shopping.get();
        qApp->installEventFilter(this);
        QCOMPARE(shopping->run(), 0);
        QVERIFY(!m_painted.empty() && m_painted.front() == std::pair(false, std::size_t(1)));
        PreviewWindow& preview = *shopping->preview();
        const auto pages = preview.document().pages.size();
        QVERIFY(pages > 100 && preview.document().rows.size() == 14'400 && preview.windowTitle() == "Shopping");
        QCOMPARE(preview.findChild<QSpinBox*>("spnPage")->suffix(), QStringLiteral(" of %1").arg(pages));
        preview.findChild<QAction*>("actLast")->trigger();
        QTRY_COMPARE(m_painted.back(), std::pair(true, pages));

        // A run that fails after its first page leaves no preview.
        report(QString(GoodReport)
                   .replace("Name From Items Order By", "B.Name From Items As A, Items As B, Others")
                   .replace("300pt = {Name}\n}\nexport", "300pt = 1 / (9000 - RecordNumber)\n}\nexport"));
        m_painted.clear();
        QCOMPARE(shopping->run(), int(platform::DivisionByZero));
        QVERIFY(!m_painted.empty() && !shopping->preview() && messageWindow());
        qApp->removeEventFilter(this);
    }

    // A change of the file on the disk shows at once and at the same place; a fault in it is reported, and the old
    // pages stay.
    void followsItsFile()
    {
        const auto shopping = control("many.mdb");
        QCOMPARE(shopping->run(), 0);
        const QPointer<PreviewWindow> preview = shopping->preview();
        std::vector<std::unique_ptr<PreviewWindow>> others; // each has its own caption
        for (const char* number : {" (2)", " (3)"}) {
            shopping->run();
            others.emplace_back(shopping->preview());
            QCOMPARE(shopping->preview()->windowTitle(), preview->windowTitle() + number);
        }
        others.clear();
        preview->view().goToPage(3, 200);
        const int place = preview->view().verticalScrollBar()->value();
        const auto* notice = preview->findChild<QLabel*>("lblNotice");
        const auto put = [&](const QString& text, bool inPlace) {
            if (inPlace)
                return void(report(text));
            write("new.rpt", text); // as many editors save
            QVERIFY(QFile::remove(path("Shopping.rpt")) && QFile::rename(path("new.rpt"), path("Shopping.rpt")));
        };
        int changes = 0;
        for (const bool inPlace : {true, false, false, true}) {
            put(QString(GoodReport).replace("= {Name}\n}\nexport", "= {Nmae}\n}\nexport"), inPlace);
            QTRY_VERIFY_WITH_TIMEOUT(notice->isVisible(), 1000);
            QCOMPARE(notice->text(), "There is no field {Nmae}. (shopping.rpt, line 7, column 16)");
            QVERIFY(preview->document().pages.size() > 4 && !messageWindow());
            const QString word = QStringLiteral("change %1 ").arg(++changes);
            put(QString(GoodReport).replace("= {Name}\n}\nexport", "= \"" + word + "\" & {Name}\n}\nexport"), !inPlace);
            QTRY_VERIFY_WITH_TIMEOUT(!findText(preview->document(), word + "marble").empty(), 1000);
            QVERIFY(!notice->isVisible());
            QCOMPARE(preview->view().verticalScrollBar()->value(), place);
            QCOMPARE(preview->view().currentPage(), 3);
        }
    }

    // The same holds for the files that it reads or looks for, even if the first run failed.
    void followsWhatItReads_data() { test::tableOf("reporting/reportcontrol_followsWhatItReads.txt"); }
    void followsWhatItReads()
    {
        const auto [text, file, before, told, after] = test::cells("text", "file", "before", "told", "after");
        const auto shopping = control();
        QCOMPARE(shopping->run(), 0);
        PreviewWindow& preview = *shopping->preview();
        const auto* notice = preview.findChild<QLabel*>("lblNotice");
        if (!before.isEmpty())
            write(file, before);
        report("report \"Changed\"\nlet {Heading} = 1\nlet {Subheading} = 2\n" + text +
               QString(GoodReport).remove("report \"Shopping\""));
        QTRY_VERIFY_WITH_TIMEOUT(told.isEmpty() ? preview.document().title == "Changed" : notice->text().contains(told),
                                 1000);
        write(file, after);
        QTRY_VERIFY_WITH_TIMEOUT(preview.document().title == "Changed" &&
                                     (!told.isEmpty() || !findText(preview.document(), "mended").empty() ||
                                      notice->text().contains("picture can't be read")),
                                 1000);
    }

    // A save during a run shows after it, whether that is the first run or a later one. Whatever ends a run is
    // reported.
    void followsWhileItRuns()
    {
        const auto shopping = longControl();
        setProgressDelay(0);
        const auto named = [this](const char* title) {
            const QString text = QString::fromUtf8(test::contents(path("Shopping.rpt")));
            report("report \"" + QString(title) + "\"\n" + text.mid(text.indexOf("source")));
        };
        const char* saved = "first";
        QString refreshed; // a refresh during a run does nothing
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&] {
            if (const auto* dialog = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget())) {
                watch.stop();
                QCOMPARE(dialog->labelText(), "Preparing the report…");
                named(saved);
                if (shopping->preview()) {
                    shopping->preview()->findChild<QAction*>("actRefresh")->trigger();
                    refreshed = shopping->preview()->document().title;
                }
            }
        });
        watch.start(0);
        QCOMPARE(shopping->run(), 0);
        PreviewWindow& preview = *shopping->preview();
        QCOMPARE(preview.document().title, "Shopping");
        QTRY_COMPARE(preview.document().title, "first");
        saved = "third";
        watch.start(0);
        named("second");
        QTRY_COMPARE(preview.document().title, "second");
        QTRY_COMPARE(preview.document().title, "third");
        QCOMPARE(refreshed, "first");

        new LiveReport(preview, 0, []() -> std::optional<Document> { throw std::length_error("too long"); });
        QTRY_COMPARE(preview.findChild<QLabel*>("lblNotice")->text(), "too long");

        int runs = 0;
        new LiveReport(preview, 0, [&] { return ++runs > 1 ? std::optional(preview.document()) : std::nullopt; });
        QTRY_COMPARE(preview.findChild<QLabel*>("lblNotice")->text(),
                     "The report wasn't run again. These are the pages of before.");
        write("new.rpt", "a new file"); // is followed, even if the run for it is given up
        QVERIFY(QFile::remove(path("Shopping.rpt")) && QFile::rename(path("new.rpt"), path("Shopping.rpt")));
        QTRY_COMPARE(runs, 2);
        report("the same file");
        QTRY_COMPARE(runs, 3);
        QVERIFY(!QTest::qWaitFor([&runs] { return runs > 3; }, 400)); // once for each change

        bool kept = false; // what a run needs stays, even if its preview is closed meanwhile
        const LiveReport* live = new LiveReport(preview, 0, [&, part = std::make_shared<int>()] {
            const auto look = [&told = kept, own = std::weak_ptr<int>(part)] { told = !own.expired(); };
            delete live;
            look();
            return std::optional<Document>();
        });
        QTRY_VERIFY(kept);
    }

    // The message is above the screen that asked, and closes with it.
    void messageBelongsToTheScreen()
    {
        auto screen = std::make_unique<QWidget>();
        screen->show();
        auto* asking = new ReportControl("crShopping", new QWidget(screen.get()));
        set(*asking, "none.mdb");
        QVERIFY(asking->run() != 0);
        QVERIFY(messageWindow() && messageWindow()->windowType() == Qt::Dialog);
        QCOMPARE(messageWindow()->parentWidget(), screen.get());
        {
            ReportMessage message("A title", "Some words", nullptr);
            message.show();
            const QString size = QString("place of the window: %1x%2").arg(message.width()).arg(message.height());
            test::comparePicture(test::pictureOf(message) + test::traitsOf(message) + test::placesOf(message) << size,
                                 test::contents(test::fileOfTests("reporting/reportmessage.txt")));
        }
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter}) {
            QTest::keyClick(messageWindow(), Qt::Key_A);
            const QPointer<QWidget> closed = messageWindow();
            QTest::keyClick(closed, key);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(!closed && asking->run() != 0);
        }
        screen.reset();
        QVERIFY(!messageWindow());
    }

    // On the default printer, with the paper turned as the report is.
    void printsWithoutAPreview()
    {
        for (const auto& [abilities, number, sheets, told] :
             {std::tuple("", 0, "792x612, Axe at 43 53, Axe at 43 53", ""),
              {"jams", int(platform::DeviceUnavailable), "", "The printer can't be reached: Room 5"}}) {
            const auto shopping = control(number ? "many.mdb" : "a.mdb");
            report(QString(GoodReport).replace("report \"Shopping\"", "report \"Shopping\"\npaper letter landscape"));
            const QString pdf = path("sheets.pdf");
            setPrinterFactory([&] { return std::make_unique<test::PaperPrinter>(pdf, QStringList(abilities)); });
            shopping->setDestination(ToPrinter);
            QCOMPARE(shopping->run(), number);
            QCOMPARE(messageWindow() ? messageWindow()->findChild<QLabel*>("lblReportMessage")->text() : "", told);
            QCOMPARE(number ? "" : test::sheetsOf(pdf).join("; "), sheets);
        }
    }

    void longRunCanBeCancelled()
    {
        for (const QString way : {"cancel", "screen goes", "screen goes quietly", "preview closes"}) {
            const bool quiet = way.endsWith("quietly"); // nobody cancels the run then
            auto shopping = longControl();
            int reentered = -1;
            bool blocked = false;
            QString told;
            QTimer watch;
            connect(&watch, &QTimer::timeout, this, [&] {
                auto* dialog = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget());
                if (!dialog || (way == "preview closes" && !shopping->preview()))
                    return;
                watch.stop();
                blocked = dialog->windowModality() == Qt::ApplicationModal;
                told = dialog->windowTitle() + ": " + dialog->labelText();
                reentered = shopping->run();
                if (way.startsWith("screen goes"))
                    shopping.reset();
                if (way == "preview closes")
                    shopping->preview()->close();
                else if (!quiet)
                    QTest::mouseClick(dialog->findChild<QPushButton*>(), Qt::LeftButton);
            });
            watch.start(0);
            setProgressDelay(0);
            QCOMPARE(shopping->run(), quiet ? 0 : ReportControl::UserInterrupt);
            QVERIFY(blocked);
            QCOMPARE(told, platform::title() + ": Preparing the report…");
            QCOMPARE(reentered, int(platform::InvalidProcedureCall));
            QVERIFY(!messageWindow());
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(!shopping || !shopping->preview());
            QVERIFY(!qobject_cast<PreviewWindow*>(QApplication::activeWindow()));
        }
    }
};

ORLO_TEST(tst_reportcontrol)
#include "tst_reportcontrol.moc"
