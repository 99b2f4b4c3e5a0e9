#include "store/engine/Database.h"
#include "support/Failure.h"
#include "support/Main.h"
#include "support/Table.h"
#include "support/TestApp.h"
#include "widgets/Calendar.h"
#include "widgets/CheckBox.h"
#include "widgets/ComboBox.h"
#include "widgets/DataControl.h"
#include "widgets/Form.h"
#include "widgets/ListBox.h"
#include "widgets/MessageBox.h"
#include "widgets/OptionButton.h"
#include "widgets/TextBox.h"
#include "widgets/TextGrid.h"

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

void turnWheel(QWidget& under)
{
    const QPointF at = under.rect().center();
    QWheelEvent turn(at, under.mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&under, &turn);
}

// A key as it comes while it is held down.
void repeatKey(QWidget& to, Qt::Key key, const QString& text = {})
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text, true);
    QApplication::sendEvent(&to, &press);
}

// A form whose field takes "good" and nothing else. Enter presses Save, Escape Delete.
struct CheckedForm : widgets::Form {
    QLineEdit field{this}, other{this};
    ListBox list{this};
    QPushButton save{"&Save", this}, remove{"&Delete", this};
    QStringList done; ///< buttons that were pressed, "?" for each time that the check refused

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
        for (QWidget* control :
             {static_cast<QWidget*>(&field), static_cast<QWidget*>(&other), static_cast<QWidget*>(&list),
              static_cast<QWidget*>(&save), static_cast<QWidget*>(&remove)})
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
        const std::unique_ptr<ComboBox> made(steps.startsWith("free") ? new EditableComboBox : new ComboBox);
        ComboBox& box = *made;
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
                box.removeAll();
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
            box.removeAll();
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

    // Nothing is told, and a box out of reach opens no list, which would hold all keys.
    void comboRefilled()
    {
        ComboBox list;
        EditableComboBox free;
        for (ComboBox* each : {&list, static_cast<ComboBox*>(&free)}) {
            ComboBox& box = *each;
            QSignalSpy clicks(&box, &ComboBox::clicked);
            QSignalSpy changes(&box, &ComboBox::textChange);
            box.refill({"Bear", "Wolf"}, 1);
            QCOMPARE(box.text(), "Wolf");
            box.refill({"Wolves", "Lion"}, 0);
            QCOMPARE(box.text(), "Wolves");
            box.refill({"Lion"}, -1);
            QCOMPARE(box.text(), box.isEditable() ? "Wolves" : "");
            QCOMPARE(box.listIndex(), -1);
            QVERIFY(clicks.isEmpty() && changes.isEmpty());
        }
        list.show();
        connect(&list, &ComboBox::dropDown, &list, [&list] { list.setEnabled(false); });
        list.showPopup();
        QVERIFY(!list.view()->isVisible());
    }

    // The wheel changes the control that has the focus, from the row that it shows, and moves no focus.
    void wheel()
    {
        QWidget form;
        QLineEdit text(&form);
        EditableComboBox box(&form);
        QSpinBox number(&form);
        ListBox list(&form);
        fill(box);
        box.setListIndex(2);
        box.setText("Wolf");
        box.lineEdit()->setText("Bear");
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        text.setFocus();
        for (QWidget* under : std::initializer_list<QWidget*>{&box, box.lineEdit(), &number, list.viewport()})
            turnWheel(*under);
        QVERIFY(box.text() == "Bear" && number.value() == 0);
        for (const QWidget* control : std::initializer_list<QWidget*>{&box, &number, &list})
            QVERIFY(!(control->focusPolicy() & Qt::WheelFocus & ~Qt::StrongFocus));
        box.setFocus();
        turnWheel(box);
        QCOMPARE(box.listIndex(), 2);
    }

