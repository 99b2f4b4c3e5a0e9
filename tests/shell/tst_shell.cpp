#include "platform/Application.h"
#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "shell/frame/Main.h"
#include "shell/frame/TakeoverNotice.h"
#include "shell/frame/WorkArea.h"
#include "shell/frame/frmAbout.h"
#include "shell/frame/frmSplash.h"
#include "shell/frame/mdiPendrake.h"
#include "store/engine/Database.h"
#include "store/jet/FormerFile.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Pack.h"
#include "support/Picture.h"
#include "support/RecordScreen.h"
#include "support/System.h"
#include "support/Table.h"
#include "widgets/Contrast.h"
#include "widgets/MessageBox.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

using namespace orlo;

namespace
{

// How often the widget that it watches was painted.
class Painted : public QObject
{
public:
    bool eventFilter(QObject*, QEvent* event) override { return (times += event->type() == QEvent::Paint, false); }
    int times = 0;
};

void appendMenu(const QList<QAction*>& commands, int depth, QStringList& lines)
{
    for (const QAction* command : commands) {
        lines += QString(depth, u'-') + command->objectName() + u'|' + command->text();
        QCOMPARE(command->isVisible(), command->objectName() != QLatin1String("ID_TEST_MENU"));
        if (command->menu())
            appendMenu(command->menu()->actions(), depth + 1, lines);
    }
}

} // namespace

