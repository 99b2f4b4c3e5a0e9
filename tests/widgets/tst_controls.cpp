#include "store/engine/Database.h"
#include "widgets/Calendar.h"
#include "widgets/CheckBox.h"
#include "widgets/ComboBox.h"
#include "widgets/DataControl.h"
#include "widgets/Failure.h"
#include "widgets/ListBox.h"
#include "widgets/OptionButton.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

using namespace orlo;
using widgets::ComboBox;
using widgets::ListBox;

namespace
{

const QStringList Dens{QStringLiteral("Wolf"), QStringLiteral("Bear"), QStringLiteral("Wolf")};

// What a control tells, in its order.
void watch(ComboBox& box, QStringList& told)
{
    QObject::connect(&box, &ComboBox::textChange, &box, [&] { told += QStringLiteral("text:") + box.text(); });
    QObject::connect(&box, &ComboBox::clicked, &box, [&] { told += QStringLiteral("click:") + box.text(); });
    QObject::connect(&box, &ComboBox::dropDown, &box, [&] { told += QStringLiteral("drop"); });
}

void pick(ComboBox& box, int row)
{
    box.showPopup();
    box.view()->setCurrentIndex(box.model()->index(row, 0));
    QTest::keyClick(box.view(), Qt::Key_Return);
}

} // namespace

class tst_controls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comboTells_data();
    void comboTells();
    void comboRefilledInDropDown();
    void listBox();
    void checkAndOption();
    void calendarDays();
    void dataControl();
};

void tst_controls::comboTells_data()
{
    QTest::addColumn<bool>("editable");
    QTest::addColumn<QString>("what");
    QTest::addColumn<QStringList>("told");
    QTest::addColumn<int>("row");
    const auto add = [](bool editable, const char* what, const QString& told, int row) {
        QTest::addRow("%s: %s", editable ? "free text" : "pick only", what)
            << editable << QString::fromLatin1(what) << told.split(u' ', Qt::SkipEmptyParts) << row;
    };
    add(true, "same row by code", QStringLiteral("text:Bear click:Bear"), 1);
    add(true, "text by code", QStringLiteral("text:Bear"), -1);
    add(true, "typing, then Enter", QStringLiteral("text:B text:Be"), -1);
    add(true, "pick", QStringLiteral("drop text:Bear click:Bear"), 1);
    add(true, "second of equal rows", QStringLiteral("text:Wolf click:Wolf"), 2);
    add(true, "pick, then clear", QStringLiteral("drop text:Bear click:Bear text:"), -1);
    add(true, "row, then typing over it", QStringLiteral("text:Bear click:Bear text:BearX"), -1);
    add(false, "same row by code", QStringLiteral("click:Bear"), 1);
    add(false, "text by code", QStringLiteral("click:Bear"), 1);
    add(false, "pick", QStringLiteral("drop click:Bear"), 1);
    add(false, "same pick again", QStringLiteral("drop click:Bear drop click:Bear"), 1);
    add(false, "arrow key", QStringLiteral("click:Wolf"), 0);
    add(false, "pick, then clear", QStringLiteral("drop click:Bear"), -1);
    add(false, "row, then none", QStringLiteral("click:Bear"), -1);
}

void tst_controls::comboTells()
{
    QFETCH(bool, editable);
    QFETCH(QString, what);
    QStringList told;
    ComboBox box;
    box.setEditable(editable);
    for (const QString& den : Dens)
        box.addItem(den);
    box.show();
    watch(box, told);
    if (what == QLatin1String("text by code"))
        box.setText(QStringLiteral("Bear"));
    else if (what.startsWith(QLatin1String("typing")))
        QTest::keyClicks(box.lineEdit(), QStringLiteral("Be"));
    else if (what == QLatin1String("second of equal rows"))
        box.setListIndex(2);
    else if (what == QLatin1String("arrow key"))
        QTest::keyClick(&box, Qt::Key_Down);
    else if (what.contains(QLatin1String("pick")))
        pick(box, 1);
    else
        box.setListIndex(1);
    if (what.startsWith(QLatin1String("same row")))
        box.setListIndex(1);
    if (what.startsWith(QLatin1String("same pick")))
        pick(box, 1);
    if (what.endsWith(QLatin1String("Enter")))
        QTest::keyClick(box.lineEdit(), Qt::Key_Return);
    if (what.endsWith(QLatin1String("over it")))
        QTest::keyClick(box.lineEdit(), 'X');
    if (what.endsWith(QLatin1String("clear")))
        box.clear();
    if (what.endsWith(QLatin1String("none")))
        box.setListIndex(-1);
    QTEST(told, "told");
    QTEST(box.listIndex(), "row");
    QCOMPARE(box.text().isEmpty(), told.isEmpty() || box.listCount() == 0 || what.endsWith(QLatin1String("none")));
}

