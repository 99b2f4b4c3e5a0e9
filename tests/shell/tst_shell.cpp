#include "platform/Application.h"
#include "platform/RuntimeError.h"
#include "shell/dlgCalendar.h"
#include "shell/frmSplash.h"
#include "shell/mdiPendrake.h"
#include "support/TestApp.h"
#include "widgets/Calendar.h"
#include "widgets/MessageBox.h"

#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>

using namespace orlo;

namespace
{

QWidget* topLevel(const char* name)
{
    const auto widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets)
        if (widget->objectName() == QLatin1String(name) && widget->isVisible())
            return widget;
    return nullptr;
}

// What dlgError shows, read and dismissed while it waits.
struct ErrorShown {
    bool shown = false;
    QString text, type, number, source, description;
};

std::shared_ptr<ErrorShown> dismissErrorDialog()
{
    auto seen = std::make_shared<ErrorShown>();
    QTimer::singleShot(50, qApp, [seen] {
        QWidget* dialog = topLevel("dlgError");
        if (!dialog)
            return;
        *seen = {true,
                 test::control<QPlainTextEdit>(*dialog, "txtErrorText").toPlainText(),
                 test::control<QLineEdit>(*dialog, "txtErrorType").text(),
                 test::control<QLineEdit>(*dialog, "txtErrorNumber").text(),
                 test::control<QLineEdit>(*dialog, "txtErrorSource").text(),
                 test::control<QPlainTextEdit>(*dialog, "txtErrorDescription").toPlainText()};
        QTest::mouseClick(&test::control<QPushButton>(*dialog, "cmdOk"), Qt::LeftButton);
    });
    return seen;
}

void appendMenu(const QMenu* menu, int depth, QStringList& lines)
{
    const auto commands = menu->actions();
    for (const QAction* command : commands) {
        lines += QString(depth, u'-') + command->objectName() + u'|' + command->text();
        if (command->menu())
            appendMenu(command->menu(), depth + 1, lines);
    }
}

} // namespace

class tst_shell : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startUp_data();
    void startUp();
    void damagedFileAtStart();
    void errorNumberOver16Bits();
    void splashOpensFrame();
    void menuTree();
    void oneWindowPerScreen();
    void exitQuestion();
    void monthEnds_data();
    void monthEnds();
    void validateDate_data();
    void validateDate();
    void calendar_data();
    void calendar();
    void untrappedFailureEndsProcess();
    void untrappedFailureInNestedLoop();
};

void tst_shell::startUp_data()
{
    QTest::addColumn<bool>("oldFile");
    QTest::addColumn<bool>("newFile");
    QTest::addColumn<bool>("needsUpdate");
    QTest::addColumn<bool>("opened");
    QTest::addColumn<bool>("error");
    QTest::newRow("current file") << false << true << false << true << false;
    QTest::newRow("old file") << true << false << true << false << false;
    QTest::newRow("both: the old one decides") << true << true << true << false << false;
    QTest::newRow("none") << false << false << false << false << true;
}

