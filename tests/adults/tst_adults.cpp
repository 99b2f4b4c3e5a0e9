#include "adults/dlgAddDenLeaderAsign.h"
#include "adults/dlgAddDenLeaderAsignEdit.h"
#include "adults/dlgFindAdult.h"
#include "adults/frmAdults.h"
#include "shell/dlgError.h"
#include "support/RecordScreen.h"
#include "support/Table.h"
#include "widgets/BoundGrid.h"
#include "widgets/ComboBox.h"
#include "widgets/TextGrid.h"

#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>

using namespace orlo;
using test::rows;
using test::textsOf;

namespace
{

// Ann leads a den that is gone, too; Bob's den of an older version is 2; Dot has a position in the pack only.
constexpr const char* People = R"(
Insert Into Dens (Den_SID, Den_Number, Den_Type, Active) Values (1, 1, 'Tiger', 'Y'), (2, 3, 'Wolf', 'Y'),
    (3, 2, 'Bear', 'N');
Insert Into Adults (Adult_SID, First_Name, MI, Last_Name, Active, Assigned_Den_SID) Values
    (1, 'Ann', 'M', 'Young', 'Y', Null), (2, 'Bob', Null, 'Old', 'Y', 2), (3, 'Cid', ' ', 'Idle', 'N', 2),
    (4, 'Dot', 'X', 'Fay  ', 'Y', Null);
Insert Into Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title, Sort_Order) Values
    (1, 1, 'Den Leader', 5), (1, 2, 'Helper', 5), (1, 9, 'Gone', 5), (2, 2, Null, Null), (3, 2, 'Helper', 5);
Insert Into Leader_Pack_Assn (Leader_Pack_Assn, Leader_SID, Position_Title, Sort_Order) Values
    (7, 1, 'Chair', 5), (8, 4, 'Cook', 5);
Delete From Den_Titles; Insert Into Den_Titles Values ('Den Leader', 1), ('Helper', Null);
Delete From Pack_Positions; Insert Into Pack_Positions Values ('Cook', 7), ('Chair', 2);
Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type) Values (1, 'Knot ', 'Badge'), (2, 'Star', 'Pin');
Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned) Values (1, 1, '2026-05-02'),
    (1, 1, '2026-05-02'), (1, 1, '2025-05-02'), (1, 2, '2026-05-02'), (1, 9, '2026-05-02'), (2, 1, '2026-05-02'))";
const QString DenPositions = "Select * From Leader_Den_Assignments Order by Adult_SID, Den_SID";
const QString PackPositions = "Select Leader_SID, Position_Title, Sort_Order, Leader_Pack_Assn From Leader_Pack_Assn";
const QString Awards = "Select Adult_SID, Insignia_SID, Date_Assigned From Assigned_Awards_Adults "
                       "Order by Adult_SID, Insignia_SID, Date_Assigned";
constexpr std::initializer_list<const char*> Boxes = {
    "txtFirst", "txtMi",    "txtLast",      "txtDOB",   "txtAddress",       "txtCity",          "txtState",
    "txtZip",   "txtPhone", "txtWorkPhone", "txtEmail", "txtPackStartDate", "txtYearsInScouts", "txtYearsInOtherPack"};

// Works a dialog: "den=0" picks a row of cmbDen, "+text" types behind it, "Last=X" types into txtLast, a button's or
// option's name is a click; the dialog is cancelled if it is still open. What its boxes showed and offered, which
// buttons were live at the end, and whether that closed it.
template <class Dialog>
QString work(const QString& steps, const std::function<void()>& open)
{
    QString log = "not shown";
    test::whenShown<Dialog>([&](Dialog& dialog) {
        log.clear();
        const auto words = steps.split(' ', Qt::SkipEmptyParts);
        QStringList shown;
        bool savable = false;
        const auto look = [&] {
            shown.clear();
            for (const auto* box : dialog.template findChildren<widgets::ComboBox*>())
                if (box->isVisible()) {
                    QStringList offered;
                    for (int row = 0; row < box->listCount(); ++row)
                        offered += box->list(row);
                    shown += box->text() + " of " + offered.join(", ");
                }
            shown.sort();
            const auto* save = dialog.template findChild<QPushButton*>("cmdSave");
            savable = save && save->isEnabled();
        };
        for (const QString& word : words) {
            const QByteArray name = word.section('=', 0, 0).toUtf8();
            if (auto* box = dialog.template findChild<widgets::ComboBox*>(name))
                box->setListIndex(word.section('=', 1).toInt());
            else if (auto* line = dialog.template findChild<QLineEdit*>("txt" + name))
                line->setText(word.section('=', 1));
            else if (word.startsWith('+'))
                dialog.template findChild<widgets::ComboBox*>("cmbDen")->setText(word.sliced(1));
            else {
                look();
                QTest::mouseClick(&test::control<QWidget>(dialog, name.constData()), Qt::LeftButton, {}, QPoint(8, 8));
            }
        }
        const bool stays = widgets::Instance<Dialog>::loaded() == &dialog;
        if (stays)
            look();
        log = QString(stays ? "open " : "closed ") + (savable ? "savable " : "") + shown.join("; ");
        if (stays)
            QTest::mouseClick(&test::control<QPushButton>(dialog, "cmdCancel"), Qt::LeftButton);
    });
    open();
    return log.trimmed();
}