void tst_controls::comboRefilledInDropDown()
{
    ComboBox box;
    connect(&box, &ComboBox::dropDown, &box, [&] {
        box.clear();
        for (const QString& den : Dens)
            box.addItem(den);
    });
    QSignalSpy clicks(&box, &ComboBox::clicked);
    box.show();
    for (int times = 1; times <= 2; ++times) {
        pick(box, 1);
        QCOMPARE(box.text(), QStringLiteral("Bear"));
        QCOMPARE(clicks.size(), times);
    }
    box.showPopup();
    box.hidePopup(); // closed without a pick: the refill took the choice away
    QCOMPARE(test::failureNumber([&] { box.setText(QStringLiteral("wolf")); }), 5);
    QCOMPARE(test::failureNumber([&] { box.setListIndex(3); }), 5);
    QCOMPARE(box.listIndex(), -1);
    QCOMPARE(box.text(), QString());
}

void tst_controls::listBox()
{
    ListBox box;
    QSignalSpy clicks(&box, &ListBox::clicked);
    for (const QString& den : Dens)
        box.addItem(den);
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    box.setFocus(Qt::TabFocusReason); // walking past chooses nothing
    QCOMPARE(box.listIndex(), -1);
    box.setListIndex(1);
    box.setListIndex(1);
    QCOMPARE(clicks.size(), 1);
    box.removeItem(0);
    QCOMPARE(box.listIndex(), 0);
    QCOMPARE(box.list(0), QStringLiteral("Bear"));
    box.setListIndex(-1);
    QVERIFY(!box.selected(0));
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(test::failureNumber([&] { box.setListIndex(2); }), 5);
    QCOMPARE(test::failureNumber([&] { box.removeItem(-1); }), 5);
    QCOMPARE(test::failureNumber([&] { static_cast<void>(box.selected(2)); }), 5);
    box.setSelectionMode(QAbstractItemView::MultiSelection);
    box.setSelected(0, true);
    box.setSelected(1, true);
    QVERIFY(box.selected(0) && box.selected(1));
    box.clear();
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(box.listIndex(), -1);
}

void tst_controls::checkAndOption()
{
    widgets::CheckBox check;
    QSignalSpy changes(&check, &widgets::CheckBox::changed);
    check.setChecked(true);
    check.setChecked(true);
    check.click();
    QCOMPARE(changes.size(), 2);

    QWidget group;
    widgets::OptionButton first(&group);
    widgets::OptionButton second(&group);
    QSignalSpy firsts(&first, &widgets::OptionButton::selected);
    QSignalSpy seconds(&second, &widgets::OptionButton::selected);
    first.setChecked(true);
    second.click();
    second.click();
    QCOMPARE(firsts.size(), 1);
    QCOMPARE(seconds.size(), 1);
    QVERIFY(!first.isChecked());
}

void tst_controls::calendarDays()
{
    widgets::Calendar calendar;
    calendar.setValue(QDate(2024, 2, 29));
    QCOMPARE(calendar.day(), 29);
    calendar.setCurrentPage(2023, 2);
    QCOMPARE(calendar.day(), 0);
    QCOMPARE(calendar.value(), QDate(2024, 2, 29));
    QCOMPARE(test::failureNumber([&] { calendar.setDay(29); }), 5);
    calendar.setDay(28);
    QCOMPARE(calendar.value(), QDate(2023, 2, 28));
    calendar.show();
    QTest::keyClicks(calendar.findChild<QTableView*>(), QStringLiteral("10")); // typed digits choose no day
    QTest::keyClick(calendar.findChild<QTableView*>(), Qt::Key_Return);
    QCOMPARE(calendar.value(), QDate(2023, 2, 28));
}

void tst_controls::dataControl()
{
    widgets::DataControl control;
    control.setRecordSource(QStringLiteral("Nothing"));
    QCOMPARE(test::failureNumber([&] { control.refresh(); }), 91);
    const QTemporaryDir folder;
    auto database = store::DBEngine::createDatabase(folder.filePath(QStringLiteral("x.mdb")));
    control.setDatabase(&database);
    QCOMPARE(test::failureNumber([&] { control.refresh(); }), 3078);
    QCOMPARE(control.recordset(), nullptr);
}

QTEST_MAIN(tst_controls)

#include "tst_controls.moc"
