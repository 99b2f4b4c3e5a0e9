#include "pack/frmDenInfo.h"
#include "platform/Conversion.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/ComboBox.h"
#include "widgets/ListBox.h"

#include <QLineEdit>
#include <QRegularExpression>

#include <optional>

using namespace orlo;
using test::rows;
using test::textsOf;

namespace
{

// Den 2 has two active scouts and leaders and an inactive one of each; one of the leaders leads den 3, too.
constexpr const char* People = R"(
Insert Into Dens (Den_SID, Den_Number, Den_Name) Values (1, 9, 'N1'), (2, 2, 'N2'), (3, 3, 'N3');
Insert Into Scouts (Scout_SID, First_Name, MI, Last_Name, Active, Assigned_Den_SID) Values
    (1, ' Zeb ', 'Q', ' Berg ', 'Y', 2), (2, 'Abe', '', 'berg', 'Y', 2), (3, 'Ivo', Null, 'Idle', 'N', 2),
    (4, ' Max ', ' ', ' Free ', 'Y', Null), (5, 'Ian', Null, 'Free', 'N', Null), (6, 'Kim', 'O', 'Abel', 'Y', Null);
Insert Into Adults (Adult_SID, First_Name, MI, Last_Name, Active) Values
    (3, 'Ann', 'M', 'Young', 'Y'), (7, 'Bob', Null, 'Old', 'Y'), (8, 'Cid', '', 'Idle', 'N'),
    (9, 'Dot', 'X', 'Fay', 'Y');
Insert Into Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title) Values
    (3, 2, 'Leader'), (3, 3, Null), (7, 2, Null), (8, 2, Null))";

struct Screen : test::RecordScreen {
    Screen() : RecordScreen("frmDenInfo") {}
    const frmDenInfo& dens = dynamic_cast<const frmDenInfo&>(form);
    widgets::ListBox& scouts = get<widgets::ListBox>("lstScouts");
    widgets::ListBox& adults = get<widgets::ListBox>("lstAdults");
    widgets::ComboBox& denType = get<widgets::ComboBox>("comDenType");

