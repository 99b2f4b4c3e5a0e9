#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/ComboBox.h"
#include "widgets/TextGrid.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTabWidget>

#include <optional>

using namespace orlo;
using widgets::ComboBox;
using widgets::TextGrid;

namespace
{

constexpr const char* People = R"(
Insert Into Dens (Den_SID, Den_Number, Den_Type, Active) Values
    (1, 3, 'Wolf', 'Y'), (2, 1, 'Bear', 'Y'), (3, 2, 'Tiger', 'N'), (4, Null, 'Webelos', 'Y'), (5, 5, 'Empty', 'Y');
Insert Into Scouts (Scout_SID, First_Name, Last_Name, MI, Assigned_Den_SID, Active) Values
    (1, 'Ann', 'Young', Null, 1, 'Y'), (2, 'Bob', 'Adams', 'C', 1, 'Y'), (3, 'Bob', 'Adams', 'A', 2, 'Y'),
    (4, 'Abe', 'Adams', 'Z', Null, 'Y'), (5, 'Zed', 'Aaron', Null, 1, 'N'), (6, 'Kim', 'Lee', Null, 4, 'Y');
Insert Into Adults (Adult_SID, First_Name, Last_Name, Assigned_Den_SID, Active) Values
    (1, 'Dora', 'King', 1, 'Y'), (2, 'Ed', 'Hall', 2, 'Y'), (3, 'Flo', 'Gray', 0, 'Y'), (5, 'Gus', 'Aaron', 1, 'N');
Insert Into Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title) Values (3, 1, 'Den Leader');
Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type) Values
    (1, 'Wolf', 'Badge'), (2, 'Bear', 'Pin'), (3, 'Bear', 'Badge'))";

// What the function makes of each row below the header, without the empty ones.
QString rowsOf(const TextGrid& grid, const char* parting, const std::function<QString(int)>& text)
{
    QStringList lines;
    for (int row = 1; row < grid.rows(); ++row)
        lines += text(row);
    lines.removeAll(QString());
    return lines.join(QLatin1String(parting));
}

// The cells, separated by slashes.
QString rowsOf(const TextGrid& grid)
{
    return rowsOf(grid, ", ", [&](int row) {
        QStringList cells;
        for (int col = 0; col < grid.cols(); ++col)
            cells += grid.text(row, col);
        return cells.join(u'/');
    });
}

// The keys of the marked rows.
QString marked(const TextGrid& grid)
{
    return rowsOf(grid, " ", [&](int row) {
        return grid.text(row, 0) == QLatin1String("X") ? grid.text(row, grid.cols() - 1) : QString();
    });
}

struct Screen : test::RecordScreen {
    Screen() : RecordScreen("frmAssignInsignias") {}
    TextGrid& pack = get<TextGrid>("fgSelectFrom");
    TextGrid& scouts = get<TextGrid>("fgSelScoutsFromByDen");
    TextGrid& adults = get<TextGrid>("fgSelAdultsFromByDen");
    TextGrid& selected = get<TextGrid>("fgSelected");
    ComboBox& den = get<ComboBox>("comDen");
    ComboBox& award = get<ComboBox>("cboAward");
    QTabWidget& tabs = get<QTabWidget>("SSTabAssignInsignias");

    // "pack1", "scout1" and "adult1" double-click the person of that key, "row1" one of the chosen; "tab1" is a page,
    // "den:X" and "award:X" pick from a list, "typed:X" types a den, "order" an award and its day; other words are
    // controls. Underscores stand for blanks.
    void go(QString script) const
    {
        static const QMap<QString, QString> controls{{"all", "SelectAllSel"},
                                                     {"allScouts", "SelAllByDenScouts"},
                                                     {"allAdults", "SelAllByDenAdults"},
                                                     {"none", "UnSelAll"},
                                                     {"clear", "ClearAll"},
                                                     {"assign", "AssignAward"}};
        script.replace(QRegularExpression("\\b(Scouts|Adults)\\b"), "optListOf\\1");
        run(script.replace("order", "award:Bear_Pin AssignDate=2/5/26"), [&](const QString& word) {
            const QString name = QString(word).remove(QRegularExpression("(:.*|\\d+)$"));
            const QString text = word.sliced(name.size() + (word.contains(':') ? 1 : 0)).replace('_', ' ');
            const QMap<QString, TextGrid*> grids{
                {"pack", &pack}, {"scout", &scouts}, {"adult", &adults}, {"row", &selected}};
            if (name == "tab")
                QTest::mouseClick(tabs.tabBar(), Qt::LeftButton, {}, tabs.tabBar()->tabRect(text.toInt()).center());
            else if (name == "den" || name == "award")
                pick(name == "den" ? den : award, text);
            else if (name == "typed") {
                den.setFocus();
                den.lineEdit()->selectAll();
                QTest::keyClicks(&den, text);
                QTest::keyClick(&den, Qt::Key_Return);
            } else if (grids.contains(name))
                choose(*grids[name], text, name == "row");
            else
                test::press(form, controls.contains(word) ? "cmd" + controls[word] : word);
        });
    }
    // Opens the list by key and picks the entry; any other text closes the list without a choice.
    static void pick(ComboBox& box, const QString& entry)
    {
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_F4);
        const int row = entry.isEmpty() ? -1 : box.findText(entry, Qt::MatchStartsWith);
        if (row >= 0)
            box.view()->setCurrentIndex(box.model()->index(row, 0));
        QTest::keyClick(box.view(), row >= 0 ? Qt::Key_Return : Qt::Key_Escape);
    }
    static void choose(TextGrid& grid, const QString& key, bool byRow)
    {
        int row = byRow ? key.toInt() : 1;
        while (!byRow && grid.text(row, grid.cols() - 1) != key)
            ++row;
        const QModelIndex cell = grid.model()->index(row - 1, 1);
        grid.scrollTo(cell);
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(cell).center());
    }
};