class tst_shell : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void openPage(const QUrl& page) { m_pages += page; } // instead of the browser

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    // needs: an update; error: the number of the failure that the start ends with
    void startUp_data() { test::tableOf("shell/shell_startUp.txt"); }
    void startUp()
    {
        const auto [files, error] = test::cells("files", "error");
        QTemporaryDir folder;
        platform::setFolder(folder.path());
        gDatabase.reset(), QApplication::setWindowIcon({});
        if (files.contains("current")) {
            const test::AppFolder made;
            QVERIFY(QFile::copy(made.path() + "/Quorrel11.mdb", folder.filePath("quorrel11.MDB")));
        }
        if (files.contains("later"))
            store::DBEngine::openDatabase(folder.filePath("Quorrel11.mdb")).state(99);
        if (files.contains("old") || files == "damaged")
            test::write(folder.filePath(files == "damaged" ? "Quorrel11.mdb" : "QUORREL.mdb"), QByteArray(5000, 'x'));
        const auto told = error.isEmpty() ? std::make_shared<test::Told>() : test::dismissReport();
        store::setTakeoverWatch({});
        startProgram();
        QVERIFY(store::takeoverWatch().progress && store::takeoverWatch().report);
        // after the picture
        QVERIFY(test::control<QLabel>(*widgets::Instance<frmSplash>::loaded(), "lblVersion").isVisible());
        QTEST(QString(gDbNeedsUpdate ? "yes" : "no"), "needs");
        QTEST(QString(gDatabase ? "yes" : "no"), "opened");
        QCOMPARE(QApplication::windowIcon().isNull(), error.isEmpty()); // the report's own
        QCOMPARE(told->text.section('\n', 0, 2).replace('\n', ' '), error);
        QTEST(told->text.section("A Critical ", 1).replace('\n', '/'), "text");
        QVERIFY(gErrNumber == 0 && gErrType.isEmpty() && gErrSource.isEmpty() && gErrText.isEmpty() == error.isEmpty());
        QCOMPARE(test::failureNumber([] { (void)database(); }), gDatabase ? 0 : int(platform::ObjectNotSet));
        QCOMPARE(told->text.contains("The file is of version 9.9."), files.contains("later"));
        widgets::Instance<frmSplash>::unload();
        QVERIFY(!test::topLevel("frmSplash"));
        gDatabase.reset();
        gDbNeedsUpdate = false;
        platform::setFolder(QString());
    }

    void errorNumberOver16Bits()
    {
        platform::pendingError::set(platform::RuntimeError(40000));
        QCOMPARE(test::failureNumber([] { CriticalError(); }), int(platform::Overflow));
        platform::pendingError::clear();
    }

    void reportsItsDetails()
    {
        const auto seen = test::takeNext([](QWidget& modal, test::Told& told) {
            auto& text = test::control<QTextBrowser>(modal, "txtErrorText");
            const auto& lines = test::control<QTextEdit>(modal, "txtErrorDescription");
            const int count = (lines.height() - 2 * lines.frameWidth()) / lines.fontMetrics().height();
            told.text = text.toHtml().section("href=\"", 1).section('"', 0, 0) +
                        (text.toHtml().contains("underline") ? "" : " plain") + (text.height() < 100 ? "" : " tall") +
                        QString(", %1 lines").arg(count);
            test::control<QPushButton>(modal, "cmdCopy").click();
            Q_EMIT text.anchorClicked(QUrl("http:site"));
            QTest::keyClick(&text, Qt::Key_Return); // not the link's before Tab went there
            return told.shown = true;
        });
        platform::pendingError::set(platform::RuntimeError(3343, "DBEngine", QString("line\n").repeated(50)));
        QDesktopServices::setUrlHandler("http", this, "openPage");
        CriticalError();
        QDesktopServices::unsetUrlHandler("http");
        QCOMPARE(std::exchange(m_pages, {}), QList<QUrl>{QUrl("http:site")});
        QCOMPARE(seen->text, "http://www.tollbeck.example, 12 lines");
        QVERIFY(QApplication::clipboard()->text().contains(
            "Number: 3343\nError Source: DBEngine\nError Description: line\n"));
        QCOMPARE(test::logged().join('\n').first(51), "ORLO_1: Critical Error, 3343, DBEngine,  line line ");
    }

    void splashOpensFrame()
    {
        test::AppFolder folder;
        auto& splash = widgets::Instance<frmSplash>::get();
        const QString version = test::control<QLabel>(splash, "lblVersion").text();
        QVERIFY(version.contains(QRegularExpression(R"(^Version (0|[1-9]\d*)\.(0|[1-9]\d*)\.(0|[1-9]\d*)$)")));
        QCOMPARE(splash.geometry(),
                 QRect(splash.screen()->availableGeometry().center() - QPoint(241, 200), QSize(483, 401)));
        QCOMPARE(test::control<QLabel>(splash, "lblVersion").geometry(), QRect(121, 207, 240, 24));
        QCOMPARE(test::control<QLabel>(splash, "lblWarning").geometry(), QRect(16, 310, 450, 64));
        QVERIFY(!splash.isEnabled() && splash.cursor().shape() == Qt::WaitCursor);
        QVERIFY(splash.font().pixelSize() == 12 && splash.palette().color(QPalette::WindowText) == Qt::white);
        QDialog report; // of a failed start, still open
        report.setModal(true);
        auto& warning = test::control<QLabel>(splash, "lblWarning");
        QVERIFY(test::control<QLabel>(splash, "lblVersion").isHidden() && warning.isHidden());
        QVERIFY(splash.windowFlags() == (Qt::SplashScreen | Qt::FramelessWindowHint));
        splash.awaitPicture(); // not for ever, where the screen never asks for it
        splash.show();
        QVERIFY(!splash.close()); // no event loop runs yet that would end with it
        const QImage picture = splash.grab().toImage();
        QCOMPARE(picture.pixelColor(0, 0), QColor(0x6f98a8)); // a border that shows on any desktop
        const QResource pixels(QStringLiteral(":/art/splash@1x.rgb"));
        const QRect inside(1, 1, 481, 399);
        QCOMPARE(picture.convertToFormat(QImage::Format_RGB32).copy(inside),
                 QImage(pixels.data(), 483, 401, QImage::Format_RGB32).copy(inside));
        for (const QPoint edge : {QPoint(482, 9), QPoint(9, 400)})
            QCOMPARE(picture.pixelColor(edge), picture.pixelColor(0, 0));
        QTRY_VERIFY(warning.isVisible());
        splash.openFrameAfter(60);
        QCOMPARE(test::control<QTimer>(splash, "tmrSplashWait").timerType(), Qt::PreciseTimer);
        // A file that is being taken over delays it.
        watchTakeovers();
        for (int percent = 0; percent < 20; ++percent, QTest::qSleep(10))
            store::takeoverWatch().progress(QStringLiteral("x.mdb"), percent);
        QVERIFY(splash.isVisible() && !test::topLevel("mdiPendrake"));
        const auto& line = test::control<QLabel>(splash, "lblTakeover");
        const auto lightness = [&line](QPalette::ColorRole role) { return line.palette().color(role).lightness(); };
        QVERIFY(std::abs(lightness(line.foregroundRole()) - lightness(line.backgroundRole())) > 128);
        QVERIFY(line.autoFillBackground() && line.alignment() == Qt::AlignCenter); // above the picture
        QCOMPARE(line.text(), "Bringing x.mdb into this version's format: 19 %");
        QCOMPARE(line.geometry(), QRect(QPoint(0, 401 - line.height()), QSize(483, line.sizeHint().height())));
        QCOMPARE(line.sizeHint().height(), line.fontMetrics().height() + 2 * (line.fontMetrics().height() / 2));
        report.show();
        Painted painted;
        splash.installEventFilter(&painted);
        store::takeoverWatch().progress({}, 100);
        QCOMPARE(painted.times, 1); // without the line, before anything else happens
        store::takeoverWatch().report(QStringLiteral("left out"));
        QTRY_VERIFY(test::topLevel("mdiPendrake"));
        QTRY_COMPARE(QApplication::activeWindow(), &report);
        const auto told = test::answerNext(); // above the frame, and after what else is up
        QVERIFY(!QTest::qWaitFor([&told] { return told->shown; }, 250));
        report.close();
        QTRY_COMPARE(told->text, "left out");
        QTRY_VERIFY(!widgets::Instance<frmSplash>::loaded() && !test::topLevel("frmSplash"));
        auto& frame = mdiPendrake::instance();
        QVERIFY(QTest::qWaitForWindowActive(&frame));
        gDbNeedsUpdate = true; // but it has begun: the frame doesn't ask for it meanwhile
        QCoreApplication::postEvent(&frame, new QEvent(QEvent::ActivationChange));
        store::takeoverWatch().progress(QStringLiteral("x.mdb"), 20);
        gDbNeedsUpdate = false;
        store::takeoverWatch().progress({}, 100);
        QCOMPARE(frame.windowTitle(), "Verrano");
        for (const int size : {16, 24, 32, 48, 128, 256}) // each is a drawing of its own
            QCOMPARE(QApplication::windowIcon().pixmap(size).toImage(),
                     QPixmap(QString(":/art/orlo-%1.png").arg(size)).toImage());
    }

    void systemInformation()
    {
        if (QSysInfo::productType() == "windows")
            test::skip("it starts the system's own tool");
        const auto told = test::answerNext();
        frmAbout::StartSysInfo();
        QCOMPARE(told->text, "System Information Is Unavailable At This Time");
    }

    // Points of the work area, in the usual colours and, smaller, in others that are set meanwhile: "." the ground,
    // "#" the star and the tent, "+" their edges.
    void emblem()
    {
        WorkArea area;
        area.show();
        QStringList seen;
        for (const QSize size : {QSize(600, 500), QSize(300, 400), QSize(400, 300)}) {
            area.resize(size);
            const QColor text = area.palette().color(QPalette::WindowText);
            const QColor ground = widgets::mixed(text, area.palette().color(QPalette::Window), 8);
            const QImage image = area.viewport()->grab().toImage();
            for (int y = 0; y < image.height(); y += 20) {
                seen += QString();
                for (int x = 0; x < image.width(); x += 10) {
                    const QColor color = image.pixelColor(x, y);
                    seen.last() += color == ground ? '.' : color == widgets::mixed(text, ground, 7) ? '#' : '+';
                }
            }
            area.setPalette(QPalette(Qt::darkBlue));
        }
        test::comparePicture(seen, test::contents(test::fileOfTests("shell/emblem.txt")));
    }

    // A new main window has room for 148 digits and 52 lines; one that is larger than the screen is maximised.
    void fitsItsLetters()
    {
        const auto back = qScopeGuard([usual = QApplication::font()] { QApplication::setFont(usual); });
        for (const auto& [pixels, stretch] : {std::pair(7, 100), {10, 100}, {15, 50}}) {
            QFont letters = QApplication::font();
            letters.setPixelSize(pixels);
            letters.setStretch(stretch);
            QApplication::setFont(letters);
            auto& frame = mdiPendrake::instance();
            const auto gone = qScopeGuard([&frame] { delete &frame; });
            const QFontMetrics room = frame.fontMetrics();
            const QSize wanted(148 * room.horizontalAdvance(u'0'), 52 * room.height());
            const QSize fitting = wanted.boundedTo(frame.screen()->availableSize() -
                                                   QSize(0, frame.style()->pixelMetric(QStyle::PM_TitleBarHeight)));
            frame.show();
            QCOMPARE(frame.isMaximized(), fitting != wanted);
            frame.showNormal();
            QTRY_COMPARE(frame.size(), fitting);
        }
    }

    void menuTree()
    {
        QStringList lines;
        appendMenu(mdiPendrake::instance().menuBar()->actions(), 0, lines);
        test::comparePicture(lines, test::contents(test::fileOfTests("shell/menu.txt")));
    }

    void oneWindowPerScreen()
    {
        test::AppFolder folder;
        test::copyLayouts();
        auto& frame = mdiPendrake::instance();
        frame.show();
        auto& command = test::control<QAction>(frame, "mnuPackInformation");
        command.trigger();
        auto& area = test::control<QMdiArea>(frame, "mdiArea");
        auto& number = test::control<QLineEdit>(frame, "txtPackNum");
        number.setText("42");
        test::control<QAction>(frame, "mnuAssignInsignias").trigger();
        QCOMPARE(area.subWindowList().size(), 2);
        command.trigger();
        QCOMPARE(area.subWindowList().size(), 2);
        QCOMPARE(area.activeSubWindow()->widget()->objectName(), "frmPackInformation");
        QCOMPARE(number.text(), "42");

        const auto* first = area.subWindowList().first();
        QCOMPARE(first->minimumSize(), first->maximumSize());
        test::control<QAction>(frame, "ID_Pack_Den_Positions").trigger();
        auto* titles = area.activeSubWindow();
        QCOMPARE(titles->widget()->objectName(), "frmPackDenPositions"); // it scrolls its screen
        QVERIFY(!test::control<QMenu>(frame, "ID_WINDOWS_MENU").actions().isEmpty());
        const test::RecordScreen grids("frmPackDenPositions"); // with a row that can't be written
        grids.run("press:dbgDenPositions,1,0 key:Delete ok");
        QVERIFY(!titles->close());
        grids.run("ok");
        QVERIFY(!frame.close());
        frame.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&frame));
        grids.run("press:dbgDenPositions,1,0 key:Escape");
        QVERIFY(titles->close());

        const auto commands = area.activeSubWindow()->systemMenu()->actions();
        QList<QKeySequence> keys; // none of the desktop's own
        for (const QAction* window : commands)
            keys += window->shortcuts();
        QCOMPARE(keys, QList<QKeySequence>{Qt::CTRL | Qt::Key_F4});

        // If the waiting screen is chosen again, it still is the one that waits.
        auto& help = test::control<QAction>(frame, "mnuHelpTopics");
        QTimer::singleShot(20, qApp, [&help] {
            help.trigger();
            QTest::keyClick(test::topLevel("dlgHelp"), Qt::Key_Escape);
        });
        help.trigger();
        QVERIFY(!test::topLevel("dlgHelp"));

        // The window's close box drops the typing without a question; the next opening reads the record again.
        area.activeSubWindow()->close();
        QTRY_COMPARE(area.subWindowList().size(), 1);
        command.trigger();
        QVERIFY(test::control<QLineEdit>(*area.activeSubWindow(), "txtPackNum").text().isEmpty());
    }

    // A field of which only a few pixels show is scrolled into view when the press on it is released; the second press
    // of a double click is then on something else.
    void pressedFieldIsSeen()
    {
        test::AppFolder folder;
        test::fill(test::Pack);
        auto& frame = mdiPendrake::instance();
        frame.show();
        test::control<QAction>(frame, "mnuScouts").trigger();
        auto* window = test::control<QMdiArea>(frame, "mdiArea").activeSubWindow();
        auto* scroll = &test::control<QScrollArea>(*window, "scrScout");
        QTest::qWait(100); // until it is in its place
        window->resize(920, 350);
        QTest::qWait(10);
        auto& field = test::control<QLineEdit>(*window, "txtParent1HPhone");
        field.setText("44 55");
        const QPoint corner = field.mapTo(scroll->widget(), QPoint());
        scroll->verticalScrollBar()->setValue(corner.y() + 5 - scroll->viewport()->height());
        scroll->horizontalScrollBar()->setValue(corner.x() - 50);
        QCOMPARE(field.visibleRegion().boundingRect().height(), 5);
        QTest::mouseClick(&field, Qt::LeftButton, {}, QPoint(5, 2));
        QVERIFY(field.hasFocus());
        QTRY_COMPARE(field.visibleRegion().boundingRect().height(), field.height());
        QTest::mouseDClick(&field, Qt::LeftButton);
        QVERIFY(!field.hasSelectedText());
        window->close();
    }

    // The window keeps its text; if the manual is beside the program, a click on the link opens it.
    void helpNotice()
    {
        const test::AppFolder folder;
        const auto openNotice = [](const std::function<void(QLabel&)>& look) {
            QTimer::singleShot(20, qApp, [&look] {
                look(test::control<QLabel>(*test::topLevel("dlgHelp"), "Label2"));
                QTest::keyClick(test::topLevel("dlgHelp"), Qt::Key_Escape);
            });
            test::control<QAction>(mdiPendrake::instance(), "mnuHelpTopics").trigger();
        };
        mdiPendrake::instance().show();
        QString words;
        openNotice([&words](QLabel& notice) {
            words = notice.text();
            QTest::mouseDClick(&notice, Qt::LeftButton, {}, notice.rect().center());
            QVERIFY(notice.hasSelectedText()); // an address can be copied
        });
        QVERIFY(words.startsWith("We are currently creating the help system. Please stay tuned to our web site"));
        QVERIFY(!words.contains("href"));

        const QString page = (gAppPath += "/100% #1") + "/manual/index.html";
        QVERIFY(QDir().mkpath(gAppPath + "/manual"));
        test::write(page, "<h1>ORLO</h1>");
        const auto press = [&words](QLabel& notice) {
            QCOMPARE(notice.text().remove(QRegularExpression("href=\"[^\"]+")),
                     words + "<br><br>Meanwhile, the manual on this computer tells how everything is done: "
                             "<a \">Open the ORLO manual</a>");
            QTest::keyClick(&notice, Qt::Key_Tab);
            QTest::keyClick(&notice, Qt::Key_Return);
        };
        QDesktopServices::setUrlHandler("file", this, "openPage");
        openNotice(press);
        QDesktopServices::unsetUrlHandler("file");
        const QString file = QFileInfo(page).canonicalFilePath();
        QCOMPARE(m_pages, QList<QUrl>{QUrl::fromLocalFile(file)});
        // If no program opens it, a message says where it is.
        const auto told = test::answerNext();
        openNotice(press);
        QVERIFY2(told->text.endsWith('\n' + QDir::toNativeSeparators(file)), qPrintable(told->text));
    }

    void exitQuestion()
    {
        test::AppFolder folder;
        QPointer<mdiPendrake> frame = &mdiPendrake::instance();
        frame->show();
        test::control<QAction>(*frame, "mnuPackInformation").trigger();
        auto told = test::answerNext(QMessageBox::No);
        test::control<QAction>(*frame, "mnuExit").trigger();
        QCOMPARE(told->text, "Exit Verrano (ORLO)");
        QCOMPARE(told->title, "Exit");
        QVERIFY(frame && frame->isVisible());
        frame->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(frame));
        frame->menuBar()->setFocus();
        QVERIFY(frame->menuBar()->hasFocus());
        QTest::keyClick(frame->menuBar(), Qt::Key_F); // no menu opens by a letter alone
        QVERIFY(!frame->menuBar()->activeAction() && !frame->menuBar()->hasFocus());
        const auto menus = frame->menuBar()->actions();
        frame->menuBar()->setActiveAction(menus[1]);
        QTest::keyClick(frame->menuBar(), Qt::Key_Right); // a chosen one takes its keys
        QCOMPARE(frame->menuBar()->activeAction(), menus[2]);
        menus[2]->menu()->close();
        QCOMPARE(test::control<QMdiArea>(*frame, "mdiArea").subWindowList().size(), 1);
        test::answerNext(QMessageBox::Yes);
        test::control<QAction>(*frame, "mnuExit").trigger();
        QTRY_VERIFY(!frame);
    }

    void untrappedFailureEndsProcess_data() { test::tableOf("shell/shell_untrapped.txt"); }
    void untrappedFailureEndsProcess()
    {
        const auto [where, message] = test::cells("where", "message");
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), test::childArguments({where}));
        QVERIFY(child.waitForFinished(20000) && child.exitStatus() == QProcess::NormalExit && child.exitCode() == 1);
        const QByteArray told = child.readAllStandardError().replace("\r\n", "\n");
        QVERIFY(told.contains(message.toUtf8()) && told.endsWith("read\n"));
    }