struct Screen : test::RecordScreen<frmAdults> {
    widgets::ListBox& list = get<widgets::ListBox>("lbAdults");
    widgets::BoundGrid& grid = get<widgets::BoundGrid>("dbgDenAssignment");

    // '@0' picks a row of the list, '#0' one of the den filter, "@@0" one of the positions; other words are buttons.
    void go(const QString& script) const
    {
        run(script, [&](const QString& word) {
            if (word.startsWith("@@"))
                grid.setCurrentIndex(grid.model()->index(word.sliced(2).toInt(), 0));
            else if (word.startsWith('@'))
                test::clickRow(list, word.sliced(1).toInt());
            else if (word.startsWith('#'))
                get<widgets::ComboBox>("cmbSelectedDens").setListIndex(word.sliced(1).toInt());
            else
                QTest::mouseClick(&get(word.toUtf8().constData()), Qt::LeftButton, {}, QPoint(8, 8));
        });
    }
    [[nodiscard]] QString positions() const
    {
        QStringList lines;
        for (int row = 0; row < grid.recordCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < 6; ++column)
                cells += grid.model()->index(row, column).data().toString();
            lines += cells.join('/');
        }
        return lines.join("; ");
    }
};

} // namespace

class tst_adults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<test::AppFolder>();
        QVERIFY(QFile::copy(ORLO_SOURCE_DIR "/src/layouts/DenAssign.grd", m_folder->path() + "/DenAssign.grd"));
        test::fill(People);
        platform::setToday(QDate(2026, 11, 24));
    }
    void cleanup() { m_folder.reset(); }

    // Every field goes to its own column and comes back.
    void fields()
    {
        const Screen screen;
        const QStringList typed{"A", "B", "C", "2/3/1980", "D", "E", "F", "G", "H", "I", "J", "4/5/26", "6", "7"};
        for (qsizetype i = 0; i < typed.size(); ++i)
            screen.type(Boxes.begin()[i], typed[i]);
        screen.get<widgets::ComboBox>("comActive").setText("N");
        screen.get<QPlainTextEdit>("txtNote").setPlainText("K\nL");
        screen.go("s");
        QCOMPARE(rows("Select First_Name, MI, Last_Name, Birth_Date, Address, City, State, Zip_Code, Phone, WorkPhone, "
                      "Email, Pack_Start_Date, Years_In_Scouts, Years_In_Other_Pack, Active, Note From Adults "
                      "Where Adult_SID = 4"),
                 "A/B/C/2/3/1980/D/E/F/G/H/I/J/4/5/2026/6/7/N/K\nL");
        screen.go("N P");
        QStringList shown;
        for (const char* box : Boxes)
            shown += screen.get<QLineEdit>(box).text();
        QCOMPARE(shown.join('/'), "A/B/C/2/3/1980/D/E/F/G/H/I/J/4/5/2026/6/7");
        QCOMPARE(screen.get<widgets::ComboBox>("comActive").text(), "N");
        QCOMPARE(screen.get<QPlainTextEdit>("txtNote").toPlainText(), "K\nL");
    }

    // What an adult of an older version, without dates and years, holds after any save.
    void emptyFields()
    {
        const Screen screen;
        screen.go("@1 First=Rob s");
        const QString stored = "Select Birth_Date, Pack_Start_Date, Years_In_Scouts, Years_In_Other_Pack, "
                               "Assigned_Den_SID, Active From Adults Where Adult_SID = 2";
        QCOMPARE(rows(stored), "1/1/1001/Null/0/0/Null/Y");
        QCOMPARE(screen.get<QLineEdit>("txtDOB").text(), "");
        screen.go("PackStartDate=2/30/26 ok");
        QTest::keyClick(&screen.get("txtPackStartDate"), Qt::Key_Tab);
        QVERIFY(screen.said().contains("Invalid Date format"));
        QCOMPARE(screen.form.focusWidget(), &screen.get("txtPackStartDate"));
    }
    void birthDateIsNone()
    {
        QCOMPARE(test::failureInChild(QString(), [] { Screen().go("DOB=soon s"); }), "Run-time error '3421':");
    }
    // The program goes on after a failure of the rebuild.
    void trappedFailure()
    {
        test::fill("Alter Table Adults Rename Column Active To Was");
        QString number;
        test::whenShown<dlgError>([&](dlgError& dialog) {
            number = QString::number(gErrNumber);
            QTest::mouseClick(&test::control<QPushButton>(dialog, "cmdOk"), Qt::LeftButton);
        });
        const Screen screen;
        QCOMPARE(number, "3061");
        QCOMPARE(screen.list.listCount(), 0);
    }

    void records_data()
    {
        test::table({"name", "script", "state", "list", "stored", "said"}, R"(
            new     | n First=Zoe Mi=Q Last=Ash s | Adult 4 of 4 FP..n.d | Fay, Dot X.; Old, Bob; Young, Ann M.; <New>Ash, Zoe Q | 1/Y, 2/Y, 3/N, 4/Y, 5/Y |
            nobody  | n First=Zoe Mi=Q Last=Ash s | Adult 1 of 1 ....n.d | Ash, Zoe Q. | 1/Y |
            refused | @2 no E | Adult 3 of 3 FP..n.d | Fay, Dot X.; Old, Bob; Young, Ann M. | 1/Y, 2/Y, 3/N, 4/Y | no
            deleted | @2 yes E | Adult 2 of 2 FP..n.d | Fay, Dot X.; Old, Bob | 2/Y, 3/N, 4/Y | yes)");
    }
    void records()
    {
        QFETCH(QString, script);
        QFETCH(QString, said);
        if (!qstrcmp(QTest::currentDataTag(), "nobody"))
            test::fill("Delete From Adults");
        const Screen screen;
        screen.go(script);
        QTEST(screen.state(), "state");
        QTEST(textsOf(screen.list), "list");
        QTEST(rows("Select Adult_SID, Active From Adults Order by Adult_SID"), "stored");
        const QString anns = "1/1/5/2/2025, 1/1/5/2/2026, 1/1/5/2/2026, 1/2/5/2/2026, 1/9/5/2/2026, ";
        if (script.contains('E'))
            QCOMPARE(rows(Awards), (said == "no" ? anns : QString()) + "2/1/5/2/2026");
        if (script.contains('E'))
            QCOMPARE(screen.said(),
                     "Delete Adult: ARE YOU SURE YOU WANT TO DELETE THE CURRENT ADULT RECORD and all of the Adult's "
                     "Award Records? The alternitive is to set the adult to inactive. This will retain all the "
                     "Adult's data in the program, but disable the Adult from showing up on reports.");
        QCOMPARE(test::count("Leader_Den_Assignments", "Adult_SID = 1"), 3);
    }

    // Rows of the den filter: Tiger, Bear, Wolf, all.
    void sets_data()
    {
        test::table({"script", "list", "first", "said"}, R"(
                                  | Fay, Dot X.; Old, Bob; Young, Ann M. | Dot |
            optInactive           | Idle, Cid                            | Cid |
            optActive_Inactive    | Fay, Dot X.; Idle, Cid; Old, Bob; Young, Ann M. | Dot |
            optOrderFirstName     | Ann M. Young; Bob Old; Dot X. Fay    | Ann |
            #2                    | Old, Bob; Young, Ann M.              | Bob |
            optInactive #2        | Idle, Cid                            | Cid |
            optActive_Inactive #2 | Idle, Cid; Old, Bob; Young, Ann M.   | Cid |
            #2 #3                 | Fay, Dot X.; Old, Bob; Young, Ann M. | Dot |
            #1                    |                                      | off |
            #1 #0                 | Young, Ann M.                        | Ann |
            First=X #0            | Young, Ann M.                        | Ann |
            First=X yes optInactive optActive | Fay, X X.; Old, Bob; Young, Ann M. | X | Save Changes
            First=X no optOrderFirstName | Ann M. Young; Bob Old; Dot X. Fay | Ann | Save Changes)");
    }
    void sets()
    {
        QFETCH(QString, script);
        const Screen screen;
        screen.go(script);
        QTEST(textsOf(screen.list), "list");
        const auto& first = screen.get<QLineEdit>("txtFirst");
        QTEST(first.isEnabled() ? first.text() : "off", "first");
        QTEST(screen.said().section(':', 0, 0), "said");
    }
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

    // Only active dens are offered: Tiger, Wolf.
    void find_data()
    {
        test::table({"dialog", "before", "list", "state", "said"}, R"(
            Last=y cmdFind           | @1 | Young, Ann M. | Adult 1 of 1 ....n.d |
            First=B Last=O cmdFind   | @1 | Old, Bob      | Adult 1 of 1 ....n.d |
            Mi=M Last=Y cmdFind      | @1 | Young, Ann M. | Adult 1 of 1 ....n.d |
            Last=i cmdFind           | #0 | Idle, Cid     | Adult 1 of 1 ....n.d |
            Last=y Last= cmdFind     | #0 | Fay, Dot X.; Idle, Cid; Old, Bob; Young, Ann M. | Adult 1 of 4 ..NLn.d |
            cmbDen=1 cmdFind         | #0 | Idle, Cid; Old, Bob | Adult 1 of 2 ..NLn.d |
            cmbDen=1 First=B cmdFind | #0 | Old, Bob      | Adult 1 of 1 ....n.d |
            cmbDen=0 cmdFind         | L  | Fay, Dot X.; Old, Bob; Young, Ann M. | Adult 3 of 3 FP..n.d | none
            Last=ou cmdFind          | @1 | Fay, Dot X.; Old, Bob; Young, Ann M. | Adult 2 of 3 FPNLn.d | none
            cmbDen=1 First=R cmdFind | @1 First=Rob s | Fay, Dot X.; Old, Rob; Young, Ann M. | Adult 2 of 3 FPNLn.d | none
            Last=y cmdSelectAll      | #0 | Young, Ann M. | Adult 1 of 1 ....n.d |
            Last=y cmdCancel         | @1 | Fay, Dot X.; Old, Bob; Young, Ann M. | Adult 2 of 3 FPNLn.d |)");
    }
    void find()
    {
        QFETCH(QString, dialog);
        QFETCH(QString, before);
        QFETCH(QString, said);
        const Screen screen;
        screen.go(before);
        if (!said.isEmpty())
            screen.go("ok");
        const QString log = work<dlgFindAdult>(dialog, [&] { screen.click("cmdFind"); });
        QVERIFY2(log.startsWith("closed") || log.startsWith("open"), qPrintable(log));
        QTEST(textsOf(screen.list), "list");
        QTEST(screen.state(), "state");
        QCOMPARE(screen.said(), said.isEmpty() ? "" : "No Data Found: No data found for the selected search cryteria");
    }

    // Title, den, level and the three keys of each position; a walk and a click bring them along.
    void positions()
    {
        const Screen screen;
        QCOMPARE(screen.positions(), "Cook/N/A/N/A/0/4/8");
        screen.go("N");
        QCOMPARE(screen.positions(), "/3/Wolf/2/2/N/A");
        screen.go("@2");
        QCOMPARE(screen.positions(),
                 "Den Leader/1/Tiger/1/1/N/A; Helper/3/Wolf/2/1/N/A; Gone///9/1/N/A; Chair/N/A/N/A/0/1/7");
        screen.go("n");
        QCOMPARE(screen.positions(), "");
        for (int column = 0; column < 6; ++column)
            QCOMPARE(screen.grid.isColumnHidden(column), column > 2);
    }
    void deletePositions_data()
    {
        test::table({"script", "asked", "dens", "packs"}, R"(
            @2 @@1 yes | Helper position in Wolf Den 3 | 1/1, 1/9, 2/2, 3/2 | 1/7, 4/8
            @2 @@1 no  | Helper position in Wolf Den 3 | 1/1, 1/2, 1/9, 2/2, 3/2 | 1/7, 4/8
            @2 @@2 yes | Gone position in  Den         | 1/1, 1/2, 2/2, 3/2 | 1/7, 4/8
            @2 @@3 yes | Chair Pack position           | 1/1, 1/2, 1/9, 2/2, 3/2 | 4/8
            @1 yes     | position in Wolf Den 3        | 1/1, 1/2, 1/9, 2/2, 3/2 | 1/7, 4/8)");
    }
    void deletePositions()
    {
        QFETCH(QString, script);
        QFETCH(QString, asked);
        QFETCH(QString, dens);
        QFETCH(QString, packs);
        const Screen screen;
        screen.go(script + " cmdDelDenAssn");
        QCOMPARE(screen.said().simplified(),
                 ("Delete Assigned Position: Are you sure you want to delete the " + asked).simplified());
        QCOMPARE(rows("Select Adult_SID, Den_SID From Leader_Den_Assignments Order by Adult_SID, Den_SID"), dens);
        QCOMPARE(rows("Select Leader_SID, Leader_Pack_Assn From Leader_Pack_Assn"), packs);
        const auto held = [&](const QString& all, const char* adult) { return all.count(QRegularExpression(adult)); };
        const char* own = script.startsWith("@2") ? "\\b1/" : "\\b2/\\d";
        QCOMPARE(screen.grid.recordCount(), held(dens, own) + (own[2] == '1' ? held(packs, own) : 0));
    }
    // Adding stores the adult first.
    void positionOfANewAdult()
    {
        const Screen screen;
        screen.go("n First=Zoe");
        QCOMPARE(work<dlgAddDenLeaderAsign>("cmbDen=0 cmbDenTitles=1 cmdSave", [&] { screen.click("cmdAddDenAssn"); }),
                 "closed savable Den Leader of Helper, Den Leader; Tiger Den 1 of Tiger Den 1, Wolf Den 3");
        QCOMPARE(screen.state(), "Adult 4 of 4 FP..n.d");
        QCOMPARE(screen.positions(), "Den Leader/1/Tiger/1/5/N/A");
        QCOMPARE(rows("Select First_Name, Adult_SID From Adults Where Adult_SID = 5"), "Zoe/5");
    }

    // Each dialog on one adult: what it shows at its end, and the positions that there are then.
    void dialogs_data()
    {
        test::table({"steps", "adult", "log", "dens", "packs"}, R"(
            cmbDen=1 cmbDenTitles=0 cmdSave | add @0 | closed savable Helper of Helper, Den Leader; Wolf Den 3 of Tiger Den 1, Wolf Den 3 | 4/2/Helper/100 | 4/Cook/5/8
            cmdSave | add @0 | open savable  of Helper, Den Leader;  of Tiger Den 1, Wolf Den 3 | | 4/Cook/5/8
            optPackPosition cmbPackTitles=0 cmdSave | add @0 | closed savable Chair of Chair, Cook | | 4/Cook/5/8, 4/Chair/2/9
            optPackPosition cmbPackTitles=1 cmdSave | add @0 | closed savable Cook of Chair, Cook | | 4/Cook/5/8, 4/Cook/7/9
            optPackPosition cmdSave | add @0 | open savable  of Chair, Cook | | 4/Cook/5/8
            cmbDen=0 cmdCancel | add @0 | closed savable  of Helper, Den Leader; Tiger Den 1 of Tiger Den 1, Wolf Den 3 | | 4/Cook/5/8
            cmbDenTitles=1 | add @2 | open  of ; Den Leader of Helper, Den Leader | 1/1/Den Leader/5, 1/2/Helper/5, 1/9/Gone/5 | 1/Chair/5/7
            optPackPosition | add @2 | open savable  of Chair, Cook | 1/1/Den Leader/5, 1/2/Helper/5, 1/9/Gone/5 | 1/Chair/5/7
            optPackPosition optDenPosition | add @2 | open  of ;  of Helper, Den Leader | 1/1/Den Leader/5, 1/2/Helper/5, 1/9/Gone/5 | 1/Chair/5/7
            cmdSave | edit @0 | closed savable Cook of Chair, Cook | | 4/Cook/5/8
            cmbDenTitles=0 cmdSave | edit @0 | closed savable Chair of Chair, Cook | | 4/Chair/2/8
            cmbDenTitles=0 cmdCancel | edit @0 | closed savable Chair of Chair, Cook | | 4/Cook/5/8
            cmbDenTitles=0 cmdSave | edit @1 | closed savable Helper of Helper, Den Leader; Wolf Den 3 of Tiger Den 1 | 2/2/Helper/100 |
            cmbDen=0 cmbDenTitles=1 cmdSave | edit @1 | closed savable Den Leader of Helper, Den Leader; Tiger Den 1 of Tiger Den 1 | 2/1/Den Leader/Null |
            cmbDenTitles=1 + cmdSave | edit @1 | open savable  of Tiger Den 1; Den Leader of Helper, Den Leader | 2/2/Null/Null |)");
    }
    void dialogs()
    {
        QFETCH(QString, steps);
        QFETCH(QString, adult);
        const Screen screen;
        screen.go(adult.section(' ', 1));
        const QString key = QString::number(screen.form.GetAdultSID());
        QString log = adult.startsWith("add")
                          ? work<dlgAddDenLeaderAsign>(steps, [&] { screen.click("cmdAddDenAssn"); })
                          : work<dlgAddDenLeaderAsignEdit>(steps, [&] { screen.click("cmdEditDenAssn"); });
        QTEST(log, "log");
        QTEST(rows("Select * From Leader_Den_Assignments Where Adult_SID = " + key + " Order by Den_SID"), "dens");
        const QString packs = rows(PackPositions + " Where Leader_SID = " + key);
        QTEST(packs, "packs");
        QCOMPARE(screen.grid.recordCount(), test::count("Leader_Assignments", "Leader_SID = " + key));
    }
    // A title that stands in the box and wasn't picked has no rank.
    void titleNotPicked()
    {
        QCOMPARE(test::failureInChild(QString(),
                                      [] {
                                          const Screen screen;
                                          screen.go("@1");
                                          work<dlgAddDenLeaderAsignEdit>("cmdSave",
                                                                         [&] { screen.click("cmdEditDenAssn"); });
                                      }),
                 "Run-time error '9':");
        QCOMPARE(rows(DenPositions), "1/1/Den Leader/5, 1/2/Helper/5, 1/9/Gone/5, 2/2/Null/Null, 3/2/Helper/5");
    }
    void packTitleWithoutRank()
    {
        QCOMPARE(test::failureInChild("Update Pack_Positions Set Sort_Order = Null",
                                      [] { Screen().click("cmdAddDenAssn"); }),
                 "Run-time error '94':");
    }

    // By adult, award and date: rows that read the same go together.
    void awards()
    {
        const Screen screen;
        screen.go("@2");
        auto& grid = screen.get<widgets::TextGrid>("fgAdultsAwards");
        const auto shown = [&] {
            QStringList lines;
            for (int row = 0; row < grid.rows(); ++row)
                lines += grid.text(row, 1) + '/' + grid.text(row, 2) + '/' + grid.text(row, 3);
            return screen.get<QLabel>("lblAdultName").text() + ": " + lines.join("; ");
        };
        screen.get<QTabWidget>("tabAdult").setCurrentIndex(1);
        screen.go("cmdDeleteAward");
        QCOMPARE(shown(), "Ann M Young: Date Assigned/Award/; 5/2/2025/Knot Badge/1; 5/2/2026/Knot Badge/1; "
                          "5/2/2026/Knot Badge/1; 5/2/2026/Star Pin/2");
        grid.setRow(3);
        screen.go("cmdDeleteAward");
        QCOMPARE(shown(), "Ann M Young: Date Assigned/Award/; 5/2/2025/Knot Badge/1; 5/2/2026/Star Pin/2");
        QCOMPARE(rows(Awards), "1/1/5/2/2025, 1/2/5/2/2026, 1/9/5/2/2026, 2/1/5/2/2026");
        screen.go("P");
        QCOMPARE(shown(), "Bob Old: Date Assigned/Award/; 5/2/2026/Knot Badge/1");
        screen.go("n");
        QCOMPARE(grid.rows(), 1);
    }

private:
    std::unique_ptr<test::AppFolder> m_folder;
};

ORLO_TEST_MAIN(tst_adults)

#include "tst_adults.moc"
