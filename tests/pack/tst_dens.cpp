#include "pack/dlgAddAdults.h"
#include "pack/dlgAddScouts.h"
#include "pack/frmDenInfo.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/ComboBox.h"

#include <QLineEdit>

using namespace orlo;
using test::rows;
using test::textsOf;

namespace
{

// Den 2 has two active scouts and leaders and an inactive one of each; one of the leaders leads den 3, too.
constexpr const char* People = R"(
Insert Into Scouts (Scout_SID, First_Name, MI, Last_Name, Active, Assigned_Den_SID) Values
    (1, ' Zeb ', 'Q', ' Berg ', 'Y', 2), (2, 'Abe', '', 'berg', 'Y', 2), (3, 'Ivo', Null, 'Idle', 'N', 2),
    (4, ' Max ', ' ', ' Free ', 'Y', Null), (5, 'Ian', Null, 'Free', 'N', Null), (6, 'Kim', 'O', 'Abel', 'Y', Null);
Insert Into Adults (Adult_SID, First_Name, MI, Last_Name, Active) Values
    (3, 'Ann', 'M', 'Young', 'Y'), (7, 'Bob', Null, 'Old', 'Y'), (8, 'Cid', '', 'Idle', 'N'), (9, 'Dot', 'X', 'Fay', 'Y');
Insert Into Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title) Values
    (3, 2, 'Leader'), (3, 3, Null), (7, 2, Null), (8, 2, Null))";

// The open form; its state goes on with Add and Del of scouts and leaders, and whether the fields are enabled.
struct Screen : test::RecordScreen<frmDenInfo> {
    widgets::ListBox& scouts = get<widgets::ListBox>("lstScouts");
    widgets::ListBox& adults = get<widgets::ListBox>("lstAdults");
    widgets::ComboBox& denType = get<widgets::ComboBox>("comDenType");

    [[nodiscard]] QString state() const
    {
        return RecordScreen::state() + ' ' +
               enabled("adAD", {"cmdAddScouts", "cmdDelScouts", "cmdAddDenLeader", "cmdDelDenLeader"}) + ' ' +
               enabled("fffff", {"txtDenNumber", "txtDenName", "comDenType", "txtYearStarted", "txtActive"});
    }
    [[nodiscard]] QString text(const char* box) const { return get<QLineEdit>(box).text(); }
    [[nodiscard]] QString fields() const
    {
        return text("txtDenNumber") + '/' + text("txtDenName") + '/' + denType.text() + '/' + text("txtYearStarted") +
               '/' + get<widgets::ComboBox>("txtActive").text();
    }
    // Opens a dialog for members by its button, selects there and presses; what it offered.
    template <class Dialog>
    QString choose(const char* button, const char* list, const QList<int>& chosen, const char* press) const
    {
        QString offered;
        test::whenShown<Dialog>([&](Dialog& dialog) {
            auto& people = test::control<widgets::ListBox>(dialog, list);
            offered = textsOf(people);
            for (const int row : chosen)
                test::clickRow(people, row, Qt::ControlModifier);
            QTest::mouseClick(&test::control<QPushButton>(dialog, press), Qt::LeftButton);
        });
        click(button);
        return offered;
    }
    QString chooseScouts(const QList<int>& chosen, const char* press = "cmdSelect") const
    {
        return choose<dlgAddScouts>("cmdAddScouts", "lstScouts", chosen, press);
    }
    QString chooseAdults(const QList<int>& chosen, const char* press = "cmdSelect") const
    {
        return choose<dlgAddAdults>("cmdAddDenLeader", "lstAdults", chosen, press);
    }
};

// Dens 1 to n, of which den 1 sorts last.
void addDens(const QString& n)
{
    test::fill("With Recursive k(i) As (Values(1) Union All Select i + 1 From k) Insert Into Dens Select i, "
               "CASE i WHEN 1 THEN 9 ELSE i END, 'N' || i, 'Wolf', 2024, 'Y' From k Limit " +
               n);
}

QString dens()
{
    return rows("Select * From Dens Order by Den_SID");
}

QString denOf()
{
    return rows("Select Scout_SID, Assigned_Den_SID From Scouts Where Assigned_Den_SID > 0 Order by Scout_SID");
}

