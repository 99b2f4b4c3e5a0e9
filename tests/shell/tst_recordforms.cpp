#include "scouts/frmScouts.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/ComboBox.h"

#include <QLineEdit>
#include <QTabWidget>

using namespace orlo;

// What all list forms do, on the scouts' form.
class tst_recordforms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Digits click rows of the list, "-" makes the scout inactive; the box is asked about unsaved changes or deleting.
    // State: the label and the buttons, with find and those for awards, whether tabs and first name are enabled, the
    // last name, the list and its highlighted row, "!" for the focus in the first name.
    void listForm_data()
    {
        test::table({"script", "people", "state", "stored"}, R"(
                                    | 0 | ....n.. ... ..///0                                   |
            N                       | 3 | Scout 2 of 3 FPNLn.d faD tx/B/A; B; C/2!             | C B A
            L P                     | 3 | Scout 2 of 3 FPNLn.d faD tx/B/A; B; C/2!             | C B A
            3 P 1 N                 | 3 | Scout 2 of 3 FPNLn.d faD tx/B/A; B; C/2!             | C B A
            Last=X yes 3            | 3 | Scout 3 of 3 FP..n.d faD tx/C/A; B; C/3              | C B X
            Last=X yes 1            | 3 | Scout 1 of 3 ..NLn.d faD tx/X/A; B; C/1              | C B X
            Last=X no 2             | 3 | Scout 2 of 3 FPNLn.d faD tx/B/A; B; C/2              | C B A
            N Last=X s              | 3 | Scout 2 of 3 FPNLn.d faD tx/X/A; B; C/2!             | C X A
            N page n                | 3 | Scout (New) FPNL.s. ... tx//A; B; C/2!               | C B A
            N n Last=X s            | 3 | Scout 4 of 4 FP..n.d faD tx/X/A; B; C; <New>X /4!    | C B A X
            n Last=X s P 4 Last=Y s | 3 | Scout 4 of 4 FP..n.d faD tx/Y/A; B; C; <New>X /4!    | C B A Y
            n Last=X yes 1          | 3 | Scout 4 of 4 FP..n.d faD tx/X/A; B; C; <New>X /4     | C B A X
            n Last=X yes optActive_Inactive | 3 | Scout 1 of 4 ..NLn.d faD tx/A/A; B; C; X/1   | C B A X
            n Last=X no optActive_Inactive  | 3 | Scout 1 of 3 ..NLn.d faD tx/A/A; B; C/1      | C B A
            n Last=X s              | 0 | Scout 1 of 1 ....n.d faD tx/X/X/1!                   | X
            n Last=X - s            | 0 | None ....n.. ... ..///0                              | X
            N n Last=X c            | 3 | Scout 2 of 3 FPNLn.d faD tx/B/A; B; C/2              | C B A
            N Last=X c              | 3 | Scout 2 of 3 FPNLn.d faD tx/X/A; B; C/2              | C B A
            N Last=X c N P          | 3 | Scout 2 of 3 FPNLn.d faD tx/B/A; B; C/2!             | C B A
            n c                     | 0 | Scout (New) ....n.d faD t.///0                       |
            n c yes d               | 0 | Scout (New) ....n.d faD t.///0                       |
            yes d                   | 3 | Scout 1 of 2 ..NLn.d faD tx/B/B; C/1!                | C B
            N yes d                 | 3 | Scout 2 of 2 FP..n.d faD tx/C/A; C/2!                | C A
            L yes d                 | 3 | Scout 2 of 2 FP..n.d faD tx/B/A; B/2!                | B A
            L no d                  | 3 | Scout 3 of 3 FP..n.d faD tx/C/A; B; C/3              | C B A
            yes d n Last=X s        | 1 | Scout 1 of 1 ....n.d faD tx/X/X/1!                   | X
        )");
    }
    void listForm()
    {
        QFETCH(QString, people);
        QFETCH(QString, script);
        const test::AppFolder folder;
        test::fill("Insert Into Dens (Den_SID, Den_Number, Den_Type, Active) Values (1, 1, 'Wolf', 'Y');"
                   "With k(i) As (Values(1), (2), (3)) Insert Into Scouts (Scout_SID, Last_Name, Active) "
                   "Select i, char(65 + " +
                   people + " - i), 'Y' From k Limit " + people);
        const test::RecordScreen<frmScouts> screen;
        auto& list = screen.get<widgets::ListBox>("lbScouts");
        auto& tabs = screen.get<QTabWidget>("tabScout");
        list.setFocus();
        screen.run(script, [&](const QString& word) {
            if (word == "page")
                tabs.setCurrentIndex(1);
            else if (word == "-")
                screen.get<widgets::ComboBox>("comActive").setText("No");
            else if (word.startsWith("opt"))
                screen.click(word.toUtf8().constData());
            else
                test::clickRow(list, word.toInt() - 1);
        });
        const QString state = screen.state() + ' ' +
                              screen.enabled("faD", {"cmdFind", "cmdAddAward", "cmdDeleteAward"}) + ' ' +
                              screen.enabled("tx", {"tabScout", "txtFirst"}) + '/' +
                              screen.get<QLineEdit>("txtLast").text() + '/' + test::textsOf(list).remove(", ") + '/' +
                              QString::number(list.selectionModel()->selectedRows().value(0).row() + 1) +
                              (screen.form.focusWidget() == &screen.get("txtFirst") ? "!" : "");
        QTEST(state.trimmed(), "state");
        QTEST(test::rows("Select Last_Name From Scouts Order by Scout_SID").remove(','), "stored");
        QCOMPARE(tabs.currentIndex(), 0);
    }

    // What a new record's boxes held before is the former record's, and no undoing brings it back.
    void undoInNewRecord()
    {
        const test::AppFolder folder;
        test::fill("Insert Into Dens (Den_SID, Den_Number, Den_Type, Active) Values (1, 1, 'Wolf', 'Y');"
                   "Insert Into Scouts (Scout_SID, First_Name, Last_Name, Active) Values (1, 'Al', 'Berg', 'Y')");
        const test::RecordScreen<frmScouts> screen;
        screen.run("n");
        for (QLineEdit* box : screen.form.findChildren<QLineEdit*>()) {
            const QString text = box->text();
            box->undo();
            QCOMPARE(box->text(), text);
        }
    }

    // On another page the focus goes to what shows there: keys that follow change nothing unseen.
    void focusOnPages_data() { test::table({"button"}, "F\nP\nN\nL\ns"); }
    void focusOnPages()
    {
        QFETCH(QString, button);
        const test::AppFolder folder;
        test::fill("Insert Into Dens (Den_SID, Den_Number, Den_Type, Active) Values (1, 1, 'Wolf', 'Y');"
                   "With k(i) As (Values(1), (2), (3)) Insert Into Scouts (Scout_SID, First_Name, Active) "
                   "Select i, 'Al', 'Y' From k");
        const test::RecordScreen<frmScouts> screen;
        for (const int page : {1, 2}) {
            screen.run("N");
            screen.get<QTabWidget>("tabScout").setCurrentIndex(page);
            screen.get("cmdSave").setEnabled(true);
            if (button != "s")
                test::answerNext(QMessageBox::No);
            screen.run(button);
            QVERIFY(screen.form.focusWidget()->isVisible());
            QTest::keyClicks(screen.form.focusWidget(), "x");
            QCOMPARE(screen.get<QLineEdit>("txtFirst").text(), "Al");
            screen.get<QTabWidget>("tabScout").setCurrentIndex(0);
        }
    }
};

ORLO_TEST(tst_recordforms)

#include "tst_recordforms.moc"
