#include "adults/frmAdults.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Pack.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/BoundGrid.h"
#include "widgets/ComboBox.h"
#include "widgets/TextGrid.h"

#include <QLineEdit>
#include <QTabWidget>

using namespace orlo;
using test::press;
using test::rows;

namespace
{

// The pack with titles of its own, and awards.
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

struct Screen : test::RecordScreen<frmAdults> {
    widgets::ListBox& list = get<widgets::ListBox>("lbAdults");
    widgets::BoundGrid& grid = get<widgets::BoundGrid>("dbgDenAssignment");
    widgets::TextGrid& awards = get<widgets::TextGrid>("fgAdultsAwards");
    QTabWidget& tab = get<QTabWidget>("tabAdult");

    // '@0' picks a row of the list, '#0' one of the den filter, "@@0" one of the positions, '!1' one of the awards,
    // "$0" a page, other words are buttons.
    void go(const QString& script) const
    {
        run(script, [&](const QString& word) {
            const int number = QString(word).remove(QRegularExpression("^\\D+")).toInt();
            if (word.startsWith("@@"))
                grid.setCurrentIndex(grid.model()->index(number, 0));
            else if (word.startsWith('@'))
                test::clickRow(list, number);
            else if (word.startsWith('#'))
                get<widgets::ComboBox>("cmbSelectedDens").setListIndex(number);
            else if (word.startsWith('!'))
                awards.setRow(number);
            else if (word.startsWith('$'))
                tab.setCurrentIndex(number);
            else
                press(form, word);
        });
    }
    // Hidden cells stand in brackets.
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

// The program's longer messages, and what the tables have for them.
const std::pair<QString, QString> Messages[] = {
    {"Delete Adult: ARE YOU SURE YOU WANT TO DELETE THE CURRENT ADULT RECORD and all of the Adult's Award Records? The "
     "alternitive is to set the adult to inactive. This will retain all the Adult's data in the program, but disable "
     "the Adult from showing up on reports.",
     "adult?"},
    {"Delete Assigned Position: Are you sure you want to delete the ", "delete? "},
    {"No Data Found: No data found for the selected search cryteria", "none"},
    {"Save Changes: Data Changes Not Saved.Do you want to save your changes", "save?"}};

// Plays the row's script, which may begin with '-' and the adults to delete beforehand, and compares what the other
// columns of the row name.
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
    const QString key = "= " + QString::number(onRecord ? screen.form.GetAdultSID() : 0);
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

    // Every field goes to its own column and comes back; what an adult of an older version, without dates and years,
    // holds after any save.
    void fields()
    {
        const Screen screen;
        QCOMPARE(
            screen.lostFields(R"(txtFirst First_Name A; txtMi MI B; txtLast Last_Name C; txtDOB Birth_Date 2/3/1980;
            txtAddress Address D; txtCity City E; txtState State F; txtZip Zip_Code G; txtPhone Phone H;
            txtWorkPhone WorkPhone I; txtEmail Email J; txtPackStartDate Pack_Start_Date 4/5/2026; txtNote Note K;
            txtYearsInScouts Years_In_Scouts 6; txtYearsInOtherPack Years_In_Other_Pack 7; comActive Active N)",
                              "Adults Where Adult_SID = 4"),
            "");
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