QString leaders()
{
    return rows("Select Den_SID, Adult_SID, Den_Title From Leader_Den_Assignments Order by Den_SID, Adult_SID");
}

} // namespace

class tst_dens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<test::AppFolder>();
        platform::setToday(QDate(2026, 11, 24));
    }
    void cleanup() { m_folder.reset(); }

    void walk_data()
    {
        test::table({"name", "dens", "steps", "state", "number", "focus"}, R"(
            none          | 0 |     | None ....n.. adAD .....       |   |
            one           | 1 |     | Den 1 of 1 FP..n.d adAD fffff | 9 |
            bounces       | 1 | P   | Den 1 of 1 FP..n.d adAD fffff | 9 |
            one, first    | 1 | F   | Den 1 of 1 FP..n.d adAD fffff | 9 | yes
            three         | 3 |     | Den 1 of 3 ..NLn.d adAD fffff | 2 |
            next          | 3 | N   | Den 2 of 3 FPNLn.d adAD fffff | 3 | yes
            next to last  | 3 | NN  | Den 3 of 3 FP..n.d adAD fffff | 9 | yes
            previous      | 3 | LP  | Den 2 of 3 FPNLn.d adAD fffff | 3 | yes
            back to first | 3 | LPP | Den 1 of 3 ..NLn.d adAD fffff | 2 | yes
            last          | 3 | L   | Den 3 of 3 FP..n.d adAD fffff | 9 | yes
            first         | 3 | LF  | Den 1 of 3 ..NLn.d adAD fffff | 2 | yes)");
    }
    void walk()
    {
        QFETCH(QString, dens);
        QFETCH(QString, steps);
        addDens(dens);
        Screen screen;
        screen.form.setFocus();
        screen.walk(steps);
        QTEST(screen.state(), "state");
        QTEST(screen.text("txtDenNumber"), "number");
        QTEST(QString(screen.get("txtDenNumber").hasFocus() ? "yes" : ""), "focus");
    }

    void prompt_data()
    {
        test::table({"name", "button", "answer", "type", "state", "stored"}, R"(
            first, yes   | cmdFirst    | yes | Wolf | Den 1 of 3 ..NLn.d | New
            previous, no | cmdPrevious | no  | Wolf | Den 1 of 3 ..NLn.d | N3
            next, yes    | cmdNext     | yes | Wolf | Den 3 of 3 FP..n.d | New
            last, no     | cmdLast     | no  | Wolf | Den 3 of 3 FP..n.d | N3
            refused      | cmdNext     | yes |      | Den 3 of 3 FP..n.d | N3
            close, yes   | cmdExit     | yes | Wolf |                    | New
            close, no    | cmdExit     | no  | Wolf |                    | N3
            new drops    | cmdNew      |     | Wolf | Den (New) .....s.  | N3
            cancel drops | cmdCancel   |     | Wolf | Den 2 of 3 FPNLn.d | N3)");
    }
    void prompt()
    {
        QFETCH(QString, button);
        QFETCH(QString, answer);
        QFETCH(QString, type);
        QFETCH(QString, state);
        addDens("3");
        Screen screen;
        screen.walk("N");
        screen.type("txtDenName", "New");
        screen.denType.setText(type);
        auto told = std::make_shared<test::Told>();
        auto refused = told;
        if (!answer.isEmpty())
            told = test::answerNext(answer == "yes" ? QMessageBox::Yes : QMessageBox::No);
        if (type.isEmpty())
            refused = test::answerNext();
        screen.click(button.toUtf8().constData());
        if (!answer.isEmpty())
            QCOMPARE(told->title + ": " + told->text,
                     "Save Changes: Data Changes Not Saved.Do you want to save your changes");
        if (type.isEmpty())
            QCOMPARE(refused->title + ": " + refused->text,
                     "Save Error: A Den Type must be selected. Please select a Den type and Save again.");
        QTEST(rows("Select Den_Name From Dens Where Den_SID = 3"), "stored");
        QCOMPARE(widgets::Instance<frmDenInfo>::loaded() != nullptr, button != "cmdExit");
        if (!state.isEmpty())
            QCOMPARE(screen.RecordScreen::state(), state);
    }

    void newDen()
    {
        Screen screen;
        screen.click("cmdNew");
        QCOMPARE(screen.state() + screen.fields(), "Den (New) .....s. .... fffff// /2026/Y");
        QVERIFY(screen.get("txtDenNumber").hasFocus());
        screen.type("txtDenNumber", "7a");
        QTest::keyClick(&screen.get("txtDenNumber"), Qt::Key_Return);
        QCOMPARE(screen.state() + dens(), "Den 1 of 1 FP..n.d adAD fffff1|7|| |2026|Y");
        database().execute("Update Dens Set Den_SID = 41");
        widgets::Instance<frmDenInfo>::unload();

        Screen next;
        next.click("cmdNew");
        next.type("txtDenName", "O'Hara's");
        next.type("txtYearStarted", "x");
        next.type("txtActive", "");
        QTest::keyClick(&next.denType, Qt::Key_Home);
        next.click("cmdSave");
        // It stands last, whatever its number, and a further save is about it.
        QCOMPARE(next.state() + dens(), "Den 2 of 2 FP..n.d adAD fffff41|7|| |2026|Y, 42|0|O'Hara's|Tiger|0|");
        next.type("txtDenNumber", "-1");
        next.click("cmdSave");
        QCOMPARE(dens(), "41|7|| |2026|Y, 42|-1|O'Hara's|Tiger|0|");
    }

    void refusedNewDen()
    {
        addDens("1");
        Screen screen;
        screen.click("cmdNew");
        screen.denType.setListIndex(-1);
        test::answerNext();
        screen.click("cmdSave");
        QCOMPARE(screen.state(), "Den (New) ....n.d adAD fffff");
        QTest::keyClick(&screen.denType, Qt::Key_End);
        screen.click("cmdSave");
        QCOMPARE(screen.state() + dens(), "Den 2 of 2 FP..n.d adAD fffff1|9|N1|Wolf|2024|Y, 2|0|| |2026|Y");
    }

    void keysRunOut()
    {
        QCOMPARE(test::failureInChild("Insert Into Dens (Den_SID) Values (32767)", [] { Screen().click("cmdNew"); }),
                 "Run-time error '6':");
        QCOMPARE(test::count("Dens"), 1);
    }

    void cancel()
    {
        Screen empty;
        empty.click("cmdNew");
        empty.type("txtDenName", "Typed");
        empty.click("cmdCancel");
        QCOMPARE(empty.state() + empty.text("txtDenName"), "None ....n.d .... fffffTyped");
        empty.escape(); // there is nothing to delete, but the screen empties
        QCOMPARE(empty.state() + empty.text("txtDenName"), "None ....n.. .... .....");
        widgets::Instance<frmDenInfo>::unload();

        addDens("3");
        Screen screen;
        screen.click("cmdNew");
        screen.click("cmdCancel");
        QCOMPARE(screen.state() + screen.fields(), "Den 3 of 3 FP..n.d adAD fffff9/N1/Wolf/2024/Y");
        screen.walk("P");
        screen.type("txtYearStarted", "1999");
        QTest::keyClick(&screen.denType, Qt::Key_Home);
        screen.click("cmdCancel");
        QCOMPARE(screen.state() + screen.fields(), "Den 2 of 3 FPNLn.d adAD fffff3/N3/Wolf/2024/Y");
    }

    void escapeDeletes_data()
    {
        test::table({"name", "dens", "steps", "after", "state", "number", "left"}, R"(
            first of three    | 3 |   |   | Den 1 of 2 ..NLn.d adAD fffff | 3 | 1, 3
            middle            | 3 | N |   | Den 1 of 2 FPNLn.d adAD fffff | 2 | 1, 2
            middle, then back | 3 | N | P | Den 1 of 2 ..NLn.d adAD fffff | 2 | 1, 2
            last              | 3 | L |   | Den 2 of 2 FP..n.d adAD fffff | 3 | 2, 3
            first of two      | 2 |   |   | Den 1 of 1 ..NLn.d adAD fffff | 9 | 1
            then off the end  | 2 |   | N | Den 1 of 1 FP..n.d adAD fffff | 9 | 1
            only one          | 1 |   |   | None ....n.. adAD .....       |   |)");
    }
    void escapeDeletes()
    {
        QFETCH(QString, dens);
        QFETCH(QString, steps);
        QFETCH(QString, after);
        addDens(dens);
        Screen screen;
        screen.walk(steps);
        screen.type("txtDenName", "unsaved");
        screen.escape();
        screen.walk(after);
        QTEST(screen.state(), "state");
        QTEST(screen.text("txtDenNumber"), "number");
        QTEST(rows("Select Den_SID From Dens Order by Den_SID"), "left");
    }

    void fillRules()
    {
        test::fill("Insert Into Dens Values (1, 1, Null, 'Bear', 2020, 'N'), (2, 2, 'Two', '', Null, Null), "
                   "(3, Null, Null, Null, Null, Null)");
        Screen screen; // the den without a number comes first, when no type was shown before
        QCOMPARE(screen.fields(), "///0/");
        screen.walk("NN");
        QCOMPARE(screen.fields() + screen.state(), "2/Two/Bear/0/Den 3 of 3 FP..n.d adAD fffff");
        screen.type("txtDenNumber", "3");
        screen.click("cmdSave");
        QCOMPARE(rows("Select * From Dens Where Den_SID = 2"), "2|3|Two|Bear|0|");
    }

    void deleteReleasesActiveMembers()
    {
        addDens("3");
        test::fill(People);
        Screen().escape();
        QCOMPARE(denOf() + "; " + leaders(), "3|2; 2|8|Null, 3|3|Null");
    }

    void scouts()
    {
        addDens("3");
        test::fill(People);
        Screen screen;
        QCOMPARE(textsOf(screen.scouts), "Zeb Q. Berg; Abe berg");
        screen.click("cmdDelScouts");
        screen.type("txtDenName", "unsaved");
        QCOMPARE(screen.chooseScouts({0, 1}, "cmdCancel"), "Free, Max ; Abel, Kim O");
        QCOMPARE(screen.text("txtDenName") + screen.state() + denOf(), "N2Den 1 of 3 ..NLn.d adAD fffff1|2, 2|2, 3|2");
        screen.chooseScouts({0, 1});
        QCOMPARE(textsOf(screen.scouts), "Zeb Q. Berg; Max Free; Kim O. Abel; Abe berg");
        QCOMPARE(screen.chooseScouts({}), "");
        test::clickRow(screen.scouts, 0, Qt::ControlModifier);
        test::clickRow(screen.scouts, 2, Qt::ControlModifier);
        screen.click("cmdDelScouts");
        QCOMPARE(textsOf(screen.scouts) + ' ' + denOf(), "Max Free; Abe berg 2|2, 3|2, 4|2");
    }

    void leadersOfDens()
    {
        addDens("3");
        test::fill(People);
        Screen screen;
        QCOMPARE(textsOf(screen.adults) + ' ' + screen.form.GetAdultSidListStr(), "Bob Old; Ann M. Young 7, 3");
        screen.walk("N");
        QCOMPARE(textsOf(screen.adults) + ' ' + screen.form.GetAdultSidListStr(), "Ann M. Young 3");
        QCOMPARE(screen.chooseAdults({0, 1}), "Fay, Dot X; Old, Bob ");
        QCOMPARE(leaders(), "2|3|Leader, 2|7|Null, 2|8|Null, 3|3|Null, 3|7|Null, 3|9|Null");
        screen.walk("L"); // a den without leaders goes on with the leaders of the den before
        QCOMPARE(screen.form.GetAdultSidListStr(), "9, 7, 3");
        QCOMPARE(int(screen.form.GetDenSID()), 1);
        QCOMPARE(screen.chooseAdults({}), "");
        screen.walk("F");
        test::clickRow(screen.adults, 1);
        screen.click("cmdDelDenLeader");
        QCOMPARE(leaders(), "2|7|Null, 2|8|Null, 3|3|Null, 3|7|Null, 3|9|Null");
        QCOMPARE(textsOf(screen.adults) + ' ' + screen.form.GetAdultSidListStr(), "Bob Old 7");
    }

private:
    std::unique_ptr<test::AppFolder> m_folder;
};

ORLO_TEST_MAIN(tst_dens)

#include "tst_dens.moc"
