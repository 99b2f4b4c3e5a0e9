#include "awards/dlgFindInsignia.h"
#include "awards/frmInsigniaInfo.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/OptionButton.h"

#include <QLineEdit>
#include <QPlainTextEdit>

using namespace orlo;

namespace
{

// An option takes a click on its mark only.
void set(const QObject& form, const QString& option)
{
    auto& button = test::control<widgets::OptionButton>(form, option.toUtf8().constData());
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
}

struct Screen : test::RecordScreen<frmInsigniaInfo> {
    QLineEdit& name = get<QLineEdit>("txtInsigniaName");

    // With the find button, the name, the description and the option that is set.
    [[nodiscard]] QString state() const
    {
        QString chosen;
        for (const auto* option : form.findChildren<widgets::OptionButton*>())
            chosen += option->isChecked() ? option->objectName() : "";
        return RecordScreen::state() + enabled("f", {"cmdFind"}) + '/' + name.text() + '/' +
               get<QPlainTextEdit>("txtInsigniaInfo").toPlainText() + '/' + chosen;
    }
    // Opens the find dialog, fills it and presses there.
    void find(const QString& text, const QString& option, const QString& press = "cmdFind") const
    {
        test::whenShown<dlgFindInsignia>([=](dlgFindInsignia& dialog) {
            auto& button = test::control<QPushButton>(dialog, "cmdFind");
            QVERIFY(!button.isEnabled());
            QTest::keyClicks(&test::control<QLineEdit>(dialog, "txtInsigniaName"), text);
            if (!option.isEmpty())
                set(dialog, option);
            QCOMPARE(button.isEnabled(), !text.isEmpty() || !option.isEmpty());
            QTest::mouseClick(&test::control<QPushButton>(dialog, press.toUtf8().constData()), Qt::LeftButton);
        });
        click("cmdFind");
    }
    // The names that the form walks, from the record on screen on.
    [[nodiscard]] QString ahead() const
    {
        QString names = name.text();
        while (get("cmdNext").isEnabled()) {
            click("cmdNext");
            names += ' ' + name.text();
        }
        return names;
    }
};

QString stored()
{
    return test::rows("Select Insignia_Name, Insignia_Type, Description From Insignias Order by Insignia_SID");
}

constexpr const char* ThreePins = "Insert Into Insignias Values (1, 'A', 'Pin', 'a'), (2, 'B', 'Pin', 'b'), "
                                  "(3, 'C', 'Pin', 'c')";

} // namespace