// Plays the row's script and compares what the other columns of the row name.
void play(std::initializer_list<const char*> columns)
{
    const Screen screen;
    screen.go(test::cell("script"));
    const bool packPage = screen.tabs.currentIndex() == 0;
    const QMap<QString, QString> seen{
        {"lists", packPage ? screen.pack.text(0, 1) + rowsOf(screen.pack)
                           : rowsOf(screen.scouts) + "; " + rowsOf(screen.adults)},
        {"marks", packPage ? marked(screen.pack) : marked(screen.scouts) + u'/' + marked(screen.adults)},
        // "S1 A2": scout 1 and adult 2
        {"chosen",
         rowsOf(screen.selected, " ",
                [&](int row) { return screen.selected.text(row, 3).first(1) + screen.selected.text(row, 4); })},
        {"order", screen.award.text() + '/' + screen.get<QLineEdit>("txtAssignDate").text() + '/' +
                      screen.form.focusWidget()->objectName()},
        {"said", screen.said()},
        {"scouts", test::rows("Select Scout_SID, Insignia_SID, Date_Assigned, Year, Month, Quantity From "
                              "Assigned_Awards_Scouts Order By Assigned_SID")},
        {"adults", test::rows("Select Adult_SID, Insignia_SID, Date_Assigned, Year, Month From "
                              "Assigned_Awards_Adults")},
        {"given", QString::number(test::count("Assigned_Awards_Scouts"))}};
    test::compare(seen, columns);
    QCOMPARE(screen.get("cmdAssignAward").isEnabled(), screen.selected.rows() > 1);
    QCOMPARE(screen.selected.toolTip().section(' ', 0, 0).toInt(), screen.selected.rows() - 1);
    if (screen.den.listCount() > 0)
        QCOMPARE(test::textsOf(screen.den), "Webelos Den ; Bear Den 1; Wolf Den 3; Empty Den 5");
}

} // namespace

class tst_assign : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.emplace();
        test::fill(People);
    }

    // Returning to a page reads its lists again. A typed den lists nobody, and only an adult's own den counts: Flo Gray
    // leads den 3 and isn't listed.
    void lists_data() { test::tableOf("awards/assign_lists.txt"); }
    void lists() { play({"lists"}); }

    // Marks follow the chosen people everywhere, nobody is chosen twice; scout 1 and adult 1 are two people, but the
    // pack's page removes the mark of either.
    void choosing_data() { test::tableOf("awards/assign_choosing.txt"); }
    void choosing() { play({"chosen", "marks"}); }

    // What is missing, and which award, date and focus remain.
    void missing_data() { test::tableOf("awards/assign_missing.txt"); }
    void missing() { play({"said", "order", "given"}); }

    // Somebody who has an award can be given it again.
    void assigning_data() { test::tableOf("awards/assign_assigning.txt"); }
    void assigning() { play({"scouts", "adults"}); }

    void badDate_data() { test::table({"way"}, "Tab\ntab1\nassign\nclear\nnone\nx\nAdults\ncboAward"); }
    void badDate()
    {
        const Screen screen;
        screen.go("pack4 award:Bear_Pin AssignDate=2/30/2026 ok " + test::cell("way"));
        QVERIFY(screen.said().contains("Invalid Date format"));
        screen.form.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&screen.form));
        auto& date = screen.get<QLineEdit>("txtAssignDate");
        QVERIFY(date.hasFocus());
        QCOMPARE(date.text() + screen.award.text() + screen.pack.text(0, 1), "2/30/2026Bear PinScout Name");
        QCOMPARE(screen.tabs.currentIndex(), 0);
        QCOMPARE(rowsOf(screen.selected), "/Abe Adams/NA/Scout/4");
        QCOMPARE(test::count("Assigned_Awards_Scouts"), 0);
        screen.go("AssignDate= Tab"); // an empty date lets the focus leave
        QVERIFY(!date.hasFocus());
    }

    // A den without scouts keeps the count of the previous den; if a row is refused, those before it stay.
    void failures_data() { test::tableOf("awards/assign_failures.txt"); }
    void failures()
    {
        const QString refuse = "Create Unique Index Once On Assigned_Awards_Adults (Adult_SID, Insignia_SID);"
                               "Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID) Values (2, 2)";
        QTEST(test::failureInChild(refuse, [] { Screen().go(test::cell("script")); }), "number");
        QTEST(QString::number(test::count("Assigned_Awards_Scouts")), "scouts");
        QTEST(QString::number(test::count("Assigned_Awards_Adults")), "adults");
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_assign)

#include "tst_assign.moc"
