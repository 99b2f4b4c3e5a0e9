#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/OptionButton.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <optional>

using namespace orlo;

namespace
{

struct Screen : test::RecordScreen {
    Screen() : RecordScreen("frmInsigniaInfo") {}
    QLineEdit& name = get<QLineEdit>("txtInsigniaName");

    // The label, the name, the description and the selected option.
    [[nodiscard]] QString state() const
    {
        QStringList texts{get<QLabel>("lblRecordInfo").text(), name.text(),
                          get<QPlainTextEdit>("txtInsigniaInfo").toPlainText()};
        for (const auto* option : form.findChildren<widgets::OptionButton*>())
            texts += option->isChecked() ? QStringList(option->objectName()) : QStringList();
        return texts.join('/');
    }
    // The names that the form steps through, from the record on screen on.
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

    void types_data() { test::tableOf("awards/catalogue_types.txt"); }
    void types()
    {
        QFETCH(QString, option);
        QFETCH(QString, type);
        test::fill("Insert Into Insignias Values (1, 'A', '" + type +
                   "', Null), (2, 'B', 'Badge', 'b' || char(13, 10))");
        Screen screen;
        QCOMPARE(screen.state(), "Award 1 of 2/A//" + option);
        screen.run("N"); // a type outside the nine leaves the option unchanged
        QCOMPARE(screen.state(), "Award 2 of 2/B/b\n/" + option);
        screen.run((option == "optPin" ? "optMedal " : "optPin ") + option + " s");
        QCOMPARE(stored(), "A/" + type + "/Null, B/" + type + "/b\r\n"); // as before
        screen.run("cmdFind>" + option + ",cmdFind");
        QCOMPARE(screen.ahead(), "A B");
    }

    void find_data() { test::tableOf("awards/catalogue_find.txt"); }
    void find()
    {
        test::fill("Insert Into Insignias Values (1, 'Zoo', 'Patch', ''), (2, 'Bear', 'Pin', ''), "
                   "(3, 'Beaver', 'Patch', ''), (4, 'aBe', 'Pin', ''), (5, 'beads', 'Pin', '')");
        Screen screen;
        screen.run("N " + test::cell("script"));
        auto seen = screen.shown();
        seen["log"] = screen.log;
        seen["found"] = screen.ahead();
        test::compare(seen, {"log", "said", "label", "live", "found"});
    }

    void apostropheFails()
    {
        QCOMPARE(test::failureInChild(Pins, [] { Screen().run("cmdFind>InsigniaName:O'Hara,cmdFind"); }), "3075");
        QCOMPARE(stored(), "A/Pin/a, B/Pin/b, C/Pin/c");
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_catalogue)

#include "tst_catalogue.moc"
