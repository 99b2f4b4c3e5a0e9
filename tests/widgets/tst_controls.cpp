#include "store/engine/Database.h"
#include "support/Failure.h"
#include "support/Main.h"
#include "support/Table.h"
#include "widgets/Calendar.h"
#include "widgets/CheckBox.h"
#include "widgets/ComboBox.h"
#include "widgets/DataControl.h"
#include "widgets/Form.h"
#include "widgets/ListBox.h"
#include "widgets/OptionButton.h"
#include "widgets/TextBox.h"

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

using namespace orlo;
using widgets::ComboBox;
using widgets::EditableComboBox;
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

// A form whose field accepts only "good". Enter presses Save, Escape Delete.
struct CheckedForm : widgets::Form {
    QLineEdit field{this}, other{this};
    ListBox list{this};
    QPushButton save{"&Save", this}, remove{"&Delete", this};
    QStringList done; // buttons that were pressed, "?" for each time that the check refused

    CheckedForm() : Form(widgets::FormKind::Window)
    {
        setAttribute(Qt::WA_DeleteOnClose, false);
        setDefaultButton(&save);
        setCancelButton(&remove);
        setLeaveCheck(&field, [this] {
            const bool good = field.text() == "good";
            done += good ? QStringList() : QStringList("?");
            return good;
        });
        int top = 0;
        for (auto* control : findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            control->setGeometry(0, std::exchange(top, top + 30), 90, 28);
        connect(&save, &QPushButton::clicked, this, [this] { done += "save"; });
        connect(&remove, &QPushButton::clicked, this, [this] { done += "delete"; });
        showForm();
        activateWindow();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("the form doesn't become active");
        field.setFocus();
    }
};

} // namespace

