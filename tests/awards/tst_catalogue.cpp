#include "awards/dlgFindInsignia.h"
#include "awards/frmInsigniaInfo.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/OptionButton.h"

#include <QLineEdit>
#include <QPlainTextEdit>

using namespace orlo;

namespace
{

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
                test::press(dialog, option);
            QCOMPARE(button.isEnabled(), !text.isEmpty() || !option.isEmpty());
            test::press(dialog, press);
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

constexpr const char* Pins = "Insert Into Insignias Values (1, 'A', 'Pin', 'a'), (2, 'B', 'Pin', 'b'), "
                             "(3, 'C', 'Pin', 'c')";

} // namespace

class tst_catalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder.emplace(); }

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
        screen.run("N"); // a type outside the nine leaves the option as it was
        QCOMPARE(screen.state(), "Award 2 of 2 FP..n.df/B/b/" + option);
        screen.run((option == "optPin" ? "optMedal " : "optPin ") + option + " s");
        QCOMPARE(stored(), "A/" + type + "/Null, B/" + type + "/b");
        screen.find("", option);
        QCOMPARE(screen.ahead(), "A B");
    }

    // What changes as the screen empties for a new award enables cmdSave; without a change it waits for a key.
    void oneRecordAtATime_data()
    {
        test::table({"name", "awards", "script", "state", "stored"}, R"(
            first award    | 0 | n     | Award (New) ....ns..///optSegment!    |
            cancelled      | 0 | n c   | None ....n.df///optSegment            |
            and new again  | 0 | n c n | Award (New) ....n...///optSegment!    |
            then typed     | 0 | n c n InsigniaName=X s | Award 1 of 1 FP..n.df/X/ /optSegment! | X/Segment/~
            new twice | 3 | N n n s    | Award 4 of 4 FP..n.df// /optSegment! | A/Pin/a, B/Pin/b, C/Pin/c, /Segment/~
            saved again | 3 | N n s optPin s | Award 4 of 4 FP..n.df// /optPin! | A/Pin/a, /Pin/~, C/Pin/c, /Segment/~
            new, then back | 3 | N n s P | Award 3 of 4 FPNLn.df/A/a/optPin! | A/Pin/a, B/Pin/b, C/Pin/c, /Segment/~
            first deleted  | 3 | InsigniaName=X E | Award 1 of 2 ..NLn.df/B/b/optPin! | B/Pin/b, C/Pin/c
            middle deleted | 3 | N E   | Award 1 of 2 ..NLn.df/A/a/optPin!     | A/Pin/a, C/Pin/c
            last deleted   | 3 | L E   | Award 2 of 2 FP..n.df/B/b/optPin!     | A/Pin/a, B/Pin/b
            all deleted    | 3 | E E E | None ....n..f///optSegment            |)");
    }
    void oneRecordAtATime()
    {
        QFETCH(QString, awards);
        QFETCH(QString, script);
        QFETCH(QString, stored);
        if (awards == "3")
            test::fill(Pins);
        test::fill("Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID) Values (1, 1), (1, 2), (1, 3)");
        Screen screen;
        screen.get("cmdExit").setFocus();
        screen.run(script);
        QTEST(screen.state() + (screen.form.focusWidget() == &screen.name ? "!" : ""), "state");
        QCOMPARE(::stored(), stored.replace('~', ' '));
        QCOMPARE(test::count("Assigned_Awards_Scouts"), 3);
    }

    void find_data()
    {
        test::table({"name", "text", "option", "press", "state", "found"}, R"(
            trimmed     | ~Bea~ |                     | cmdFind      | Award 1 of 3 ..NLn.d | beads Bear Beaver
            type        |       | optPin              | cmdFind      | Award 1 of 3 ..NLn.d | aBe beads Bear
            both        | be    | optPin              | cmdFind      | Award 1 of 2 ..NLn.d | beads Bear
            neither     |       | OptAllInsigniaTypes | cmdFind      | Award 1 of 5 ..NLn.d | aBe beads Bear Beaver Zoo
            cancelled   | Zoo   | optPin              | cmdCancel    | Award 2 of 5 FPNLn.d | beads Bear Beaver Zoo
            all         | Zoo   |                     | cmdSelectAll | Award 1 of 5 ..NLn.d | aBe beads Bear Beaver Zoo
            nothing     | Zoo   | optPin              | cmdFind      | Award 1 of 5 ..NLn.d | aBe beads Bear Beaver Zoo)");
    }
    void find()
    {
        QFETCH(QString, text);
        QFETCH(QString, option);
        QFETCH(QString, press);
        QFETCH(QString, state);
        test::fill("Insert Into Insignias Values (1, 'Zoo', 'Patch', ''), (2, 'Bear', 'Pin', ''), "
                   "(3, 'Beaver', 'Patch', ''), (4, 'aBe', 'Pin', ''), (5, 'beads', 'Pin', '')");
        Screen screen;
        screen.run("N");
        const bool fails = QTest::currentDataTag() == QLatin1String("nothing");
        const auto told = fails ? test::answerNext() : std::make_shared<test::Told>();
        screen.find(text.replace('~', ' '), option, press);
        QCOMPARE(told->title + told->text, fails ? "No Data FoundNo data found for the selected search cryteria" : "");
        QCOMPARE(screen.RecordScreen::state(), state);
        QTEST(screen.ahead(), "found");
        screen.find("Zoo", "");
        screen.find("", "", "cmdSelectAll"); // the buttons of the one award found are gone with it
        QCOMPARE(screen.RecordScreen::state(), "Award 1 of 5 ..NLn.d");
    }

    void promptAfterDialog()
    {
        test::fill(Pins);
        Screen screen;
        screen.run("N InsigniaName=Z");
        std::shared_ptr<test::Told> told;
        test::whenShown<dlgFindInsignia>([&told](dlgFindInsignia& dialog) {
            told = test::answerNext(QMessageBox::Yes); // the question can't come up before
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        screen.click("cmdFind");
        QCOMPARE(told->title, "Save Changes");
        QCOMPARE(screen.state() + stored(), "Award 2 of 3 FP..n.df/Z/b/optPinA/Pin/a, Z/Pin/b, C/Pin/c");
    }

    void apostropheFails()
    {
        QCOMPARE(test::failureInChild(Pins, [] { Screen().find("O'Hara", ""); }), "Run-time error '3075':");
        QCOMPARE(stored(), "A/Pin/a, B/Pin/b, C/Pin/c");
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_catalogue)

#include "tst_catalogue.moc"