void tst_shell::startUp()
{
    QFETCH(bool, oldFile);
    QFETCH(bool, newFile);
    QTemporaryDir folder;
    platform::setFolder(folder.path());
    gDatabase.reset();
    if (newFile) {
        auto fresh = store::DBEngine::createDatabase(folder.filePath(QStringLiteral("quorrel11.MDB")));
        fresh.close();
    }
    if (oldFile) {
        QFile file(folder.filePath(QStringLiteral("QUORREL.mdb")));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    const auto seen = dismissErrorDialog();
    Main();
    QTest::qWait(80);
    QTEST(gDbNeedsUpdate, "needsUpdate");
    QTEST(gDatabase != nullptr, "opened");
    QTEST(seen->shown, "error");
    if (seen->shown) {
        QCOMPARE(seen->number, QStringLiteral("3024"));
        QCOMPARE(seen->type, QStringLiteral("Critical Error"));
        QVERIFY(seen->text.startsWith(QStringLiteral("A Critical Error has occurred. The database file that contains "
                                                     "all of ORLO data is missing. Please contact Tollbeck for "
                                                     "technical support (Web Site: ")));
        QVERIFY(!seen->source.isEmpty() && !seen->description.isEmpty());
        QCOMPARE(gErrNumber, std::int16_t(0));
        QVERIFY(gErrType.isEmpty() && gErrSource.isEmpty() && !gErrText.isEmpty());
        QVERIFY_THROWS_EXCEPTION(platform::RuntimeError, static_cast<void>(database()));
    }
    QVERIFY(widgets::Instance<frmSplash>::loaded());
    widgets::Instance<frmSplash>::unload();
    gDatabase.reset();
    gDbNeedsUpdate = false;
    platform::setFolder(QString());
}

void tst_shell::damagedFileAtStart()
{
    QTemporaryDir folder;
    platform::setFolder(folder.path());
    QFile file(folder.filePath(QStringLiteral("Quorrel11.mdb")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(5000, 'x')) == 5000);
    file.close();
    const auto seen = dismissErrorDialog();
    Main();
    QVERIFY(seen->shown);
    QCOMPARE(seen->number, QStringLiteral("3343"));
    QVERIFY(seen->text.contains(QStringLiteral("The application will shut down. Please report the error information on "
                                               "the Error Detail tab to Tollbeck.\n\nWeb Site: ")));
    widgets::Instance<frmSplash>::unload();
    platform::setFolder(QString());
}

void tst_shell::errorNumberOver16Bits()
{
    platform::pendingError::set(platform::RuntimeError(40000));
    try {
        CriticalError();
        QFAIL("the number can't fit");
    } catch (const platform::RuntimeError& error) {
        QCOMPARE(error.number(), int(platform::Overflow));
    }
    platform::pendingError::clear();
}

void tst_shell::splashOpensFrame()
{
    test::AppFolder folder;
    auto& splash = widgets::Instance<frmSplash>::get();
    const QString version = test::control<QLabel>(splash, "lblVersion").text();
    QVERIFY(QRegularExpression(QStringLiteral(R"(^Version (0|[1-9]\d*)\.(0|[1-9]\d*)\.(0|[1-9]\d*)$)"))
                .match(version)
                .hasMatch());
    QCOMPARE(splash.size(), QSize(483, 401));
    QVERIFY(!splash.isEnabled());
    splash.show();
    splash.startTimer(60);
    QTRY_VERIFY(topLevel("mdiPendrake"));
    QTRY_VERIFY(!widgets::Instance<frmSplash>::loaded() && !topLevel("frmSplash"));
    QCOMPARE(mdiPendrake::instance().windowTitle(), QStringLiteral("Verrano"));
}

void tst_shell::menuTree()
{
    QStringList lines;
    const auto menus = mdiPendrake::instance().menuBar()->actions();
    for (const QAction* menu : menus) {
        QCOMPARE(menu->isVisible(), menu->objectName() != QLatin1String("ID_TEST_MENU"));
        lines += menu->objectName() + u'|' + menu->text();
        appendMenu(menu->menu(), 1, lines);
    }
    QCOMPARE(lines.join(u'\n'), QStringLiteral(R"(ID_TEST_MENU|Test Menu
-ID_DB_11_UPDATE|Database Update from 1.0 to 1.1
mnuFile|&File
-mnuRepairDatabase|Repair Database
-ID_BACKUP_RESTORE_MENU|Backup/Restore Menu
--ID_BACKUP_DATABASE|&Backup Database...
--ID_RESTOR_BACKUP|Restore Database...
-Line|
-mnuExit|&Exit ORLO
mnuForms|F&orms
-mnuPackInformation|&Pack Information ...
-mnuScouts|&Scouts ...
-mnuAdults|Ad&ults ...
-mnuDenInfo|&Den Information ...
-mnuInsigniaInfo|A&ward Information ...
-ID_Pack_Den_Positions|Pack and Den Positoins ...
-mnuAssignInsignias|&Assign Awards ...
mnuReports|&Reports
-mnuRepAssignedAwards|&Assigned Awards
-mnuRepAwardList|Awards &List
-mnuPurchaseList|&Purchase List
-ID_ROSTERS|&Rosters
--mnuRptScoutList|Scout Roster
--mnuRptAdultList|Adult Roster
--ID_COMBINED_ROSTER|Combined Roster
ID_WINDOWS_MENU|&Window
mnuHelp|&Help
-mnuHelpTopics|&ORLO Help Topics
-mnuAbout|&About)"));
}

void tst_shell::oneWindowPerScreen()
{
    test::AppFolder folder;
    auto& frame = mdiPendrake::instance();
    frame.show();
    auto& command = test::control<QAction>(frame, "mnuPackInformation");
    command.trigger();
    auto& area = test::control<QMdiArea>(frame, "mdiArea");
    auto& number = test::control<QLineEdit>(frame, "txtPackNum");
    number.setText(QStringLiteral("42"));
    test::control<QAction>(frame, "mnuAssignInsignias").trigger();
    QCOMPARE(area.subWindowList().size(), 2);
    command.trigger();
    QCOMPARE(area.subWindowList().size(), 2);
    QCOMPARE(area.activeSubWindow()->widget()->objectName(), QStringLiteral("frmPackInformation"));
    QCOMPARE(number.text(), QStringLiteral("42"));

    auto& windows = test::control<QMenu>(frame, "ID_WINDOWS_MENU");
    Q_EMIT windows.aboutToShow();
    QCOMPARE(windows.actions().size(), 2);

    // The window's own close drops the typing without a word; the next opening reads the record anew.
    area.activeSubWindow()->close();
    QTRY_COMPARE(area.subWindowList().size(), 1);
    command.trigger();
    QVERIFY(test::control<QLineEdit>(*area.activeSubWindow(), "txtPackNum").text().isEmpty());
}

void tst_shell::exitQuestion()
{
    test::AppFolder folder;
    QPointer<mdiPendrake> frame = &mdiPendrake::instance();
    frame->show();
    test::control<QAction>(*frame, "mnuPackInformation").trigger();
    auto told = test::answerNext(QMessageBox::No);
    test::control<QAction>(*frame, "mnuExit").trigger();
    QCOMPARE(told->text, QStringLiteral("Exit Verrano (ORLO)"));
    QCOMPARE(told->title, QStringLiteral("Exit"));
    QVERIFY(frame && frame->isVisible());
    QCOMPARE(test::control<QMdiArea>(*frame, "mdiArea").subWindowList().size(), 1);
    test::answerNext(QMessageBox::Yes);
    test::control<QAction>(*frame, "mnuExit").trigger();
    QTRY_VERIFY(!frame);
}

void tst_shell::monthEnds_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QDate>("first");
    QTest::addColumn<QDate>("last");
    QTest::newRow("december") << QDate(2003, 12, 9) << QDate(2003, 12, 1) << QDate(2003, 12, 31);
    QTest::newRow("leap february") << QDate(2000, 2, 1) << QDate(2000, 2, 1) << QDate(2000, 2, 29);
    QTest::newRow("year below 1000") << QDate(999, 4, 30) << QDate(999, 4, 1) << QDate(999, 4, 30);
}

void tst_shell::monthEnds()
{
    QFETCH(QDate, date);
    QTEST(FirstOfMonth(date), "first");
    QTEST(LastOfMonth(date), "last");
}

void tst_shell::validateDate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::newRow("empty") << QString() << true;
    QTest::newRow("short year") << QStringLiteral("6/7/04") << true;
    QTest::newRow("no such day") << QStringLiteral("2/30/2001") << false;
    QTest::newRow("month 13") << QStringLiteral("13/1/2001") << false;
    QTest::newRow("words") << QStringLiteral("soon") << false;
}

