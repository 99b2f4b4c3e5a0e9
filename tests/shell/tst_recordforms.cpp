#include "adults/frmAdults.h"
#include "awards/frmInsigniaInfo.h"
#include "pack/frmDenInfo.h"
#include "pack/frmPackInformation.h"
#include "scouts/frmScouts.h"
#include "support/Main.h"
#include "support/Pack.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/ComboBox.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QToolTip>

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

    // What another program stored may be longer than its box, or not in its list: it stays until somebody changes it.
    // The other values are written as ever.
    void foreignValues_data()
    {
        test::table({"case", "form", "before", "script", "query", "result"}, R"(
            a scout's address, years and grade     | scouts | Scouts Set Alt_Parent_City = 'Llanfairpwllgwyngyllgogerychwyrn', Years_In_Scouts = 123, Years_In_Other_Pack = 2.5, Grade_In_School = 100 | L First=Al s s | Select Alt_Parent_City, Years_In_Scouts, Years_In_Other_Pack, Grade_In_School, First_Name From Scouts Where Scout_SID = 1 | Llanfairpwllgwyngyllgogerychwyrn/123/2.5/100/Al
            typed into                             | scouts | Scouts Set Alt_Parent_City = 'Llanfairpwllgwyngyllgogerychwyrn', Years_In_Scouts = 123 | L AltCity=Bala YearsInScouts=7 s | Select Alt_Parent_City, Years_In_Scouts From Scouts Where Scout_SID = 1 | Bala/7
            a new scout's grade is what shows      | scouts | Scouts Set Grade_In_School = 100 | n s | Select Grade_In_School From Scouts Where Scout_SID = 5 | 10
            an adult's years                       | adults | Adults Set Years_In_Scouts = 12.5 Where Adult_SID = 4 | Mi=B s | Select MI, Years_In_Scouts From Adults Where Adult_SID = 4 | B/12.5
            an adult's unlisted letter             | adults | Adults Set Active = 'X' | optActive_Inactive Mi=B s | Select MI, Active From Adults Where Adult_SID = 4 | B/X
            a den's number, renamed                | dens   | Dens Set Den_Number = 101, Year_Started = 20255 Where Den_SID = 1 | L DenName=New s | Select Den_Number, Den_Name, Year_Started From Dens Where Den_SID = 1 | 101/New/20255
            a den's number, typed                  | dens   | Dens Set Den_Number = 101 Where Den_SID = 1 | L DenNumber=7 s | Select Den_Number From Dens Where Den_SID = 1 | 7
            the same digits typed again            | dens   | Dens Set Den_Number = 101 Where Den_SID = 1 | L DenNumber=10 s | Select Den_Number From Dens Where Den_SID = 1 | 10
            a den's unlisted type isn't another's  | dens   | Dens Set Den_Type = 'Lion' Where Den_SID = 3 | N DenName=New ok s | Select Den_Name, Den_Type From Dens Where Den_SID = 3 | Pups/Lion
            an award's, with no option set         | awards | Insignias Set Insignia_Type = 'Badge' | InsigniaName=New s | Select Insignia_Name, Insignia_Type From Insignias Where Insignia_SID = 1 | New/Badge
            the pack's number                      | pack   | PackInfo Set [Pack Number] = 1234567 | PackName=New s s | Select * From PackInfo | 1234567/New)");
    }
    void foreignValues()
    {
        const auto [form, script] = test::cells("form", "script");
        const test::AppFolder folder;
        test::copyLayouts();
        test::fill(QString(test::Pack) + "Insert Into PackInfo Values (1, 'Old'); Update " + test::cell("before"));
        runOn(form, script);
        QTEST(test::rows(test::cell("query")), "result");
    }

    void foreignTextShows()
    {
        const test::AppFolder folder;
        test::fill(QString(test::Pack) + "Update Scouts Set First_Name = '<i>Al</i> & Bo', Alt_Parent_City = "
                                         "'Llanfairpwllgwyngyllgogerychwyrn'");
        const test::RecordScreen<frmScouts> screen;
        QCOMPARE(screen.get<QLabel>("lblScoutName").textFormat(), Qt::PlainText);
        auto& box = screen.get<QLineEdit>("txtAltCity");
        QHelpEvent event(QEvent::ToolTip, {5, 5}, box.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&box, &event);
        QCOMPARE(QToolTip::text(), "Llanfairpwllgwyngyllgogerychwyrn");
        QToolTip::hideText();
    }

    // A form that is closed under its own question is there until its handler has returned.
    void closedUnderItsQuestion_data()
    {
        test::table({"form", "script"}, R"(
            scouts | First=x N
            scouts | First=x optInactive
            scouts | d
            adults | First=x L
            dens   | DenName=x N
            awards | InsigniaName=x x
            pack   | PackName=x x)");
    }
    void closedUnderItsQuestion()
    {
        const test::AppFolder folder;
        test::copyLayouts();
        test::fill(QString(test::Pack) + "Insert Into PackInfo Values (1, 'Old')");
        bool closed = false;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            const QPointer<QDialog> box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            timer.stop();
            widgets::Form::unloadAll();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            closed = true;
            if (box)
                box->done(QMessageBox::No);
        });
        timer.start(5);
        runOn(test::cell("form"), test::cell("script"));
        QVERIFY(closed);
        QTRY_VERIFY(QApplication::topLevelWidgets().isEmpty()); // and is gone then
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

private:
    static void runOn(const QString& form, const QString& script)
    {
        const QMap<QString, std::function<void()>> forms{
            {"scouts", [&] { test::RecordScreen<frmScouts>().run(script); }},
            {"adults", [&] { test::RecordScreen<frmAdults>().run(script); }},
            {"dens", [&] { test::RecordScreen<frmDenInfo>().run(script); }},
            {"awards", [&] { test::RecordScreen<frmInsigniaInfo>().run(script); }},
            {"pack", [&] { test::RecordScreen<frmPackInformation>().run(script); }}};
        forms[form]();
    }
};

ORLO_TEST(tst_recordforms)

#include "tst_recordforms.moc"