    // Words are keys, controls to click and texts of the field; "away" gives the focus to another window and back.
    void leaveCheck_data()
    {
        test::table({"script", "done"}, R"(
            good Enter            | save
            bad Enter             | ?
            bad Escape            | delete
            bad save              | ?
            bad Tab               | ?
            bad list              | ?
            good save bad2 save   | save save
            bad away save         | ?
            bad away other Enter  | ? ?
            bad code              | ?
            bad close             |
        )");
    }
    void leaveCheck()
    {
        QFETCH(QString, script);
        CheckedForm form;
        for (const QString& word : script.split(' ')) {
            const QMap<QString, Qt::Key> keys{
                {"Enter", Qt::Key_Return}, {"Escape", Qt::Key_Escape}, {"Tab", Qt::Key_Tab}};
            const QMap<QString, QWidget*> controls{
                {"save", &form.save}, {"list", form.list.viewport()}, {"other", &form.other}};
            if (keys.contains(word))
                QTest::keyClick(form.focusWidget(), keys[word]);
            else if (controls.contains(word))
                QTest::mouseClick(controls[word], Qt::LeftButton);
            else if (word == "away") {
                QWidget elsewhere;
                elsewhere.show();
                QVERIFY(QTest::qWaitForWindowActive(&elsewhere));
                form.activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(&form));
            } else if (word == "code") {
                form.other.setFocus();
                QTRY_VERIFY(form.field.hasFocus());
            } else if (word == "close") {
                form.close();
                QTest::qWait(1);
            } else {
                form.field.setFocus();
                form.field.setText(word == "bad2" ? "good" : word);
            }
        }
        QTEST(form.done.join(' '), "done");
        if (form.done.contains("?"))
            QVERIFY(form.field.hasFocus());
    }

    // However long Enter, Escape or an access key is held, it presses a button once; a text takes it as often.
    void heldKeys()
    {
        CheckedForm form;
        form.field.setText("good");
        QTest::keyClick(&form.field, Qt::Key_Escape);
        repeatKey(form.field, Qt::Key_Escape);
        QTest::keyClick(&form, Qt::Key_D, Qt::AltModifier);
        QTRY_COMPARE(form.done.join(' '), "delete delete");
        QKeyEvent comes(QEvent::ShortcutOverride, Qt::Key_D, Qt::AltModifier, "d", true);
        QApplication::sendEvent(&form.remove, &comes);
        QShortcutEvent again(QKeySequence("Alt+D"), 0);
        QApplication::sendEvent(&form.remove, &again);
        QTest::qWait(150); // an access key's press takes its time to show
        form.save.setFocus();
        repeatKey(form.save, Qt::Key_Return, "\r");
        QCOMPARE(form.done.join(' '), "delete delete");
        QPlainTextEdit note;
        repeatKey(note, Qt::Key_Return, "\r");
        QCOMPARE(note.toPlainText(), "\n");
    }

    // What a question presets, and what Escape and the close box do where both answers lose something.
    void questions_data()
    {
        test::table({"question", "Enter", "Escape"}, R"(
            preset Yes | yes | no
            preset No  | no  | no
            must choose | yes | stays)");
    }
    void questions()
    {
        QFETCH(QString, question);
        for (const char* key : {"Enter", "Escape"}) {
            bool stays = false;
            QTimer timer;
            connect(&timer, &QTimer::timeout, this, [&] {
                auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                if (!box)
                    return;
                timer.stop();
                repeatKey(*box->defaultButton(), Qt::Key_Return, "\r"); // held since before the question
                QVERIFY(box->isVisible());
                QTest::keyClick(box->focusWidget(), *key == 'E' && key[1] == 'n' ? Qt::Key_Return : Qt::Key_Escape);
                if (box->isVisible())
                    box->close();
                stays = box->isVisible();
                if (stays)
                    box->button(QMessageBox::No)->click();
            });
            timer.start(5);
            const bool yes =
                widgets::ask("Really", "Title", question.contains("No") ? widgets::Preset::No : widgets::Preset::Yes,
                             question.contains("must") ? widgets::OnEscape::DoesNothing : widgets::OnEscape::IsNo);
            QTEST(QString(stays ? "stays" : yes ? "yes" : "no"), key);
        }
    }

    // The box takes five characters.
    void pastedText_data()
    {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("taken");
        QTest::newRow("line end") << "Ann\r\n"
                                  << "Ann";
        QTest::newRow("lines") << "\nA\r\nB"
                               << "A B";
        QTest::newRow("NUL") << QString("A") + QChar(0) + "B"
                             << "AB";
        QTest::newRow("emoji") << QString::fromUtf8("Ab\xF0\x9F\x90\xBA!") << QString::fromUtf8("Ab\xF0\x9F\x90\xBA!");
        QTest::newRow("half of one") << QString::fromUtf8("Abcd\xF0\x9F\x90\xBA") << "Abcd";
    }
    void pastedText()
    {
        QFETCH(QString, pasted);
        QLineEdit box;
        box.setMaxLength(5);
        box.show();
        QApplication::clipboard()->setText(pasted);
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
        QTEST(box.text(), "taken");
    }

    // A fill shows the beginning, and what another record held can't be brought back; a cut text shows under the mouse.
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

    // Whoever has the focus looks different, frame and marked row.
    void focusShows()
    {
        QWidget form;
        QLineEdit text(&form);
        ListBox list(&form);
        widgets::TextGrid grid(&form);
        QPlainTextEdit note(&form);
        fill(list);
        list.setListIndex(1);
        grid.setCols(2);
        grid.addRow();
        grid.setRow(1);
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        text.setFocus();
        const QList<QWidget*> views{&list, &grid, &note};
        QList<QImage> without;
        for (QWidget* view : views) {
            view->resize(200, 100);
            without += view->grab().toImage();
        }
        for (int i = 0; i < 3; ++i) {
            views[i]->setFocus();
            const QImage with = views[i]->grab().toImage();
            QVERIFY(with.pixel(0, 9) != without[i].pixel(0, 9));
            if (auto* rows = qobject_cast<QAbstractItemView*>(views[i])) {
                const QRect row = rows->visualRect(rows->currentIndex());
                const QPoint marked = rows->viewport()->mapTo(rows, row.topRight() - QPoint(9, -3));
                QVERIFY(with.pixel(marked) != without[i].pixel(marked));
            }
        }
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
        box.removeItem(0); // the current one: no other takes its place
        QCOMPARE(box.listIndex(), -1);
        QVERIFY(!box.selected(0));
        box.addItem("Lion");
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
        QPushButton undo;
        const auto nested = connect(&check, &widgets::CheckBox::changed, &undo, [&] { check.setChecked(false); });
        check.setChecked(false);
        check.click(); // a handler takes the click back, and the next click counts again
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

        auto& year = *calendar.findChild<QSpinBox*>();
        calendar.findChild<QToolButton*>("qt_calendar_yearbutton")->click();
        year.selectAll();
        QTest::keyClicks(&year, "2019");
        QTest::keyClick(&year, Qt::Key_Return);
        QCOMPARE(calendar.yearShown(), 2019);
        calendar.setValue(QDate(2023, 2, 28)); // a Tuesday, and the last row ends with days of March
        QSignalSpy taken(&calendar, &widgets::Calendar::doubleClicked);
        auto& days = *calendar.findChild<QTableView*>();
        const QPoint grey = days.visualRect(days.model()->index(6, 6)).center();
        QTest::mouseClick(days.viewport(), Qt::LeftButton, {}, grey);
        QTest::mouseDClick(days.viewport(), Qt::LeftButton, {}, grey);
        QCOMPARE(taken.size(), 1);
        QCOMPARE(calendar.value().month(), 3);
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
