#include "reports/engine/view/ReportControl.h"
#include "reports/frmCreatePurchaseList.h"
#include "support/TestApp.h"
#include "widgets/BoundGrid.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

using namespace orlo;

namespace
{

struct Screen {
    frmCreatePurchaseList& form = widgets::Instance<frmCreatePurchaseList>::get();
    QLineEdit& start = test::control<QLineEdit>(form, "txtStartDate");
    QLineEdit& end = test::control<QLineEdit>(form, "txtEndDate");
    widgets::BoundGrid& awards = test::control<widgets::BoundGrid>(form, "dbgAssignedPurchases");
    widgets::BoundGrid& other = test::control<widgets::BoundGrid>(form, "dbgOtherPurchaseList");

    Screen()
    {
        form.showForm();
        QVERIFY(QTest::qWaitForWindowActive(&form));
    }
    void click(const char* button) { QTest::mouseClick(&test::control<QPushButton>(form, button), Qt::LeftButton); }
    void range(const QString& from, const QString& to)
    {
        start.setText(from);
        end.setText(to);
    }
};

QStringList purchaseRows()
{
    QStringList lines;
    for (auto rs = database().openRecordset(QStringLiteral("Purchase_List")); !rs.eof(); rs.moveNext())
        lines += QStringLiteral("%1|%2|%3")
                     .arg(rs[u"Quantity"].textOrEmpty(), rs[u"Award_Name"].textOrEmpty(),
                          rs[u"Insignia_Type"].textOrEmpty());
    return lines;
}

void run(const QString& statement)
{
    database().execute(statement);
}

void addAwards()
{
    int sid = 0;
    for (const auto& [name, type] : {std::pair("Wolf", "Badge"), std::pair("Bear", "Badge"), std::pair("Bear", "Pin")})
        run(QStringLiteral("Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type) Values (%1, '%2', '%3')")
                .arg(++sid)
                .arg(QLatin1String(name), QLatin1String(type)));
}

void giveScout(int award, const QString& date, const QString& quantity = QStringLiteral("Null"))
{
    run(QStringLiteral("Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Quantity) "
                       "Values (1, %1, #%2#, %3)")
            .arg(award)
            .arg(date, quantity));
}

void giveAdult(int award, const QString& date)
{
    run(QStringLiteral("Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned) "
                       "Values (1, %1, #%2#)")
            .arg(award)
            .arg(date));
}

} // namespace

class tst_purchaselist : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        platform::setToday(QDate(2026, 2, 14));
        m_folder = std::make_unique<test::AppFolder>();
    }
    void cleanup() { m_folder.reset(); }
    void load();
    void sums();
    void gridShowsTheList();
    void refusedRanges_data();
    void refusedRanges();
    void badDateKeepsFocus();
    void otherListStays();
    void reportSettings();

private:
    std::unique_ptr<test::AppFolder> m_folder;
};

void tst_purchaselist::load()
{
    run(QStringLiteral("Insert Into Purchase_List (Award_Name, Quantity) Values ('left over', 3)"));
    Screen screen;
    QCOMPARE(screen.start.text(), QStringLiteral("2/1/2026"));
    QCOMPARE(screen.end.text(), QStringLiteral("2/28/2026"));
    QCOMPARE(test::count(QStringLiteral("Purchase_List")), 0);
}

void tst_purchaselist::sums()
{
    addAwards();
    giveScout(1, QStringLiteral("2/1/2026"), QStringLiteral("3"));
    giveScout(1, QStringLiteral("2/28/2026"));
    giveAdult(1, QStringLiteral("2/10/2026"));
    giveScout(2, QStringLiteral("2/10/2026"));
    giveScout(3, QStringLiteral("2/10/2026"));
    giveAdult(99, QStringLiteral("2/10/2026")); // no such award any more
    giveScout(1, QStringLiteral("1/31/2026"));
    giveScout(1, QStringLiteral("3/1/2026"));
    Screen screen;
    screen.click("cmdCreate");
    QStringList rows = purchaseRows();
    // Ordered by name alone: the two Bears may stand either way.
    QCOMPARE(rows.first(), QStringLiteral("1||"));
    QCOMPARE(rows.last(), QStringLiteral("5|Wolf|Badge"));
    rows.sort();
    QCOMPARE(rows, (QStringList{QStringLiteral("1|Bear|Badge"), QStringLiteral("1|Bear|Pin"), QStringLiteral("1||"),
                                QStringLiteral("5|Wolf|Badge")}));

    screen.range(QStringLiteral("1/31/2026"), QStringLiteral("1/31/26"));
    screen.click("cmdCreate");
    QCOMPARE(purchaseRows(), QStringList{QStringLiteral("1|Wolf|Badge")});

    screen.range(QStringLiteral("1/1/1999"), QStringLiteral("1/2/1999"));
    screen.click("cmdCreate");
    QVERIFY(purchaseRows().isEmpty());
}

