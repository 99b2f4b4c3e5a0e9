#include "platform/Conversion.h"
#include "shell/forms/PersonShown.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Pack.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/BoundGrid.h"
#include "widgets/ComboBox.h"
#include "widgets/ListBox.h"
#include "widgets/TextGrid.h"
#include "widgets/Twips.h"

#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>

#include <optional>

using namespace orlo;
using test::press;
using test::rows;

namespace
{

// The pack with its own titles, and awards.
const QString People = QString(test::Pack) + R"(
Delete From Den_Titles; Insert Into Den_Titles Values ('Den Leader', 1), ('Helper', Null);
Delete From Pack_Positions; Insert Into Pack_Positions Values ('Cook', 7), ('Chair', 2);
Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned) Values (1, 1, '2026-05-02'),
    (1, 1, '2026-05-02'), (1, 1, '2025-05-02'), (1, 2, '2026-05-02'), (1, 9, '2026-05-02'), (2, 1, '2026-05-02'))";

// How many positions there are in dens and in the pack.
QString left()
{
    return QString("%1 + %2").arg(test::count("Leader_Den_Assignments")).arg(test::count("Leader_Pack_Assn"));
}

struct Screen : test::RecordScreen {
    Screen() : RecordScreen("frmAdults") {}
    widgets::ListBox& list = get<widgets::ListBox>("lbAdults");
    widgets::BoundGrid& grid = get<widgets::BoundGrid>("dbgDenAssignment");
    widgets::TextGrid& awards = get<widgets::TextGrid>("fgAdultsAwards");
    QTabWidget& tab = get<QTabWidget>("tabAdult");

    // In addition to the usual words: "position:0" and "award:1" make a row of these grids current, "page:0" turns to a
    // page.
    void go(const QString& script) const
    {
        run(script, [&](const QString& word) {
            const int number = word.section(':', 1).toInt();
            if (word.startsWith("position:"))
                grid.setCurrentIndex(grid.model()->index(number, 0));
            else if (word.startsWith("award:"))
                awards.setRow(number);
            else if (word.startsWith("page:"))
                tab.setCurrentIndex(number);
            else
                press(form, word);
        });
    }
    // Hidden cells are in brackets.
    [[nodiscard]] QString positions() const
    {
        QStringList lines;
        for (int row = 0; row < grid.recordCount(); ++row) {
            lines += QString();
            for (int column = 0; column < 6; ++column)
                lines.last() += QString(grid.isColumnHidden(column) ? "[%1]" : "%1/")
                                    .arg(grid.model()->index(row, column).data().toString());
        }
        return lines.join("; ");
    }
};

// The program's longer messages, and the tables' words for them.
const std::pair<QString, QString> Messages[] = {
    {"Delete Adult: ARE YOU SURE YOU WANT TO DELETE THE CURRENT ADULT RECORD and all of the Adult's Award Records? The "
     "alternitive is to set the adult to inactive. This will retain all the Adult's data in the program, but disable "
     "the Adult from showing up on reports.",
     "adult?"},
    {"Delete Assigned Position: Are you sure you want to delete the ", "delete? "},
    {"No Data Found: No data found for the selected search cryteria", "none"},
    {"Save Changes: Data Changes Not Saved.Do you want to save your changes", "save?"}};

// Plays the row's script, which may begin with '-' and the adults to delete first, and compares what the other columns
// of the row name.
void play(std::initializer_list<const char*> columns)
{
    QFETCH(QString, script);
    if (script.startsWith('-'))
        test::fill("Delete From Adults Where Adult_SID In (" + script.section(' ', 0, 0).sliced(1) + ')');
    const Screen screen;
    screen.go(script.startsWith('-') ? script.section(' ', 1) : script);
    const auto& first = screen.get<QLineEdit>("txtFirst");
    QString grid = screen.get<QLabel>("lblAdultName").text();
    for (int row = 0; row < screen.awards.rows(); ++row)
        grid += "; " + screen.awards.text(row, 1) + '/' + screen.awards.text(row, 2) + '/' + screen.awards.text(row, 3);
    const bool onRecord = screen.list.listCount() > 0 && screen.get("cmdNew").isEnabled();
    const QString key =
        "= " + QString::number(onRecord ? dynamic_cast<const PersonShown&>(screen.form).currentPerson() : 0);
    const QString held = rows("Select * From Leader_Den_Assignments Where Adult_SID " + key + " Order by Den_SID") +
                         " + " +
                         rows("Select Leader_SID, Position_Title, Sort_Order, Leader_Pack_Assn From Leader_Pack_Assn "
                              "Where Leader_SID " +
                              key);
    QString said = screen.said();
    for (const auto& [message, word] : Messages)
        said.replace(message, word);
    auto seen = screen.shown();
    seen.insert({{"list", test::textsOf(screen.list)},
                 {"page", screen.tab.isEnabled() ? QString::number(screen.tab.currentIndex()) : "off"},
                 {"first", first.isEnabled() ? first.text() : "off"},
                 {"said", said.trimmed()},
                 {"log", screen.log},
                 {"positions", screen.positions()},
                 {"marked", screen.grid.columnText(0) + '/' + screen.grid.columnText(1)},
                 {"adults", rows("Select Adult_SID, Active From Adults Order by Adult_SID")},
                 {"left", left()},
                 {"held", QString("%1: %2").arg(screen.grid.recordCount()).arg(held.trimmed())},
                 {"grid", grid},
                 {"awards", QString::number(test::count("Assigned_Awards_Adults"))}});
    test::compare(seen, columns);
}

} // namespace