void tst_shell::validateDate()
{
    QFETCH(QString, text);
    const auto told = test::answerNext();
    const bool valid = ValidateDate(text);
    QTEST(valid, "valid");
    QCOMPARE(told->shown, !valid);
    if (!valid)
        QCOMPARE(told->text.remove(u'\r'),
                 QStringLiteral("Invalid Date format (mm/dd/yy or m/d/yyyy) \n or an invalid date has been entered. "
                                "\n\nPlease re-enter the date."));
    else
        widgets::message(QStringLiteral("takes the waiting answer"));
}

void tst_shell::calendar_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("result");
    QTest::newRow("select today") << QStringLiteral("select") << QStringLiteral("11/24/2026");
    QTest::newRow("enter") << QStringLiteral("enter") << QStringLiteral("11/24/2026");
    QTest::newRow("cancel") << QStringLiteral("cancel") << QStringLiteral("kept");
    QTest::newRow("escape") << QStringLiteral("escape") << QStringLiteral("kept");
    QTest::newRow("close box") << QStringLiteral("close") << QStringLiteral("kept");
    QTest::newRow("another month, no day picked") << QStringLiteral("page") << QStringLiteral("3/1/2001");
}

void tst_shell::calendar()
{
    QFETCH(QString, how);
    platform::setToday(QDate(2026, 11, 24));
    QLineEdit field(QStringLiteral("kept"));
    openCalendarOnDoubleClick(&field);
    field.show();
    QTimer::singleShot(50, qApp, [how] {
        QWidget* dialog = topLevel("dlgCalendar");
        auto& month = test::control<widgets::Calendar>(*dialog, "ccCalendar");
        if (how == QLatin1String("page"))
            month.setCurrentPage(2001, 3);
        if (how == QLatin1String("cancel"))
            QTest::mouseClick(&test::control<QPushButton>(*dialog, "cmdCancel"), Qt::LeftButton);
        else if (how == QLatin1String("escape"))
            QTest::keyClick(dialog, Qt::Key_Escape);
        else if (how == QLatin1String("enter"))
            QTest::keyClick(dialog, Qt::Key_Return);
        else if (how == QLatin1String("close"))
            dialog->close();
        else
            QTest::mouseClick(&test::control<QPushButton>(*dialog, "cmdSelectDate"), Qt::LeftButton);
    });
    QTest::mouseDClick(&field, Qt::LeftButton);
    QTEST(field.text(), "result");
    platform::setToday(QDate());
}

