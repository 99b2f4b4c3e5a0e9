#include "store/engine/Database.h"
#include "support/Failure.h"
#include "support/Main.h"
#include "support/Table.h"
#include "widgets/Calendar.h"
#include "widgets/CheckBox.h"
#include "widgets/ComboBox.h"
#include "widgets/DataControl.h"
#include "widgets/ListBox.h"
#include "widgets/OptionButton.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

using namespace orlo;
using widgets::ComboBox;
using widgets::ListBox;

namespace
{

template <class Box>
void fill(Box& box)
{
    for (const char* den : {"Wolf", "Bear", "Wolf"})
        box.addItem(den);
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
    // Steps: the number of a row for the code to set, what the user does with row 1 or types, or a key.
    void comboTells_data()
    {
        test::table({"steps", "told"}, R"(
            free 1 1          | click:Bear, row 1 Bear
            free set          | text:Bear, row -1 Bear
            free 0 set Down   | click:Wolf text:Bear click:Wolf, row 2 Wolf
            free type Return  | text:B text:Be, row -1 Be
            free pick         | drop click:Bear, row 1 Bear
            free 2            | click:Wolf, row 2 Wolf
            free pick clear   | drop click:Bear, row -1
            free 1 type       | click:Bear text:BearB text:BearBe, row -1 BearBe
            list 1 1          | click:Bear, row 1 Bear
            list set          | click:Bear, row 1 Bear
            list pick         | drop click:Bear, row 1 Bear
            list pick pick    | drop click:Bear drop click:Bear, row 1 Bear
            list Down         | click:Wolf, row 0 Wolf
            list pick clear   | drop click:Bear, row -1
            list 1 -1         | click:Bear, row -1
        )");
    }
    void comboTells()
    {
        QFETCH(QString, steps);
        QStringList told;
        ComboBox box;
        box.setEditable(steps.startsWith("free"));
        fill(box);
        box.show();
        connect(&box, &ComboBox::textChange, &box, [&] { told += "text:" + box.text(); });
        connect(&box, &ComboBox::clicked, &box, [&] { told += "click:" + box.text(); });
        connect(&box, &ComboBox::dropDown, &box, [&] { told += "drop"; });
        for (const QString& step : steps.split(u' ').mid(1)) {
            if (step == "set")
                box.setText("Bear");
            else if (step == "type")
                QTest::keyClicks(box.lineEdit(), "Be");
            else if (step == "pick")
                pick(box, 1);
            else if (step == "clear")
                box.clear();
            else if (step == "Return" || step == "Down")
                QTest::keyClick(&box, step == "Down" ? Qt::Key_Down : Qt::Key_Return);
            else
                box.setListIndex(step.toInt());
        }
        QTEST(QStringLiteral("%1, row %2 %3").arg(told.join(u' ')).arg(box.listIndex()).arg(box.text()).trimmed(),
              "told");
    }

    void comboRefilledInDropDown()
    {
        ComboBox box;
        connect(&box, &ComboBox::dropDown, &box, [&] {
            box.clear();
            fill(box);
        });
        QSignalSpy clicks(&box, &ComboBox::clicked);
        box.show();
        for (int times = 1; times <= 2; ++times) {
            pick(box, 1);
            QCOMPARE(box.text(), "Bear");
            QCOMPARE(clicks.size(), times);
        }
        box.showPopup();
        box.hidePopup(); // closed without a pick: the refill took the choice away
        QCOMPARE(test::failureNumber([&] { box.setText("Lion"); }), 5);
        QCOMPARE(test::failureNumber([&] { box.setListIndex(3); }), 5);
        QVERIFY(box.listIndex() == -1 && box.text().isEmpty());
    }

    void listBox()
    {
        ListBox box;
        QSignalSpy clicks(&box, &ListBox::clicked);
        fill(box);
        box.show();
        QVERIFY(QTest::qWaitForWindowActive(&box));
        box.setFocus(Qt::TabFocusReason); // walking past chooses nothing
        QCOMPARE(box.listIndex(), -1);
        box.setListIndex(1);
        box.setListIndex(1);
        box.removeItem(0);
        QCOMPARE(box.listIndex(), 0);
        QCOMPARE(box.list(0), "Bear");
        box.setListIndex(-1);
        QVERIFY(!box.selected(0));
        QCOMPARE(test::failureNumber([&] { box.setListIndex(2); }), 5);
        QCOMPARE(test::failureNumber([&] { box.removeItem(-1); }), 5);
        QCOMPARE(test::failureNumber([&] { return box.selected(2); }), 5);
        box.setSelectionMode(QAbstractItemView::MultiSelection);
        box.setSelected(0, true);
        box.setSelected(1, true);
        QVERIFY(box.selected(0) && box.selected(1));
        box.clear();
        QCOMPARE(clicks.size(), 1);
        QCOMPARE(box.listIndex(), -1);
    }

    void checkAndOption()
    {
        QWidget group;
        widgets::CheckBox check(&group);
        widgets::OptionButton first(&group);
        widgets::OptionButton second(&group);
        const QSignalSpy changes(&check, &widgets::CheckBox::changed);
        const QSignalSpy firsts(&first, &widgets::OptionButton::selected);
        const QSignalSpy seconds(&second, &widgets::OptionButton::selected);
        check.setChecked(true);
        check.setChecked(true);
        check.click();
        QCOMPARE(changes.size(), 2);
        first.setChecked(true);
        second.click();
        second.click();
        QVERIFY(firsts.size() == 1 && seconds.size() == 1 && !first.isChecked());
        first.resize(400, 20);
        check.resize(400, 20);
        QTest::mouseClick(&first, Qt::LeftButton); // far from the little text
        QTest::mouseClick(&check, Qt::LeftButton);
        QVERIFY(firsts.size() == 2 && changes.size() == 3);
        group.show();
        group.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&group));
        second.click();
        check.setFocus();
        QTest::keyClick(&check, Qt::Key_Tab);
        QVERIFY(second.hasFocus()); // not the first of the group, but the set one
    }

    void calendarDays()
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
        QTest::keyClicks(calendar.findChild<QTableView*>(), "10"); // typed digits choose no day
        QTest::keyClick(calendar.findChild<QTableView*>(), Qt::Key_Return);
        QCOMPARE(calendar.value(), QDate(2023, 2, 28));
    }

    void dataControl()
    {
        widgets::DataControl control;
        control.setRecordSource("Nothing");
        QCOMPARE(test::failureNumber([&] { control.refresh(); }), 91);
        const QTemporaryDir folder;
        auto database = store::DBEngine::createDatabase(folder.filePath("x.mdb"));
        control.setDatabase([&database]() -> store::Database& { return database; });
        QCOMPARE(test::failureNumber([&] { control.refresh(); }), 3078);
        QCOMPARE(control.recordset(), nullptr);
    }
};

ORLO_TEST(tst_controls)

#include "tst_controls.moc"