class tst_catalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<test::AppFolder>(); }
    void cleanup() { m_folder.reset(); }

    void types_data()
    {
        test::table({"option", "type"}, R"(
            optSegment        | Segment
            optBeltLoop       | Belt Loop
            optPin            | Pin
            optPatch          | Patch
            optTrophy         | Trophy
            optLetter         | Letter
            optMedal          | Medal
            optActBadge       | Activity Badge Pin
            optRnkAdvancement | Rank Advancement)");
    }
    void types()
    {
        QFETCH(QString, option);
        QFETCH(QString, type);
        test::fill("Insert Into Insignias Values (1, 'A', '" + type + "', Null), (2, 'B', 'Badge', 'b')");
        Screen screen;
        QCOMPARE(screen.state(), "Award 1 of 2 ..NLn.df/A//" + option);
        screen.walk("N"); // a type outside the nine leaves the option as it was
        QCOMPARE(screen.state(), "Award 2 of 2 FP..n.df/B/b/" + option);
        set(screen.form, option == "optPin" ? "optMedal" : "optPin");
        set(screen.form, option);
        screen.click("cmdSave");
        QCOMPARE(stored(), "A|" + type + "|Null, B|" + type + "|b");
        screen.find("", option == "optPin" ? "optMedal" : option);
        QCOMPARE(screen.ahead(), option == "optPin" ? "" : "A B");
    }

    void firstAward()
    {
        Screen screen;
        QCOMPARE(screen.state(), "None ....n..f///");
        screen.click("cmdNew");
        // What changes as the screen empties enables cmdSave; the second time nothing changes.
        QCOMPARE(screen.state(), "Award (New) ....ns..///optSegment");
        screen.click("cmdCancel");
        QCOMPARE(screen.state(), "None ....n.df///optSegment");
        screen.click("cmdNew");
        QCOMPARE(screen.state(), "Award (New) ....n...///optSegment");
        QVERIFY(screen.name.hasFocus());
        const QString longest(40, u'x');
        screen.type("txtInsigniaName", longest + 'y');
        screen.click("cmdSave");
        QCOMPARE(screen.state(), "Award 1 of 1 FP..n.df/" + longest + "/ /optSegment");
        QCOMPARE(stored(), longest + "|Segment| ");
        QVERIFY(screen.name.hasFocus());
    }

    void newAwardLeavesTheSetWhereItWas()
    {
        test::fill(ThreePins);
        Screen screen;
        screen.walk("N");
        screen.type("txtInsigniaName", "dropped");
        screen.click("cmdNew");
        screen.click("cmdNew");
        set(screen.form, "optLetter");
        screen.type("txtInsigniaName", "Z");
        screen.click("cmdSave");
        QCOMPARE(screen.state(), "Award 4 of 4 FP..n.df/Z/ /optLetter");
        QCOMPARE(stored(), "A|Pin|a, B|Pin|b, C|Pin|c, Z|Letter| ");
        screen.type("txtInsigniaName", "Y");
        screen.click("cmdSave");
        QCOMPARE(stored(), "A|Pin|a, Y|Letter| , C|Pin|c, Z|Letter| ");
        screen.walk("P");
        QCOMPARE(screen.state(), "Award 3 of 4 FPNLn.df/A/a/optPin");
    }

    void cancel()
    {
        test::fill(ThreePins);
        Screen screen;
        screen.click("cmdNew");
        screen.click("cmdCancel");
        QCOMPARE(screen.state(), "Award 3 of 3 FP..n.df/C/c/optPin");
        screen.walk("P");
        screen.type("txtInsigniaInfo", "typed");
        set(screen.form, "optPatch");
        screen.click("cmdCancel");
        QCOMPARE(screen.state(), "Award 2 of 3 FPNLn.df/B/b/optPin");
    }

    void escapeDeletes_data()
    {
        test::table({"name", "steps", "deletes", "state"}, R"(
            first       |   | 1 | Award 1 of 2 ..NLn.df/B/b/optPin
            middle      | N | 1 | Award 1 of 2 ..NLn.df/A/a/optPin
            last        | L | 1 | Award 2 of 2 FP..n.df/B/b/optPin
            all but one | N | 2 | Award 1 of 1 FP..n.df/C/c/optPin
            all         |   | 3 | None ....n..f///optSegment)");
    }
    void escapeDeletes()
    {
        QFETCH(QString, steps);
        QFETCH(QString, deletes);
        test::fill(ThreePins);
        test::fill("Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID) Values (1, 1), (1, 2), (1, 3)");
        Screen screen;
        screen.walk(steps);
        for (int n = 0; n < deletes.toInt(); ++n)
            screen.escape();
        QTEST(screen.state(), "state");
        QCOMPARE(test::count("Insignias"), 3 - deletes.toInt());
        QCOMPARE(test::count("Assigned_Awards_Scouts"), 3);
    }

    void find_data()
    {
        test::table({"name", "text", "option", "press", "state", "found"}, R"(
            name        | Be    |                     | cmdFind      | Award 1 of 3 ..NLn.d | beads Bear Beaver
            trimmed     | ~Bea~ |                     | cmdFind      | Award 1 of 3 ..NLn.d | beads Bear Beaver
            type        |       | optPin              | cmdFind      | Award 1 of 3 ..NLn.d | ArrowBe beads Bear
            both        | be    | optPin              | cmdFind      | Award 1 of 2 ..NLn.d | beads Bear
            neither     |       | OptAllInsigniaTypes | cmdFind      | Award 1 of 5 ..NLn.d | ArrowBe beads Bear Beaver Zoo
            cancelled   | Zoo   | optPin              | cmdCancel    | Award 2 of 5 FPNLn.d | beads Bear Beaver Zoo
            all         | Zoo   |                     | cmdSelectAll | Award 1 of 5 FPNLn.d | ArrowBe beads Bear Beaver Zoo
            nothing     | Zoom  |                     | cmdFind      | Award 1 of 5 ....n.. | ArrowBe
            nothing two | Zoo   | optPin              | cmdFind      | Award 1 of 5 ....n.. | ArrowBe)");
    }
    void find()
    {
        QFETCH(QString, text);
        QFETCH(QString, option);
        QFETCH(QString, press);
        QFETCH(QString, state);
        test::fill("Insert Into Insignias Values (1, 'Zoo', 'Patch', ''), (2, 'Bear', 'Pin', ''), "
                   "(3, 'Beaver', 'Patch', ''), (4, 'ArrowBe', 'Pin', ''), (5, 'beads', 'Pin', '')");
        Screen screen;
        screen.walk("N");
        const bool fails = state.endsWith("....n..");
        const auto told = fails ? test::answerNext() : std::make_shared<test::Told>();
        screen.find(text.replace('~', ' '), option, press);
        QCOMPARE(told->title + told->text, fails ? "No Data FoundNo data found for the selected search cryteria" : "");
        QCOMPARE(screen.RecordScreen::state(), state);
        QTEST(screen.ahead(), "found");
    }

    void promptAfterDialog()
    {
        test::fill(ThreePins);
        Screen screen;
        screen.walk("N");
        screen.type("txtInsigniaName", "Z");
        std::shared_ptr<test::Told> told;
        test::whenShown<dlgFindInsignia>([&told](dlgFindInsignia& dialog) {
            told = test::answerNext(QMessageBox::Yes); // the question can't come up before
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        screen.click("cmdFind");
        QCOMPARE(told->title, "Save Changes");
        QCOMPARE(screen.state() + stored(), "Award 2 of 3 FP..n.df/Z/b/optPinA|Pin|a, Z|Pin|b, C|Pin|c");
    }

    void apostropheFails()
    {
        QCOMPARE(test::failureInChild(ThreePins, [] { Screen().find("O'Hara", ""); }), "Run-time error '3075':");
        QCOMPARE(stored(), "A|Pin|a, B|Pin|b, C|Pin|c");
    }

private:
    std::unique_ptr<test::AppFolder> m_folder;
};

ORLO_TEST_MAIN(tst_catalogue)

#include "tst_catalogue.moc"