void tst_shell::untrappedFailureEndsProcess()
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--fail")});
    QVERIFY(child.waitForFinished(20000));
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 1);
    QVERIFY(child.readAllStandardError().contains("Run-time error '3021':\n\nNo current record."));
}

void tst_shell::untrappedFailureInNestedLoop()
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--fail"), QStringLiteral("nested")});
    QVERIFY(child.waitForFinished(20000));
    QCOMPARE(child.exitCode(), 1);
    QVERIFY(child.readAllStandardError().contains("Run-time error '91':"));
}

// The child process of the two tests above: its window's button fails in its handler.
static int failInHandler(bool nested)
{
    QPushButton button;
    QObject::connect(&button, &QPushButton::clicked, &button, [nested] {
        if (!nested)
            throw platform::RuntimeError(platform::NoCurrentRecord);
        QTimer::singleShot(0, qApp, [] { static_cast<void>(database()); });
        widgets::message(QStringLiteral("a nested loop"));
    });
    button.show();
    auto* dismiss = new QTimer(&button);
    QObject::connect(dismiss, &QTimer::timeout, qApp, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            box && box->text().startsWith(QStringLiteral("Run-time error")))
            box->accept();
    });
    dismiss->start(20);
    QTimer::singleShot(0, &button, [&button] { QTest::mouseClick(&button, Qt::LeftButton); });
    return QApplication::exec();
}

int main(int argc, char** argv)
{
    widgets::Application application(argc, argv);
    if (argc > 1 && QByteArrayView(argv[1]) == "--fail")
        return failInHandler(argc > 2);
    QApplication::setQuitOnLastWindowClosed(false);
    tst_shell tests;
    return QTest::qExec(&tests, argc, argv);
}

#include "tst_shell.moc"