private:
    QList<QUrl> m_pages;
};

// The test's child process: its window's button fails in its handler.
static int failInHandler(const QStringList& arguments)
{
    const QString& where = arguments[0];
    QPushButton button;
    QObject::connect(&button, &QPushButton::clicked, &button, [where] {
        if (where == "memory")
            throw std::bad_alloc();
        if (where == "library")
            throw std::runtime_error("Something else");
        if (where != "nested")
            throw platform::RuntimeError(platform::NoCurrentRecord);
        QTimer::singleShot(0, qApp, [] { static_cast<void>(database()); });
        widgets::message("a nested loop");
    });
    struct Unpaintable : QWidget {
        void paintEvent(QPaintEvent*) override { throw platform::RuntimeError(platform::NoCurrentRecord); }
    } unpaintable; // it keeps failing under the report
    unpaintable.setVisible(where == "paint");
    button.show();
    auto* dismiss = new QTimer(&button);
    QObject::connect(dismiss, &QTimer::timeout, qApp, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            box && box->text().startsWith("Run-time error")) {
            if (box->text().endsWith("ORLO must close. What was saved before is safe."))
                std::fprintf(stderr, "read\n");
            box->accept();
        }
    });
    dismiss->start(20);
    QTimer::singleShot(0, &button, [&button] { QTest::mouseClick(&button, Qt::LeftButton); });
    return QApplication::exec();
}

ORLO_TEST(tst_shell, failInHandler)

#include "tst_shell.moc"