class tst_controls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Steps: the number of a row that the code sets, what the user does with row 1 or types, or a key; "refilling" and
    // "off" are done when the list opens. The result also has failures by their numbers.
    void comboTells_data() { test::tableOf("widgets/controls_comboTells.txt"); }
    void comboTells()
    {
        QFETCH(QString, steps);
        QStringList told;
        const std::unique_ptr<ComboBox> made(steps.startsWith("free") ? new EditableComboBox : new ComboBox);
        ComboBox& box = *made;
        fill(box);
        box.show();
        connect(&box, &ComboBox::textChange, &box, [&] { told += "text:" + box.text(); });
        connect(&box, &ComboBox::clicked, &box, [&] { told += "click:" + box.text(); });
        connect(&box, &ComboBox::dropDown, &box, [&] {
            told += "drop";
            if (steps.contains("refilling")) {
                box.removeAll();
                fill(box);
            }
            box.setDisabled(steps.contains("off"));
        });
        const QMap<QString, std::function<void()>> does{{"set", [&] { box.setText("Bear"); }},
                                                        {"type", [&] { QTest::keyClicks(box.lineEdit(), "Be"); }},
                                                        {"open", [&] { box.showPopup(); }},
                                                        {"pick", [&] { pick(box, 1); }},
                                                        {"clear", [&] { box.removeAll(); }},
                                                        {"refill", [&] { box.refill({"Lion"}, -1); }},
                                                        {"refill0", [&] { box.refill({"Wolves"}, 0); }},
                                                        {"off", [] {}},
                                                        {"refilling", [] {}},
                                                        {"Return", [&] { QTest::keyClick(&box, Qt::Key_Return); }},
                                                        {"Down", [&] { QTest::keyClick(&box, Qt::Key_Down); }}};
        for (const QString& step : steps.split(u' ').mid(1))
            if (const int number = test::failureNumber(does.value(step, [&] { box.setListIndex(step.toInt()); })))
                told += QString::number(number);
        QVERIFY(box.isEnabled() || !box.view()->isVisible()); // an open list would take all keys
        QTEST(QStringLiteral("%1, row %2 %3").arg(told.join(u' ')).arg(box.listIndex()).arg(box.text()).trimmed(),
              "told");
    }

    // Words are keys, controls to click and texts of the field; "away" gives the focus to another window and back.
    void leaveCheck_data() { test::tableOf("widgets/controls_leaveCheck.txt"); }
    void leaveCheck()
    {
        QFETCH(QString, script);
        CheckedForm form;
        const QMap<QString, Qt::Key> keys{{"Enter", Qt::Key_Return}, {"Escape", Qt::Key_Escape}};
        const QMap<QString, QWidget*> controls{
            {"save", &form.save}, {"list", form.list.viewport()}, {"other", &form.other}};
        for (const QString& word : script.split(' ')) {
            if (keys.contains(word))
                QTest::keyClick(form.focusWidget(), keys[word]);
            else if (controls.contains(word))
                QTest::mouseClick(controls[word], Qt::LeftButton);
            else if (word == "reader") { // a press by an assistive program arrives with the next event
                auto* save = QAccessible::queryAccessibleInterface(&form.save)->actionInterface();
                QVERIFY(save->actionNames().contains(QAccessibleActionInterface::pressAction()));
                save->doAction(QAccessibleActionInterface::pressAction());
                QCoreApplication::processEvents();
            } else if (word == "away") {
                QWidget elsewhere;
                elsewhere.show();
                QVERIFY(QTest::qWaitForWindowActive(&elsewhere));
                form.activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(&form));
            } else if (word == "code") {
                form.other.setFocus();
                QTRY_VERIFY(form.field.hasFocus());
            } else {
                form.field.setFocus();
                form.field.setText(word == "bad2" ? "good" : word);
            }
        }
        QTEST(form.done.join(' '), "done");
        if (form.done.contains("?"))
            QVERIFY(form.field.hasFocus());
    }

    void heldShortcutWorksOnce()
    {
        CheckedForm form;
        const QSignalSpy worked(form.addAction("command", Qt::CTRL | Qt::Key_K), &QAction::triggered);
        for (const bool repeats : {false, true, true})
            QTest::simulateEvent(&form.field, true, Qt::Key_K, Qt::ControlModifier, QString(), repeats);
        QCOMPARE(worked.size(), 1);
    }

    // Centred on an owner in a corner of the screen, a form stays on the screen.
    void staysOnTheScreen()
    {
        QWidget owner;
        widgets::setMainWindow(&owner, {});
        const QRect screen = owner.screen()->availableGeometry();
        for (const QPoint corner : {screen.topLeft(), screen.bottomRight()}) {
            owner.setGeometry(QRect(corner, QSize(1, 1)));
            const CheckedForm form;
            QVERIFY(screen.contains(QRect(form.pos(), form.size())));
        }
        widgets::setMainWindow(nullptr, {});
    }

    // The box takes five characters.
    void pastedText_data() { test::tableOf("widgets/controls_pastedText.txt"); }
    void pastedText()
    {
        QFETCH(QString, pasted);
        pasted.replace("\\r", "\r").replace("\\0", QChar(0));
        QLineEdit box;
        box.setMaxLength(5);
        box.show();
        QApplication::clipboard()->setText(pasted);
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
        QTEST(box.text(), "taken");
    }

    // A fill shows the beginning, and undo can't bring back another record's text; the whole of a cut text shows under
    // the mouse.
    void fills()
    {
        QLineEdit box;
        const QString text(90, 'x');
        box.show();
        QTest::keyClicks(&box, "other");
        box.selectAll();
        QTest::keyClicks(&box, text);
        widgets::fillBox(box, text);
        box.undo();
        QCOMPARE(box.text(), text);
        QCOMPARE(box.cursorPosition(), 0);
        QHelpEvent help(QEvent::ToolTip, {5, 5}, box.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&box, &help);
        QVERIFY(QToolTip::text().contains(text));
        QToolTip::hideText();
        QTRY_VERIFY(!QToolTip::isVisible());
        widgets::fillBox(box, "short");
        QApplication::sendEvent(&box, &help);
        QVERIFY(!QToolTip::isVisible());
    }

    void listBox()
    {
        ListBox box;
        QSignalSpy clicks(&box, &ListBox::clicked);
        fill(box);
        box.show();
        QVERIFY(QTest::qWaitForWindowActive(&box));
        box.setFocus(Qt::TabFocusReason); // moving past it with Tab selects nothing
        QCOMPARE(box.listIndex(), -1);
        box.setListIndex(1);
        box.setListIndex(1);
        box.removeItem(0);
        QCOMPARE(box.listIndex(), 0);
        box.removeItem(0); // the current one: no other replaces it
        QCOMPARE(box.listIndex(), -1);
        QVERIFY(!box.selected(0));
        box.addItem("Lion");
        box.addItem("the very longest of all the rows");
        QVERIFY(box.sizeHintForColumn(0) > box.fontMetrics().horizontalAdvance("the very longest of all the rows"));
        box.removeItem(2);
        box.setListIndex(0);
        QTest::keyClick(&box, Qt::Key_Space, Qt::ControlModifier); // other lists would lose the highlight
        QVERIFY(box.selected(0));
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier, QString(), true); // goes on; it presses nothing
        QCoreApplication::sendEvent(&box, &held);
        QCOMPARE(box.listIndex(), 1);
        QCOMPARE(test::failureNumber([&] { box.setListIndex(2); }), 5);
        QCOMPARE(test::failureNumber([&] { box.removeItem(-1); }), 5);
        QCOMPARE(test::failureNumber([&] { return box.selected(2); }), 5);
        box.setSelectionMode(QAbstractItemView::MultiSelection);
        box.setSelected(0, true);
        box.setSelected(1, true);
        QVERIFY(box.selected(0) && box.selected(1));
        box.clear();
        QCOMPARE(clicks.size(), 3);
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
        QPushButton undo;
        const auto nested = connect(&check, &widgets::CheckBox::changed, &undo, [&] { check.setChecked(false); });
        check.setChecked(false);
        check.click(); // a handler undoes the click, and the next click counts again
        check.click();
        QCOMPARE(changes.size(), 6);
        disconnect(nested);
        first.setChecked(true);
        second.click();
        second.click();
        QVERIFY(firsts.size() == 1 && seconds.size() == 1 && !first.isChecked());
        first.resize(400, 20);
        check.resize(400, 20);
        QTest::mouseClick(&first, Qt::LeftButton); // far from the little text
        QTest::mouseClick(&check, Qt::LeftButton);
        QVERIFY(firsts.size() == 2 && changes.size() == 7);
        group.show();
        group.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&group));
        second.click();
        check.setFocus();
        QTest::keyClick(&check, Qt::Key_Tab);
        QVERIFY(second.hasFocus()); // the set one, not the first of the group
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
        QTest::keyClicks(calendar.findChild<QTableView*>(), "10"); // typed digits select no day
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
