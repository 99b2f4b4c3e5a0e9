#include "scouts/frmScouts.h"
#include "support/Main.h"
#include "support/Pack.h"
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
    // What else of the page is live, the last name, the list's rows and the highlighted one, the focus, the last names.
    void listForm_data()
    {
        test::table({"case", "people", "script", "label", "live", "page", "name", "listed", "row", "focus", "stored"},
                    R"(
            nobody                                      | 0 |                                 |              | New                                 | none                                        |   |                  | 0 |       |
            Next                                        | 3 | N                               | Scout 2 of 3 | First Previous Next Last New Delete | all                                         | B | A; B; C          | 2 | first | C B A
            Last and Prev                               | 3 | L P                             | Scout 2 of 3 | First Previous Next Last New Delete | all                                         | B | A; B; C          | 2 | first | C B A
            a click, then Prev and Next                 | 3 | 3 P 1 N                         | Scout 2 of 3 | First Previous Next Last New Delete | all                                         | B | A; B; C          | 2 | first | C B A
            a click on a row asks and saves             | 3 | Last=X yes 3                    | Scout 3 of 3 | First Previous New Delete           | all                                         | C | A; B; C          | 3 |       | C B X
            the row on screen itself too                | 3 | Last=X yes 1                    | Scout 1 of 3 | Next Last New Delete                | all                                         | X | A; B; C          | 1 |       | C B X
            No drops the change                         | 3 | Last=X no 2                     | Scout 2 of 3 | First Previous Next Last New Delete | all                                         | B | A; B; C          | 2 |       | C B A
            Save keeps the place                        | 3 | N Last=X s                      | Scout 2 of 3 | First Previous Next Last New Delete | all                                         | X | A; B; C          | 2 | first | C X A
            New empties the screen from any page        | 3 | N page n                        | Scout (New)  | First Previous Next Last Save       | tabScout txtFirst                           |   | A; B; C          | 2 | first | C B A
            a new one is saved at the end               | 3 | N n Last=X s                    | Scout 4 of 4 | First Previous New Delete           | all                                         | X | A; B; C; <New>X  | 4 | first | C B A X
            and saved again it is the same one          | 3 | n Last=X s P 4 Last=Y s         | Scout 4 of 4 | First Previous New Delete           | all                                         | Y | A; B; C; <New>X  | 4 | first | C B A Y
            a row after a new one saves it and stays    | 3 | n Last=X yes 1                  | Scout 4 of 4 | First Previous New Delete           | all                                         | X | A; B; C; <New>X  | 4 |       | C B A X
            a view saves it and begins anew             | 3 | n Last=X yes optActive_Inactive | Scout 1 of 4 | Next Last New Delete                | all                                         | A | A; B; C; X       | 1 |       | C B A X
            a view drops it                             | 3 | n Last=X no optActive_Inactive  | Scout 1 of 3 | Next Last New Delete                | all                                         | A | A; B; C          | 1 |       | C B A
            the first of all                            | 0 | n Last=X s                      | Scout 1 of 1 | New Delete                          | all                                         | X | X                | 1 | first | X
            the first of all, inactive                  | 0 | n Last=X - s                    | None         | New                                 | none                                        |   |                  | 0 |       | X
            Cancel of a new one shows the record before | 3 | N n Last=X c                    | Scout 2 of 3 | First Previous Next Last New Delete | all                                         | B | A; B; C          | 2 |       | C B A
            Cancel leaves a change                      | 3 | N Last=X c                      | Scout 2 of 3 | First Previous Next Last New Delete | all                                         | X | A; B; C          | 2 |       | C B A
            a walk drops it then                        | 3 | N Last=X c N P                  | Scout 2 of 3 | First Previous Next Last New Delete | all                                         | B | A; B; C          | 2 | first | C B A
            nobody, a new one cancelled                 | 0 | n c                             | Scout (New)  | New Delete                          | cmdFind cmdAddAward cmdDeleteAward tabScout |   |                  | 0 |       |
            which Delete leaves                         | 0 | n c yes d                       | Scout (New)  | New Delete                          | cmdFind cmdAddAward cmdDeleteAward tabScout |   |                  | 0 |       |
            Delete of the first                         | 3 | yes d                           | Scout 1 of 2 | Next Last New Delete                | all                                         | B | B; C             | 1 | first | C B
            of one in the middle                        | 3 | N yes d                         | Scout 2 of 2 | First Previous New Delete           | all                                         | C | A; C             | 2 | first | C A
            of the last                                 | 3 | L yes d                         | Scout 2 of 2 | First Previous New Delete           | all                                         | B | A; B             | 2 | first | B A
            No keeps the record                         | 3 | L no d                          | Scout 3 of 3 | First Previous New Delete           | all                                         | C | A; B; C          | 3 |       | C B A
            a new one after the only one was deleted    | 1 | yes d n Last=X s                | Scout 1 of 1 | New Delete                          | all                                         | X | X                | 1 | first | X)");
    }
    void listForm()
    {
        const auto [people, script] = test::cells("people", "script");
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
        auto seen = screen.shown();
        seen.insert({{"page", screen.enabled({"cmdFind", "cmdAddAward", "cmdDeleteAward", "tabScout", "txtFirst"})},
                     {"name", screen.get<QLineEdit>("txtLast").text()},
                     {"listed", test::textsOf(list).remove(", ")},
                     {"row", QString::number(list.selectionModel()->selectedRows().value(0).row() + 1)},
                     {"focus", screen.form.focusWidget() == &screen.get("txtFirst") ? "first" : ""},
                     {"stored", test::rows("Select Last_Name From Scouts Order by Scout_SID").remove(',')}});
        test::compare(seen, {"label", "live", "page", "name", "listed", "row", "focus", "stored"});
        QCOMPARE(tabs.currentIndex(), 0);
    }

    // What a new record's boxes held before is the former record's, and no undoing brings it back.
    void undoInNewRecord()
    {
        const test::AppFolder folder;
        test::fill(test::Pack);
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
        test::fill(QString(test::Pack) + "Update Scouts Set First_Name = 'Al'");
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