    // The program goes on after a failure of the rebuild.
    void trappedFailure()
    {
        test::fill("Alter Table Adults Rename Column Active To Was");
        const auto told = test::dismissReport();
        const Screen screen;
        QVERIFY(told->text.contains("\n3061\n"));
        QCOMPARE(screen.list.listCount(), 0);
    }
    // What ends the program; no position is the worse for it.
    void failures_data()
    {
        test::table({"case", "script", "sql", "number"}, R"(
            a birth date that can't be read | DOB=soon s                                   |                                              | 3421
            an adult without a name         | @1                                           | Update Adults Set First_Name = Null Where Adult_SID = 2 | 94
            a find with an apostrophe       | cmdFind>Last:O'Hara,cmdFind                  |                                              | 3075
            a den position without a title  | cmdAddDenAssn>cmbDen:0,cmdSave               |                                              | 9
            a den that is typed only        | cmdAddDenAssn>cmbDen=Tiger,cmbDenTitles:0,cmdSave  |                                              | 9
            a title without a rank          | cmdAddDenAssn>                               | Update Pack_Positions Set Sort_Order = Null  | 94
            a pack title with an apostrophe | cmdAddDenAssn>optPackPosition,cmbPackTitles:0,cmdSave | Update Pack_Positions Set Pack_Titles = 'Cook''s' Where Sort_Order = 2 | 3075
            a den that is gone              | @1 cmdEditDenAssn>cmdSave                    |                                              | 9)");
    }
    void failures()
    {
        QTEST(test::failureInChild(test::cell("sql"), [] { Screen().go(test::cell("script")); }), "number");
        QCOMPARE(left(), "5 + 2");
    }

    void records_data()
    {
        test::table({"case", "script", "label", "live", "page", "list", "adults", "awards", "left", "said"}, R"(
            a new adult is marked in the list            | n First=Zoe Mi=Q Last=Ash s     | Adult 4 of 4 | First Previous New Delete | 0   | Fay, Dot X.; Old, Bob; Young, Ann M.; <New>Ash, Zoe Q | 1/Y, 2/Y, 3/N, 4/Y, 5/Y | 6 | 5 + 2 |
            Add of a position saves the new adult        | $1 n Mi=Q cmdAddDenAssn>        | Adult 4 of 4 | First Previous New Delete | 0   | Fay, Dot X.; Old, Bob; Young, Ann M.; <New>,  Q | 1/Y, 2/Y, 3/N, 4/Y, 5/Y | 6 | 5 + 2 |
            with a list that stays empty, too            | -3 optInactive n cmdAddDenAssn> | None         | New                       | off |                                              | 1/Y, 2/Y, 4/Y, 5/Y      | 6 | 5 + 2 |
            the first adult of all                       | -1,2,3,4 n First=Zoe Last=Ash s | Adult 1 of 1 | New Delete                | 0   | Ash, Zoe                                     | 1/Y                     | 6 | 5 + 2 |
            Enter on the question keeps the adult        | @2 preset E                     | Adult 3 of 3 | First Previous New Delete | 0   | Fay, Dot X.; Old, Bob; Young, Ann M.         | 1/Y, 2/Y, 3/N, 4/Y      | 6 | 5 + 2 | adult?
            No keeps the adult                           | @2 no E                         | Adult 3 of 3 | First Previous New Delete | 0   | Fay, Dot X.; Old, Bob; Young, Ann M.         | 1/Y, 2/Y, 3/N, 4/Y      | 6 | 5 + 2 | adult?
            Yes takes the adult with awards and den positions, not the pack's | @2 yes E                        | Adult 2 of 2 | First Previous New Delete | 0   | Fay, Dot X.; Old, Bob                        | 2/Y, 3/N, 4/Y           | 1 | 5 + 2 | adult?
            the last one of all                          | -2,4 $1 yes E                   | Adult 1 of 1 | New                       | off |                                              | 3/N                     | 1 | 5 + 2 | adult?)");
    }
    void records() { play({"label", "live", "page", "list", "adults", "awards", "left", "said"}); }