    // Also the buttons for members, the fields and whether the number has the focus.
    [[nodiscard]] QMap<QString, QString> shown() const
    {
        auto seen = RecordScreen::shown();
        seen.insert({{"members", enabled({"cmdAddScouts", "cmdDelScouts", "cmdAddDenLeader", "cmdDelDenLeader"})},
                     {"fields", enabled({"txtDenNumber", "txtDenName", "comDenType", "txtYearStarted", "txtActive"})},
                     {"focus", form.focusWidget() == &get("txtDenNumber") ? "number" : ""},
                     {"number", text("txtDenNumber")}});
        return seen;
    }
    [[nodiscard]] QString labelAndLive() const { return shown()["label"] + ": " + shown()["live"]; }
    [[nodiscard]] QString text(const char* box) const { return get<QLineEdit>(box).text(); }
    [[nodiscard]] QString fields() const
    {
        return text("txtDenNumber") + '/' + text("txtDenName") + '/' + denType.text() + '/' + text("txtYearStarted") +
               '/' + get<widgets::ComboBox>("txtActive").text();
    }
};

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
        m_folder.emplace();
        platform::setToday(QDate(2026, 11, 24));
    }

    void oneRecordAtATime_data() { test::tableOf("pack/dens_oneRecordAtATime.txt"); }
    void oneRecordAtATime()
    {
        QFETCH(QString, script);
        QFETCH(QString, label);
        test::fill("With Recursive k(i) As (Values(1) Union All Select i + 1 From k) Insert Into Dens Select i, "
                   "CASE i WHEN 1 THEN 9 ELSE i END, 'N' || i, 'Wolf', 2024, 'Y' From k Limit " +
                   test::cell("dens"));
        Screen screen;
        screen.form.setFocus();
        screen.run(script, [&](const QString& row) { screen.denType.setListIndex(row.sliced(1).toInt()); });
        if (!screen.told.isEmpty() && script.contains(QRegularExpression("yes|no ")))
            QCOMPARE(screen.said().section('\n', 0, 0),
                     "Save Changes: Data Changes Not Saved.Do you want to save your changes");
        if (script.contains("ok"))
            QCOMPARE(screen.said().section('\n', -1),
                     "Save Error: A Den Type must be selected. Please select a Den type and Save again.");
        QTEST(rows("Select Den_SID, Den_Name From Dens Order by Den_SID"), "stored");
        QCOMPARE(test::loadedForm("frmDenInfo") == nullptr, label == "closed");
        if (label != "closed")
            test::compare(screen.shown(), {"label", "live", "members", "fields", "focus", "number"});
    }

    void newDen()
    {
        Screen screen;
        screen.run("n");
        QCOMPARE(screen.labelAndLive() + ", " + screen.fields(), "Den (New): Save, // /2026/Y");
        QCOMPARE(screen.shown()["members"], "none");
        screen.type("txtDenNumber", "7a");
        QTest::keyClick(&screen.get("txtDenNumber"), Qt::Key_Return);
        test::execute("Update Dens Set Den_SID = 41");
        test::unloadForm("frmDenInfo");
        Screen next;
        next.run("n DenName=O'Hara's YearStarted=x Active=" + QString(300, 'r') + " s");
        QCOMPARE(rows("Select * From Dens Order by Den_SID"), "41/7// /2026/Y, 42/0/O'Hara's/ /0/" + QString(255, 'r'));
    }

    void keysRunOut()
    {
        QCOMPARE(test::failureInChild("Insert Into Dens (Den_SID) Values (32767)", [] { Screen().click("cmdNew"); }),
                 "6");
        QCOMPARE(test::count("Dens"), 1);
    }

    void fillRules()
    {
        test::fill("Insert Into Dens Values (1, 1, Null, 'Bear', 2020, 'N'), (2, 2, 'Two', 'Lion', Null, Null), "
                   "(3, Null, Null, Null, Null, Null)");
        Screen screen; // the den without a number comes first if no type was shown before; "Lion" isn't listed
        QCOMPARE(screen.fields(), "///0/");
        screen.run("N N");
        QCOMPARE(screen.fields() + ", " + screen.labelAndLive(), "2/Two//0/, Den 3 of 3: First Previous New Delete");
        screen.denType.setListIndex(2);
        screen.run("DenNumber=3 s");
        QCOMPARE(rows("Select * From Dens Where Den_SID = 2"), "2/3/Two/Bear/0/");
    }

    void deleteReleasesActiveMembers()
    {
        test::fill(People);
        Screen().run("E");
        QCOMPARE(denOf() + "; " + leaders(), "3/2; 2/8/Null, 3/3/Null");
    }

    void scouts()
    {
        test::fill(People);
        Screen screen;
        QCOMPARE(textsOf(screen.scouts), "Zeb Q. Berg; Abe berg");
        screen.click("cmdDelScouts");
        screen.type("txtDenName", "unsaved");
        screen.run("cmdAddScouts>lstScouts:0,lstScouts:1,cmdCancel");
        QCOMPARE(screen.log, "closed, Free, Max ; Abel, Kim O");
        QCOMPARE(screen.text("txtDenName") + ", " + screen.labelAndLive() + ", " + denOf(),
                 "N2, Den 1 of 3: Next Last New Delete, 1/2, 2/2, 3/2");
        const auto add = [&] { screen.run("cmdAddScouts>lstScouts:0,lstScouts:1,cmdSelect"); };
        QVERIFY(test::alwaysBusy("Where Scout_SID", add));
        QCOMPARE(textsOf(screen.scouts), "Zeb Q. Berg; Max Free; Kim O. Abel; Abe berg");
        screen.run("cmdAddScouts>cmdSelect");
        QCOMPARE(screen.log, "closed, ");
        test::clickRow(screen.scouts, 0, Qt::ControlModifier);
        test::clickRow(screen.scouts, 2, Qt::ControlModifier);
        QVERIFY(test::alwaysBusy("Where Scout_SID", [&] { screen.click("cmdDelScouts"); }));
        QCOMPARE(textsOf(screen.scouts) + ' ' + denOf(), "Max Free; Abe berg 2/2, 3/2, 4/2");
    }

    void leadersOfDens()
    {
        test::fill(People);
        Screen screen;
        QCOMPARE(textsOf(screen.adults) + ' ' + screen.dens.GetAdultSidListStr(), "Bob Old; Ann M. Young 7, 3");
        screen.run("N");
        QCOMPARE(textsOf(screen.adults) + ' ' + screen.dens.GetAdultSidListStr(), "Ann M. Young 3");
        screen.run("cmdAddDenLeader>lstAdults:0,lstAdults:1,cmdSelect");
        QCOMPARE(screen.log, "closed, Fay, Dot X; Old, Bob ");
        QCOMPARE(leaders(), "2/3/Leader, 2/7/Null, 2/8/Null, 3/3/Null, 3/7/Null, 3/9/Null");
        screen.run("L"); // a den without leaders keeps the leaders of the previous den
        QCOMPARE(screen.dens.GetAdultSidListStr(), "9, 7, 3");
        QCOMPARE(int(screen.dens.GetDenSID()), 1);
        screen.run("cmdAddDenLeader>cmdSelect");
        QCOMPARE(screen.log, "closed, ");
        screen.run("F");
        test::clickRow(screen.adults, 1);
        screen.click("cmdDelDenLeader");
        QCOMPARE(leaders(), "2/7/Null, 2/8/Null, 3/3/Null, 3/7/Null, 3/9/Null");
        QCOMPARE(textsOf(screen.adults) + ' ' + screen.dens.GetAdultSidListStr(), "Bob Old 7");
        screen.run("n");
        QCOMPARE(textsOf(screen.adults), "");
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_dens)

#include "tst_dens.moc"
