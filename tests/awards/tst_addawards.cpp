#include "awards/AddAwardsForm.h"
#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "shell/forms/PersonShown.h"
#include "support/Main.h"
#include "support/Pack.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/CheckListBox.h"
#include "widgets/ComboBox.h"
#include "widgets/ListBox.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>

#include <optional>

using namespace orlo;

namespace
{

// By text: ant Pin, Bear Badge, Bear Cub Badge, Bear Pin twice, Wolf Badge.
constexpr const char* Awards = R"(Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type) Values
    (1, 'Wolf', 'Badge'), (2, 'Bear', 'Pin'), (3, 'Bear', 'Badge'), (4, 'Bear', 'Pin'), (5, 'ant', 'Pin'),
    (6, 'Bear Cub', 'Badge'))";
const QString Scouts =
    "Select Scout_SID, Insignia_SID, Date_Assigned, Year, Month, Quantity From Assigned_Awards_Scouts";

QStringList calls; // what a dialog asked the record form, in order

// Stands in for the record form; each question returns the next person.
struct People : PersonShown {
    std::int16_t currentPerson() const override
    {
        calls += "person";
        return static_cast<std::int16_t>(100 + calls.size());
    }
    void ReloadAwardGrid() override { calls += QApplication::overrideCursor() ? "busy reload" : "reload"; }
};

struct Screen : test::RecordScreen {
    widgets::CheckListBox& catalogue = get<widgets::CheckListBox>("lbAwardList");
    widgets::ListBox& selected = get<widgets::ListBox>("lbSelected");

    using RecordScreen::RecordScreen;
    void giveTo(PersonShown& people) const { dynamic_cast<AddAwardsForm&>(form).giveTo(people); }

    // "tick 3": a word, and the row of the list that it applies to.
    void step(const QString& words) const
    {
        const QString word = words.section(' ', 0, 0);
        const int row = words.section(' ', 1).toInt();
        if (word == "tick")
            QTest::mouseClick(catalogue.viewport(), Qt::LeftButton, {},
                              catalogue.visualItemRect(catalogue.item(row)).topLeft() + QPoint(8, 6));
        else if (word == "space")
            QTest::keyClick(&catalogue, Qt::Key_Space);
        else if (word == "type")
            QTest::keyClicks(&catalogue, words.section(' ', 1));
        else if (word == "at")
            test::clickRow(catalogue, row);
        else if (word == "mark" || word == "drop")
            test::clickRow(selected, row, word == "mark" ? Qt::ControlModifier : Qt::NoModifier);
        if (word == "drop")
            QTest::mouseDClick(selected.viewport(), Qt::LeftButton, {},
                               selected.visualItemRect(selected.item(row)).center());
        for (auto* button : form.findChildren<QPushButton*>())
            if (button->text() == word)
                QTest::mouseClick(button, Qt::LeftButton);
    }
    // The checked rows, the current row and the selected texts.
    [[nodiscard]] QString lists() const
    {
        QString checked;
        for (int row = 0; row < catalogue.listCount(); ++row)
            if (catalogue.checked(row))
                checked += QString::number(row);
        return (checked + '@' + QString::number(catalogue.listIndex()) + ' ' + test::textsOf(selected)).trimmed();
    }
};
constexpr auto Adult = "frmAddAdultAwards";
constexpr auto Scout = "frmAddAwardsToScout";

// Selects awards, types the date and adds them.
void add(const QString& dialog, const QString& steps, const QString& day)
{
    People people;
    const Screen screen(dialog);
    screen.giveTo(people);
    for (const QString& step : steps.split(", "))
        screen.step(step);
    screen.type("txtAssignedDate", day);
    screen.step("&Add");
}

} // namespace