    // The list, its first adult, and what a dialog for finding changed. Rows of the den filter: Tiger, Bear, Wolf, all;
    // the dialog offers Tiger and Wolf only.
    void sets_data()
    {
        test::table({"case", "script", "list", "first", "label", "live", "page", "said"}, R"(
            begins with the active adults by last name |                                              | Fay, Dot X.; Old, Bob; Young, Ann M.         | Dot | Adult 1 of 3 | Next Last New Delete                | 0   |
            those of a den                             | #2                                           | Old, Bob; Young, Ann M.                      | Bob | Adult 1 of 2 | Next Last New Delete                | 0   |
            with the inactive ones                     | optActive_Inactive #2                        | Idle, Cid; Old, Bob; Young, Ann M.           | Cid | Adult 1 of 3 | Next Last New Delete                | 0   |
            all dens again                             | #2 #3                                        | Fay, Dot X.; Old, Bob; Young, Ann M.         | Dot | Adult 1 of 3 | Next Last New Delete                | 0   |
            a den without adults empties list and page | $1 #1                                        |                                              | off | Adult 1 of 3 | New                                 | off |
            from there to another den                  | #1 #0                                        | Young, Ann M.                                | Ann | Adult 1 of 1 | New Delete                          | 0   |
            a den drops a change without a question    | First=X #0                                   | Young, Ann M.                                | Ann | Adult 1 of 1 | New Delete                          | 0   |
            a view asks and saves                      | First=X yes optInactive optActive            | Fay, X X.; Old, Bob; Young, Ann M.           | X   | Adult 1 of 3 | Next Last New Delete                | 0   | save?
            an order asks and drops                    | First=X no optOrderFirstName                 | Ann M. Young; Bob Old; Dot X. Fay            | Ann | Adult 1 of 3 | Next Last New Delete                | 0   | save?
            a find by first and last name              | @1 cmdFind>First:B,Last:O,cmdFind            | Old, Bob                                     | Bob | Adult 1 of 1 | New Delete                          | 0   |
            by initial and last name                   | @1 cmdFind>Mi:M,Last:Y,cmdFind               | Young, Ann M.                                | Ann | Adult 1 of 1 | New Delete                          | 0   |
            by nothing: all of every view              | #0 cmdFind>Last:y,Last:,cmdFind              | Fay, Dot X.; Idle, Cid; Old, Bob; Young, Ann M. | Dot | Adult 1 of 4 | Next Last New Delete                | 0   |
            by a den that is typed                     | #0 cmdFind>cmbDen=Wolf_Den_3,cmbDen^,cmdFind          | Idle, Cid; Old, Bob                          | Cid | Adult 1 of 2 | Next Last New Delete                | 0   |
            by a den that is picked                    | #0 cmdFind>cmbDen:1,cmbDen^,cmdFind             | Idle, Cid; Old, Bob                          | Cid | Adult 1 of 2 | Next Last New Delete                | 0   |
            a den that was cleared counts for nothing  | #0 cmdFind>cmbDen:1,cmbDen=,First:d,cmdFind        | Fay, Dot X.                                  | Dot | Adult 1 of 1 | New Delete                          | 0   |
            by a den and a name                        | #0 cmdFind>cmbDen:1,First:B,cmdFind          | Old, Bob                                     | Bob | Adult 1 of 1 | New Delete                          | 0   |
            nothing found keeps the place              | L ok cmdFind>cmbDen:0,cmdFind                | Fay, Dot X.; Old, Bob; Young, Ann M.         | Ann | Adult 3 of 3 | First Previous New Delete           | 0   | none
            nothing found keeps what was saved         | @1 First=Rob s ok cmdFind>cmbDen:1,First:R,cmdFind | Fay, Dot X.; Old, Rob; Young, Ann M.         | Rob | Adult 2 of 3 | First Previous Next Last New Delete | 0   | none
            a find from an empty list                  | -1,2,4 n c cmdFind>Last:I,cmdFind            | Idle, Cid                                    | Cid | Adult 1 of 1 | New Delete                          | 0   |
            a cancelled find changes nothing           | @1 cmdFind>Last:y,cmdCancel                  | Fay, Dot X.; Old, Bob; Young, Ann M.         | Bob | Adult 2 of 3 | First Previous Next Last New Delete | 0   |)");
    }
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
    void positions_data()
    {
        test::table({"case", "script", "said", "positions", "left"}, R"(
            walking shows them                | N                        |                                       | /3/Wolf/[2][2][N/A]                          | 5 + 2
            a new adult has none              | n                        |                                       |                                              | 5 + 2
            a list that goes empty shows none | @2 #1                    |                                       |                                              | 5 + 2
            Cancel brings them back           | L P n c                  |                                       | /3/Wolf/[2][2][N/A]                          | 5 + 2
            No keeps a position               | @2 @@1 no cmdDelDenAssn  | delete? Helper position in Wolf Den 3 | Den Leader/1/Tiger/[1][1][N/A]; Helper/3/Wolf/[2][1][N/A]; Gone///[9][1][N/A]; Chair/N/A/N/A/[0][1][7] | 5 + 2
            Yes takes the one that is marked  | @2 @@1 yes cmdDelDenAssn | delete? Helper position in Wolf Den 3 | Den Leader/1/Tiger/[1][1][N/A]; Gone///[9][1][N/A]; Chair/N/A/N/A/[0][1][7] | 4 + 2
            one of a den that is gone         | @2 @@2 yes cmdDelDenAssn | delete? Gone position in  Den         | Den Leader/1/Tiger/[1][1][N/A]; Helper/3/Wolf/[2][1][N/A]; Chair/N/A/N/A/[0][1][7] | 4 + 2
            one in the pack                   | @2 @@3 yes cmdDelDenAssn | delete? Chair Pack position           | Den Leader/1/Tiger/[1][1][N/A]; Helper/3/Wolf/[2][1][N/A]; Gone///[9][1][N/A] | 5 + 1
            one without a title               | @1 yes cmdDelDenAssn     | delete?  position in Wolf Den 3       | /3/Wolf/[2][2][N/A]                          | 5 + 2
            a new adult has none to take      | n s yes cmdDelDenAssn    | delete?  position in  Den             |                                              | 5 + 2)");
    }
    void positions() { play({"said", "positions", "left"}); }