class tst_adults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.emplace();
        test::copyLayouts();
        test::fill(People);
        platform::setToday(QDate(2026, 11, 24));
    }

    // Every field goes to its own column and back; also what an adult of an older version, without dates and years,
    // contains after any save.
    void fields()
    {
        const Screen screen;
        QCOMPARE(screen.lostFields("adults/fields.txt", "Adults Where Adult_SID = 4"), "");
        screen.go("@1 First=Rob s");
        QCOMPARE(rows("Select Birth_Date, Pack_Start_Date, Years_In_Scouts, Years_In_Other_Pack, Email, Note, "
                      "Assigned_Den_SID From Adults Where Adult_SID = 2"),
                 "1/1/1001/Null/0/0///Null");
    }
    void badStartDate()
    {
        const Screen screen;
        screen.go("PackStartDate=2/30/26 ok Tab");
        QCOMPARE(screen.said().remove(u'\r').section(": ", 1),
                 "Invalid Date format (mm/dd/yy or m/d/yyyy) \n or an invalid date has been entered. "
                 "\n\nPlease re-enter the date.");
        QCOMPARE(screen.form.focusWidget(), &screen.get("txtPackStartDate"));
    }

    // The program continues after a failure of the rebuild.
    void trappedFailure()
    {
        test::fill("Alter Table Adults Rename Column Active To Was");
        const auto told = test::dismissReport();
        const Screen screen;
        QVERIFY(told->text.contains("\n3061\n"));
        QCOMPARE(screen.list.listCount(), 0);
    }
    // What ends the program; no position is damaged by it.
    void failures_data() { test::tableOf("adults/adults_failures.txt"); }
    void failures()
    {
        QTEST(test::failureInChild(test::cell("sql"), [] { Screen().go(test::cell("script")); }), "number");
        QCOMPARE(left(), "5 + 2");
    }

    void records_data() { test::tableOf("adults/adults_records.txt"); }
    void records() { play({"label", "live", "page", "list", "adults", "awards", "left", "said"}); }

    // The list, its first adult, and what a dialog for finding changed. Rows of the den filter: Tiger, Bear, Wolf, all;
    // the dialog offers only Tiger and Wolf.
    void sets_data() { test::tableOf("adults/adults_sets.txt"); }
    void sets() { play({"list", "first", "label", "live", "page", "said"}); }
    void noDens()
    {
        test::fill("Delete From Dens");
        const auto told = test::answerNext();
        const Screen screen;
        QCOMPARE(told->title + ": " + told->text,
                 "Selection Error: There is no Active Den(s) available to select from. Please create or activate "
                 "Den(s) in the Den From.");
        QCOMPARE(screen.list.listCount(), 3);
    }

    // Title, den, level and the three keys of each position of the adult on screen.
    void positions_data() { test::tableOf("adults/adults_positions.txt"); }
    void positions() { play({"said", "positions", "left"}); }

    // Each dialog on one adult: what it finally shows, and the adult's positions then.
    void dialogs_data() { test::tableOf("adults/adults_dialogs.txt"); }
    void dialogs() { play({"log", "held"}); }

    // The mark stays on the position that was worked on.
    void marks_data() { test::tableOf("adults/adults_marks.txt"); }
    void marks() { play({"marked"}); }

    // Another program's layout would make the wrong position be deleted.
    void foreignLayout()
    {
        const QString file = m_folder->path() + "/DenAssign.grd";
        QByteArray lines = test::contents(file);
        test::write(file, lines.replace("Den_SID", "~").replace("Leader_SID", "Den_SID").replace("~", "Leader_SID"));
        const auto told = test::answerNext();
        const Screen screen;
        screen.go("@1");
        QVERIFY(told->title == "Grid Layout" &&
                told->text.contains("Den_SID, Leader_SID, Leader_Pack_Assn, in this order"));
        QCOMPARE(screen.positions(), "/3/Wolf/[2][2][N/A]");
    }

    // By adult, award and date: rows that read the same are deleted together.
    void awards_data() { test::tableOf("adults/adults_awards.txt"); }
    void awards() { play({"grid", "awards"}); }

    // The awards' keys are beyond the right edge, whatever is pressed.
    void keysOutOfSight()
    {
        const Screen screen;
        screen.go("@1 page:1");
        screen.form.resize(1100, 600);
        for (auto key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Right, Qt::Key_End})
            QTest::keyClick(&screen.awards, key);
        QVERIFY(!screen.awards.text(1, 3).isEmpty());
        QCOMPARE(screen.awards.columnWidth(3), widgets::twipsToPixels(2000, &screen.awards));
        QCOMPARE(screen.awards.columnViewportPosition(3), screen.awards.viewport()->width());
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_adults)

#include "tst_adults.moc"