void tst_purchaselist::gridShowsTheList()
{
    addAwards();
    giveScout(1, QStringLiteral("2/1/2026"), QStringLiteral("3"));
    Screen screen;
    screen.click("cmdCreate");
    const auto* model = test::control<QTableView>(screen.form, "dbgAssignedPurchases").model();
    QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Quantity"));
    QCOMPARE(model->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Award Name"));
    QCOMPARE(model->headerData(2, Qt::Horizontal).toString(), QStringLiteral("Award Type"));
    QCOMPARE(model->index(0, 0).data().toString(), QStringLiteral("3"));
    QCOMPARE(model->index(0, 1).data().toString(), QStringLiteral("Wolf"));
    QCOMPARE(model->index(0, 2).data().toString(), QStringLiteral("Badge"));
}

void tst_purchaselist::refusedRanges_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("end");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("title");
    const QString missing = QStringLiteral("You must enter a start date and end date");
    QTest::newRow("no start") << QString() << QStringLiteral("2/1/2026") << missing
                              << QStringLiteral("Date Selection Error");
    QTest::newRow("no end") << QStringLiteral("2/1/2026") << QString() << missing
                            << QStringLiteral("Date Selection Error");
    QTest::newRow("end before start") << QStringLiteral("10/1/2026") << QStringLiteral("9/30/2026")
                                      << QStringLiteral(
                                             "The start date needs to be equal to or older then the end date")
                                      << QStringLiteral("Delete Selection Error");
}

void tst_purchaselist::refusedRanges()
{
    QFETCH(QString, start);
    QFETCH(QString, end);
    addAwards();
    giveScout(1, QStringLiteral("2/1/2026"));
    Screen screen;
    screen.click("cmdCreate");
    screen.range(start, end);
    const auto told = test::answerNext();
    screen.click("cmdCreate");
    QTEST(told->text, "text");
    QTEST(told->title, "title");
    QCOMPARE(purchaseRows().size(), 1);
}

void tst_purchaselist::badDateKeepsFocus()
{
    Screen screen;
    screen.start.setFocus();
    screen.start.setText(QStringLiteral("2/30/2026"));
    for (const bool byKey : {false, true}) {
        const auto told = test::answerNext();
        if (byKey)
            QTest::keyClick(&screen.start, Qt::Key_Tab);
        else
            screen.click("cmdClearOtherList");
        QVERIFY(told->text.startsWith(QStringLiteral("Invalid Date format")));
        QTRY_VERIFY(screen.start.hasFocus());
    }
    screen.start.clear();
    QTest::keyClick(&screen.start, Qt::Key_Tab);
    QVERIFY(screen.end.hasFocus());
}

void tst_purchaselist::otherListStays()
{
    {
        Screen screen;
        auto& view = test::control<QTableView>(screen.form, "dbgOtherPurchaseList");
        view.setCurrentIndex(view.model()->index(view.model()->rowCount() - 1, 0));
        view.setFocus();
        QTest::keyClicks(&view, QStringLiteral("4"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Pie tins"));
        screen.click("cmdCreate"); // the focus leaves the grid, which writes the row
        QCOMPARE(test::count(QStringLiteral("Other_Purchase_List"),
                             QStringLiteral("Quantity = 4 and Item_Name = 'Pie tins'")),
                 1);
        screen.click("cmdCancel");
    }
    Screen again;
    const auto* model = test::control<QTableView>(again.form, "dbgOtherPurchaseList").model();
    QCOMPARE(model->index(0, 1).data().toString(), QStringLiteral("Pie tins"));
    again.click("cmdClearOtherList");
    QCOMPARE(test::count(QStringLiteral("Other_Purchase_List")), 0);
    QCOMPARE(model->index(0, 1).data().toString(), QString());
}

void tst_purchaselist::reportSettings()
{
    Screen screen;
    auto& report = test::control<reports::ReportControl>(screen.form, "crPurchaseList");
    QVERIFY(QFile::copy(QStringLiteral(ORLO_SOURCE_DIR "/src/reports/files/PurchaseList.rpt"),
                        m_folder->path() + QStringLiteral("/purchaselist.RPT")));
    for (int times = 0; times < 2; ++times)
        screen.click("cmdPreviewList");
    QCOMPARE(report.destination(), 0);
    QCOMPARE(report.windowTitle(), QStringLiteral("Purchase List"));
    QCOMPARE(report.windowState(), 2);
    QVERIFY(report.windowOption());
    QCOMPARE(report.reportFile(), gAppPath + QStringLiteral("\\PurchaseList.rpt"));
    QCOMPARE(report.subreportToChange(), QStringLiteral("OtherPurchaseList"));
    QCOMPARE(report.databaseFile(0), databasePath());
    QCOMPARE(report.databaseFile(0, QStringLiteral("OtherPurchaseList")), databasePath());
    const auto windows = QApplication::topLevelWidgets();
    const auto previews = std::count_if(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->objectName() == QLatin1String("previewWindow") && window->isVisible();
    });
    QCOMPARE(previews, 2);
    for (QWidget* window : windows)
        if (window->objectName() == QLatin1String("previewWindow"))
            window->close();
}

ORLO_TEST_MAIN(tst_purchaselist)

#include "tst_purchaselist.moc"