    // Each dialog on one adult: what it shows at its end, and the adult's positions then.
    void dialogs_data()
    {
        test::table({"case", "script", "log", "held"}, R"(
            adds a den position           | @0 cmdAddDenAssn>cmbDen:1,cmbDenTitles:0,cmdSave | closed, live; Wolf Den 3 of Tiger Den 1, Wolf Den 3; Helper of Helper, Den Leader | 2: 4/2/Helper/100 + 4/Cook/5/8
            without a den it stays open   | @0 cmdAddDenAssn>cmbDenTitles:0,cmdSave      | open, live;  of Tiger Den 1, Wolf Den 3; Helper of Helper, Den Leader | 1: + 4/Cook/5/8
            adds a pack position          | @0 cmdAddDenAssn>optPackPosition,cmbPackTitles:0,cmdSave | closed, live; Chair of Chair, Cook        | 2: + 4/Cook/5/8, 4/Chair/2/9
            without a title it stays open | @0 cmdAddDenAssn>optPackPosition,cmdSave     | open, live;  of Chair, Cook               | 1: + 4/Cook/5/8
            a cancelled one adds nothing  | @0 cmdAddDenAssn>cmbDen:0,cmbDenTitles:1,cmdCancel | closed, live; Tiger Den 1 of Tiger Den 1, Wolf Den 3; Den Leader of Helper, Den Leader | 1: + 4/Cook/5/8
            a title of 50 characters fits | @0 cmdAddDenAssn>cmbDenTitles=ttttttttttttttttttttttttttttttttttttttttttttttttttt | open, live;  of Tiger Den 1, Wolf Den 3; tttttttttttttttttttttttttttttttttttttttttttttttttt of Helper, Den Leader | 1: + 4/Cook/5/8
            of the pack's, one of 60      | @0 cmdAddDenAssn>optPackPosition,cmbPackTitles=ttttttttttttttttttttttttttttttttttttttttttttttttttttttttttttt | open, live; tttttttttttttttttttttttttttttttttttttttttttttttttttttttttttt of Chair, Cook | 1: + 4/Cook/5/8
            the den is needed, too        | @2 cmdAddDenAssn>cmbDenTitles:1              | open, locked;  of ; Den Leader of Helper, Den Leader | 4: 1/1/Den Leader/5, 1/2/Helper/5, 1/9/Gone/5 + 1/Chair/5/7
            which Tab tells again         | @2 cmdAddDenAssn>cmbDenTitles:1,Tab          | open, live;  of ; Den Leader of Helper, Den Leader | 4: 1/1/Den Leader/5, 1/2/Helper/5, 1/9/Gone/5 + 1/Chair/5/7
            a pack position needs no den  | @2 cmdAddDenAssn>optPackPosition             | open, live;  of Chair, Cook               | 4: 1/1/Den Leader/5, 1/2/Helper/5, 1/9/Gone/5 + 1/Chair/5/7
            back to dens                  | @2 cmdAddDenAssn>optPackPosition,optDenPosition | open, locked;  of ;  of Helper, Den Leader    | 4: 1/1/Den Leader/5, 1/2/Helper/5, 1/9/Gone/5 + 1/Chair/5/7
            saves a new adult for it      | n cmdAddDenAssn>cmbDen:0,cmbDenTitles:1,cmdSave | closed, live; Tiger Den 1 of Tiger Den 1, Wolf Den 3; Den Leader of Helper, Den Leader | 1: 5/1/Den Leader/1 +
            no position, no dialog        | n s cmdEditDenAssn>cmdSave                   | not shown                                    | 0: +
            changes nothing               | @0 cmdEditDenAssn>cmdSave                    | closed, live; Cook of Chair, Cook         | 1: + 4/Cook/5/8
            changes a pack title          | @0 cmdEditDenAssn>cmbDenTitles:0,cmdSave     | closed, live; Chair of Chair, Cook        | 1: + 4/Chair/2/8
            changes a den title           | @1 cmdEditDenAssn>cmbDenTitles:0,cmdSave     | closed, live; Helper of Helper, Den Leader; Wolf Den 3 of Tiger Den 1 | 1: 2/2/Helper/100 +
            changes den and title         | @1 cmdEditDenAssn>cmbDen:0,cmbDenTitles:1,cmdSave | closed, live; Den Leader of Helper, Den Leader; Tiger Den 1 of Tiger Den 1 | 1: 2/1/Den Leader/Null +
            an empty den is none          | @1 cmdEditDenAssn>cmbDenTitles:1,cmbDen=,cmdSave   | open, live; Den Leader of Helper, Den Leader;  of Tiger Den 1 | 1: 2/2/Null/Null +)");
    }
    void dialogs() { play({"log", "held"}); }

