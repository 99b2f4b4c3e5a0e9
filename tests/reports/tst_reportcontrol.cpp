#include "platform/RuntimeError.h"
#include "reports/engine/view/DocumentSearch.h"
#include "reports/engine/view/PageView.h"
#include "reports/engine/view/PreviewWindow.h"
#include "reports/engine/view/Printing.h"
#include "reports/engine/view/ReportControl.h"
#include "reports/engine/view/RunProgress.h"
#include "store/engine/Database.h"

#include <QApplication>
#include <QDockWidget>
#include <QFile>
#include <QLabel>
#include <QPrinter>
#include <QProgressDialog>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace orlo;
using namespace orlo::reports;

namespace
{

constexpr auto GoodReport = R"(report "Shopping"
source {
    Select Name From Items Order By Name
}
field {Items.Name} = {Name}
detail {
    text 0 300pt = {Name}
}
export {
    "Name" = {Name}
}
report-footer {
    subreport "Others" 0
}
subreport "Others" {
    source {
        Select Name From Others
    }
    detail {
        text 0 300pt = {Name}
    }
}
)";

int pagesOf(const QString& pdf)
{
    QFile file(pdf);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    static const QRegularExpression page(QStringLiteral("/Type\\s*/Page\\b"));
    return static_cast<int>(QString::fromLatin1(file.readAll()).count(page));
}

QWidget* messageWindow()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (window->objectName() == QLatin1String("reportMessage") && window->isVisible())
            return window;
    }
    return nullptr;
}

QString messageText()
{
    const QWidget* window = messageWindow();
    return window ? window->findChild<QLabel*>(QStringLiteral("lblReportMessage"))->text() : QString();
}

} // namespace

class TestReportControl : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString path(const QString& name) const { return m_folder.filePath(name); }

    // A report path as a screen builds it: with the program's own separator, in another case than the file's.
    QString report(const QString& text) const
    {
        QFile file(path(QStringLiteral("Shopping.rpt")));
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
            qFatal("can't write the report");
        return m_folder.path() + QStringLiteral("\\shopping.rpt");
    }
    void makeDatabase(const QString& name, const QString& item, const QString& other, int rows = 1) const
    {
        store::Database database = store::DBEngine::createDatabase(path(name));
        for (const auto* table : {"Items", "Others"}) {
            store::TableDef definition{QString::fromLatin1(table)};
            store::Field field;
            field.name = QStringLiteral("Name");
            field.size = 50;
            definition.appendField(field);
            database.appendTableDef(definition);
        }
        for (int row = 0; row < rows; ++row)
            database.execute(QStringLiteral("Insert Into Items (Name) Values ('%1')").arg(item));
        database.execute(QStringLiteral("Insert Into Others (Name) Values ('%1')").arg(other));
        database.close();
    }
    void set(ReportControl& control, const QString& database = QStringLiteral("a.mdb")) const
    {
        control.setDatabaseFile(0, path(database));
        control.setReportFile(report(QString::fromLatin1(GoodReport)));
        control.setSubreportToChange(QStringLiteral("Others"));
        control.setDatabaseFile(0, path(database));
        control.setFirstPage(1);
        control.setLastPage(0);
    }
    static bool shows(const ReportControl& control, const QString& text)
    {
        return control.preview() && !findText(control.preview()->document(), text).empty();
    }