class tst_addawards : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.emplace();
        test::fill(Awards);
        calls.clear();
        platform::setToday(QDate(2026, 5, 9));
    }

    void listsStayInStep_data() { test::tableOf("awards/addawards_listsStayInStep.txt"); }
    void listsStayInStep()
    {
        const Screen screen(Adult);
        QCOMPARE(test::textsOf(screen.catalogue),
                 "ant Pin; Bear Badge; Bear Cub Badge; Bear Pin; Bear Pin; Wolf Badge");
        for (const QString& step : test::cell("steps").split(", "))
            screen.step(step);
        QTEST(screen.lists(), "lists");
        QVERIFY(screen.catalogue.isVisible() && screen.selected.isVisible() && !QApplication::overrideCursor());
    }

    void adding()
    {
        test::fill("Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID) Values (101, 5)"); // given earlier
        add(Adult, "tick 5, tick 0, tick 4", "2/5/26");
        const QStringList once{"person", "person", "person", "busy reload"};
        QCOMPARE(calls, once);
        QVERIFY(!screenOf(Adult).loaded());
        QCOMPARE(
            test::rows("Select Adult_SID, Insignia_SID, Year, Month From Assigned_Awards_Adults Order By Adult_SID"),
            "101/5/Null/Null, 101/5/2026/2, 102/2/2026/2, 103/1/2026/2");
        calls.clear();
        add(Scout, "tick 5, tick 0, tick 4", "2/5/26");
        QCOMPARE(calls, once);
        QCOMPARE(test::rows(Scouts),
                 "101/5/2/5/2026/2026/2/Null, 102/2/2/5/2026/2026/2/Null, 103/1/2/5/2026/2026/2/Null");
    }

    void leaving_data() { test::tableOf("awards/addawards_leaving.txt"); }
    void leaving()
    {
        const Screen screen(Adult);
        screen.step(test::cell("step"));
        screen.type("txtAssignedDate", test::cell("date"));
        screen.catalogue.setFocus();
        const auto told = test::answerNext();
        QTest::keyClick(&screen.catalogue, test::cell("key") == "Return" ? Qt::Key_Return : Qt::Key_Escape);
        QTEST(told->text + told->title, "told");
        QCOMPARE(screenOf(Adult).loaded() != nullptr, told->shown);
        QVERIFY(calls.isEmpty() && test::count("Assigned_Awards_Adults") == 0);
        QVERIFY(!told->shown || screen.form.focusWidget()->objectName() == "txtAssignedDate");
    }

    // If an award is refused, those before it stay.
    void failures_data() { test::tableOf("awards/addawards_failures.txt"); }
    void failures()
    {
        const QString refuse = "Create Unique Index Once On Assigned_Awards_Adults (Adult_SID, Insignia_SID);"
                               "Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID) Values (103, 6)";
        QTEST(test::failureInChild(refuse, [] { add(Adult, "<<", test::cell("date")); }), "number");
        QTEST(QString::number(test::count("Assigned_Awards_Adults")), "added");
    }

    void apostropheInAFind()
    {
        const QString before = test::rows("Select * From Insignias");
        const auto find = [] { test::RecordScreen("frmInsigniaInfo").run("cmdFind>InsigniaName:O'Hara,cmdFind"); };
        QCOMPARE(test::failureInChild("", find), "3075");
        QCOMPARE(test::rows("Select * From Insignias"), before);
    }

    void editing_data() { test::tableOf("awards/addawards_editing.txt"); }
    void editing()
    {
        QFETCH(QString, quantity);
        std::tie(gEditDate, gEditQuantity, gEditAwardText) = std::tuple("1/2/26", std::int16_t{1}, "Bear Pin");
        std::tie(gEditInsigniaSID, gEditSaved) = std::tuple(std::int16_t{2}, false);
        const test::RecordScreen screen("frmEditAssignedAward");
        const auto& box = screen.get<widgets::ComboBox>("cmbAward");
        QCOMPARE(screen.get<QLineEdit>("txtDateAssigned").text() + ' ' + screen.get<QLineEdit>("txtQuantity").text() +
                     ' ' + box.text() + ' ' + box.list(5),
                 "1/2/26 1 Bear Pin Wolf Badge");
        screen.type("cmbAward", test::cell("award"));
        screen.type("txtQuantity", quantity);
        if (quantity == "day")
            screen.run("day>cmdSelectDate",
                       [&](const QString&) { QTest::mouseDClick(&screen.get("txtDateAssigned"), Qt::LeftButton); });
        QTest::keyClick(&screen.get("txtQuantity"), test::cell("leave") == "Return" ? Qt::Key_Return : Qt::Key_Escape);
        QVERIFY(!screenOf("frmEditAssignedAward").loaded());
        test::compare({{"count", QString::number(gEditQuantity)},
                       {"key", QString::number(gEditInsigniaSID)},
                       {"date", gEditDate},
                       {"saved", gEditSaved ? "yes" : "no"}},
                      {"count", "key", "date", "saved"});
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_addawards)
#include "tst_addawards.moc"