    // The mark stays on the position that was worked on.
    void marks_data()
    {
        test::table({"case", "script", "marked"}, R"(
            added                     | @0 cmdAddDenAssn>optPackPosition,cmbPackTitles:0,cmdSave | Chair/N/A
            changed                   | @2 @@1 cmdEditDenAssn>cmbDenTitles:1,cmdSave | Den Leader/3
            the one after the deleted | @2 @@3 yes cmdDelDenAssn                     | Gone/
            walked                    | @2 @@2 P N                                   | Den Leader/1)");
    }
    void marks() { play({"marked"}); }

    // Another program's layout would have the wrong position deleted.
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

    // By adult, award and date: rows that read the same go together.
    void awards_data()
    {
        test::table({"case", "script", "grid", "awards"}, R"(
            the first is current              | @2 $1 cmdDeleteAward                         | Ann M Young; Date Assigned/Award/; 5/2/2025/Knot Badge/1; 5/2/2026/Knot Badge/1; 5/2/2026/Knot Badge/1; 5/2/2026/Star Pin/2 | 6
            equal rows go together            | @2 $1 !3 cmdDeleteAward                      | Ann M Young; Date Assigned/Award/; 5/2/2025/Knot Badge/1; 5/2/2026/Star Pin/2 | 4
            walking shows them                | @2 $1 !3 cmdDeleteAward P                    | Bob Old; Date Assigned/Award/; 5/2/2026/Knot Badge/1 | 4
            a new adult has none              | @1 n                                         | ; Date Assigned/Award/                       | 6
            a list that goes empty shows none | @2 #1                                        | ; Date Assigned/Award/                       | 6
            two added on one day              | @1 $1 cmdAddAward>AssignedDate:6/7/26,cmdSelectAll,cmdAddToAdult | Bob Old; Date Assigned/Award/; 5/2/2026/Knot Badge/1; 6/7/2026/Knot Badge/1; 6/7/2026/Star Pin/2 | 8)");
    }
    void awards() { play({"grid", "awards"}); }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_adults)

#include "tst_adults.moc"