private Q_SLOTS:
    void initTestCase()
    {
        makeDatabase(QStringLiteral("a.mdb"), QStringLiteral("Apple"), QStringLiteral("Axe"));
        makeDatabase(QStringLiteral("b.mdb"), QStringLiteral("Bread"), QStringLiteral("Bucket"));
        makeDatabase(QStringLiteral("many.mdb"), QStringLiteral("Marble"), QStringLiteral("Mug"), 300);
    }
    void cleanup()
    {
        ReportControl::setDatabaseProvider({});
        setPrinterFactory({});
        RunProgress::setDelay(400);
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget* window : windows)
            window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void opensThePreviewAsTold()
    {
        ReportControl control(QStringLiteral("crShopping"), nullptr);
        set(control);
        QCOMPARE(control.run(), 0);
        QCOMPARE(control.preview()->windowTitle(), QStringLiteral("Shopping"));
        QVERIFY(!control.preview()->isMaximized());
        QVERIFY(shows(control, QStringLiteral("Apple")) && shows(control, QStringLiteral("Axe")));
        const QPointer<PreviewWindow> first = control.preview();

        control.setWindowTitle(QStringLiteral("To buy"));
        control.setWindowOption(true);
        control.setWindowState(PreviewMaximised);
        QCOMPARE(control.run(), 0);
        QVERIFY(first && first != control.preview());
        QCOMPARE(control.preview()->windowTitle(), QStringLiteral("To buy"));
        QVERIFY(control.preview()->isMaximized());
        QVERIFY(control.preview()->findChild<QDockWidget*>()->isVisible());
        QVERIFY(!messageWindow());
    }

    void slotZeroMeansTheMainReportInEachRun()
    {
        ReportControl control(QStringLiteral("crShopping"), nullptr);
        set(control);
        QCOMPARE(control.run(), 0);
        QCOMPARE(control.subreportToChange(), QStringLiteral("Others"));
        control.setDatabaseFile(0, path(QStringLiteral("b.mdb")));
        QCOMPARE(control.databaseFile(0), path(QStringLiteral("b.mdb")));
        QCOMPARE(control.databaseFile(0, QStringLiteral("Others")), path(QStringLiteral("a.mdb")));
        QCOMPARE(control.run(), 0);
        QVERIFY(shows(control, QStringLiteral("Bread")) && shows(control, QStringLiteral("Axe")));
        // Subreports belong to their file.
        control.setReportFile(path(QStringLiteral("else.rpt")));
        QCOMPARE(control.databaseFile(0, QStringLiteral("Others")), QString());
    }

    void readsTheOpenDatabase()
    {
        store::Database open = store::DBEngine::openDatabase(path(QStringLiteral("b.mdb")));
        QStringList asked;
        ReportControl::setDatabaseProvider([&](const QString& name) {
            asked << name;
            return name == path(QStringLiteral("a.mdb")) ? &open : nullptr;
        });
        ReportControl control(QStringLiteral("crShopping"), nullptr);
        set(control);
        control.setDatabaseFile(0, m_folder.path() + QStringLiteral("\\MANY.mdb"));
        QCOMPARE(control.run(), 0);
        QVERIFY(asked.contains(path(QStringLiteral("many.mdb"))));
        QVERIFY(shows(control, QStringLiteral("Bread")) && shows(control, QStringLiteral("Mug")));
        QVERIFY(open.isOpen());
    }

    /// A screen keeps its control while the program closes its database, puts another file in its place and opens that.
    void readsTheFileThatStandsThereNow()
    {
        const QString file = path(QStringLiteral("current.mdb"));
        QVERIFY(QFile::copy(path(QStringLiteral("a.mdb")), file));
        store::Database open = store::DBEngine::openDatabase(file);
        ReportControl::setDatabaseProvider([&](const QString&) { return &open; });
        ReportControl control(QStringLiteral("crShopping"), nullptr);
        set(control, QStringLiteral("current.mdb"));
        QCOMPARE(control.run(), 0);
        QVERIFY(shows(control, QStringLiteral("Apple")));
        open.close();
        QVERIFY(QFile::remove(file) && QFile::copy(path(QStringLiteral("b.mdb")), file));
        QCOMPARE(control.run(), 0);
        QVERIFY(shows(control, QStringLiteral("Bread")));
        open = store::DBEngine::openDatabase(file);
        open.execute(QStringLiteral("Update Items Set Name = 'Butter'"));
        QCOMPARE(control.run(), 0);
        QVERIFY(shows(control, QStringLiteral("Butter")));
        // Nothing that a run opened stays open.
        open.close();
        QVERIFY(QFile::remove(file));
        QCOMPARE(control.run(), int(platform::DatabaseNotFound));
    }

    void tellsWhatIsWrong_data()
    {
        QTest::addColumn<QString>("find");
        QTest::addColumn<QString>("put");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("told");
        QTest::newRow("unreadable") << "detail {"
                                    << "detali {" << int(platform::SyntaxError) << "Line 6";
        QTest::newRow("unknown field") << "300pt = {Name}"
                                       << "300pt = {Nmae}" << int(platform::UnknownName) << "Line 7, column";
        QTest::newRow("unknown table") << "From Items"
                                       << "From Nowhere" << int(platform::UnknownTable) << "Nowhere";
        QTest::newRow("missing file") << ""
                                      << "" << int(platform::FileNotFound) << "can't be found";
        QTest::newRow("missing database") << "a.mdb"
                                          << "" << int(platform::DatabaseNotFound) << "";
        QTest::newRow("unreadable selection")
            << "select"
            << "{Items.Name} = (" << int(platform::SyntaxError) << "Line 1, column 17 of the selection formula";
    }
    void tellsWhatIsWrong()
    {
        QFETCH(QString, find);
        QFETCH(QString, put);
        QFETCH(int, number);
        QFETCH(QString, told);
        ReportControl control(QStringLiteral("crShopping"), nullptr);
        set(control);
        if (find.isEmpty())
            control.setReportFile(path(QStringLiteral("none.rpt")));
        else if (find == QLatin1String("select"))
            control.setSelectionFormula(put);
        else if (find == QLatin1String("a.mdb"))
            control.setDatabaseFile(0, path(QStringLiteral("none.mdb")));
        else
            report(QString::fromLatin1(GoodReport).replace(find, put));
        QCOMPARE(control.run(), number);
        QVERIFY(!control.preview());
        QWidget* window = messageWindow();
        QVERIFY(window && !window->parent());
        const QString text = messageText();
        QVERIFY2(text.contains(told), qPrintable(text));
        QVERIFY2(
            text.contains(find.isEmpty() ? path(QStringLiteral("none.rpt")) : path(QStringLiteral("Shopping.rpt"))),
            qPrintable(text));

        // The next run on the same object starts afresh, and takes the old message away.
        control.setSelectionFormula({});
        set(control);
        QCOMPARE(control.run(), 0);
        QVERIFY(!messageWindow());
    }

    void messageClosesByItsButton()
    {
        ReportControl control(QStringLiteral("crShopping"), nullptr);
        QVERIFY(control.run() != 0);
        QVERIFY(QTest::qWaitForWindowActive(messageWindow()));
        QTest::mouseClick(messageWindow()->findChild<QPushButton*>(), Qt::LeftButton);
        QVERIFY(!messageWindow());
    }

    void printsToTheDefaultPrinter_data()
    {
        QTest::addColumn<int>("firstPage");
        QTest::addColumn<int>("lastPage");
        QTest::addColumn<int>("pages"); // -1 for all
        QTest::newRow("all") << 1 << 0 << -1;
        QTest::newRow("one") << 2 << 2 << 1;
        QTest::newRow("to third") << 1 << 3 << 3;
    }
    void printsToTheDefaultPrinter()
    {
        QFETCH(int, firstPage);
        QFETCH(int, lastPage);
        QFETCH(int, pages);
        const QString pdf = path(QStringLiteral("out.pdf"));
        setPrinterFactory([&] {
            auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
            printer->setOutputFileName(pdf);
            return printer;
        });
        ReportControl control(QStringLiteral("crShopping"), nullptr);
        set(control, QStringLiteral("many.mdb"));
        control.setFirstPage(firstPage);
        control.setLastPage(lastPage);
        QCOMPARE(control.run(), 0);
        control.setDestination(ToPrinter);
        const auto shown = static_cast<int>(control.preview()->document().pages.size());
        QVERIFY(pages < 0 ? shown > 3 : shown == pages);
        control.preview()->close();
        QCOMPARE(control.run(), 0);
        QCOMPARE(pagesOf(pdf), shown);
    }

    void saysThatThereIsNoPrinter()
    {
        setPrinterFactory([] { return nullptr; });
        ReportControl control(QStringLiteral("crShopping"), nullptr);
        set(control);
        control.setDestination(ToPrinter);
        QCOMPARE(control.run(), int(platform::DeviceUnavailable));
        QVERIFY2(messageText().contains(QStringLiteral("no default printer")), qPrintable(messageText()));
    }

    void previewOutlivesItsScreen()
    {
        auto* screen = new QWidget;
        auto* control = new ReportControl(QStringLiteral("crShopping"), screen);
        QCOMPARE(screen->findChild<ReportControl*>(QStringLiteral("crShopping")), control);
        set(*control);
        QCOMPARE(control->run(), 0);
        const QPointer<PreviewWindow> preview = control->preview();
        delete screen;
        QVERIFY(preview && preview->isVisible());
        QVERIFY(!preview->view().viewport()->grab().isNull());
        preview->close();
        QTRY_VERIFY(!preview);
    }

    void longRunCanBeCancelled_data()
    {
        QTest::addColumn<bool>("screenGoes");
        QTest::newRow("cancelled") << false;
        QTest::newRow("cancelled with its screen gone") << true;
    }
    void longRunCanBeCancelled()
    {
        QFETCH(bool, screenGoes);
        auto* control = new ReportControl(QStringLiteral("crShopping"), nullptr);
        set(*control, QStringLiteral("many.mdb"));
        report(QString::fromLatin1(GoodReport)
                   .replace(QStringLiteral("Select Name From Items Order By Name"),
                            QStringLiteral("Select A.Name From Items As A, Items As B, Others As C")));
        int reentered = -1;
        bool blocked = false;
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&] {
            auto* dialog = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            watch.stop();
            blocked = dialog->windowModality() == Qt::ApplicationModal;
            reentered = control->run();
            if (screenGoes)
                delete control;
            QTest::mouseClick(dialog->findChild<QPushButton*>(), Qt::LeftButton);
        });
        watch.start(0);
        RunProgress::setDelay(0);
        QCOMPARE(control->run(), ReportControl::UserInterrupt);
        QVERIFY(blocked);
        QCOMPARE(reentered, int(platform::InvalidProcedureCall));
        QVERIFY(!messageWindow());
        if (!screenGoes) {
            QVERIFY(!control->preview());
            set(*control);
            QCOMPARE(control->run(), 0);
            delete control;
        }
    }
};

QTEST_MAIN(TestReportControl)
#include "tst_reportcontrol.moc"
