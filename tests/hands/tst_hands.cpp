#include "hands/Hands.h"
#include "shell/frame/mdiPendrake.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"

using namespace orlo;

namespace
{

// Ada and Bo are scouts of dens 1 and 2, Cy has no den; of the adults, Ann leads den 1.
constexpr const char* Pack = R"(
Insert Into Dens (Den_SID, Den_Number, Den_Name, Den_Type, Active) Values (1, 1, 'One', 'Tiger', 'Y'),
    (2, 3, 'Three', 'Wolf', 'Y'), (3, 2, 'Two', 'Bear', 'N');
Insert Into Scouts (Scout_SID, First_Name, Last_Name, Active, Assigned_Den_SID, Birth_Date, Pack_Start_Date, Note,
    Years_In_Scouts, Years_In_Other_Pack, Tigar, Parent_Name1) Values
    (1, 'Ada', 'Ash', 'Y', 1, '2015-01-02', '2024-01-02', 'n', 1, 0, 'N', 'Pa'),
    (2, 'Bo', 'Birch', 'Y', 2, '2015-01-03', '2024-01-03', 'n', 1, 0, 'N', 'Pa'),
    (3, 'Cy', 'Cedar', 'Y', Null, '2015-01-04', '2024-01-04', 'n', 1, 0, 'N', 'Pa');
Insert Into Adults (Adult_SID, First_Name, Last_Name, Active, Birth_Date, Pack_Start_Date, Note) Values
    (1, 'Ann', 'Ash', 'Y', '1980-01-02', '2024-01-02', 'n'), (2, 'Bob', 'Birch', 'Y', '1980-01-03', '2024-01-03', 'n');
Insert Into Leader_Den_Assignments (Adult_SID, Den_SID, Den_Title, Sort_Order) Values (1, 1, 'Den Leader', 5);
Insert Into Insignias (Insignia_SID, Insignia_Name, Insignia_Type) Values (1, 'Art', 'Pin'), (2, 'Bike', 'Pin'),
    (3, 'Chess', 'Patch');
Insert Into Assigned_Awards_Scouts (Scout_SID, Insignia_SID, Date_Assigned, Quantity) Values (1, 1, '2026-05-02', 1);
Insert Into Assigned_Awards_Adults (Adult_SID, Insignia_SID, Date_Assigned) Values (1, 1, '2026-05-02'))";

} // namespace

class tst_hands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void hands_data();
    void hands();
};

void tst_hands::initTestCase()
{
    auto& frame = mdiPendrake::instance();
    frame.showMaximized();
    QVERIFY(QTest::qWaitForWindowActive(&frame));
}

// What the hands do, in the words of hands/Hands.h, and what is in the file then. "empty": there is nobody in it.
void tst_hands::hands_data()
{
    test::table({"name", "script", "query", "result"}, R"(
first field after a save and a step | mnuScouts cmdNext @txtFirst Control+a 'Zed Alt+s @txtFirst cmdLast @txtFirst | Select First_Name From Scouts Where Scout_SID = 2 | Zed
wheel in an award | mnuAssignInsignias cboAward cboAward[1] down:cboAward cboAward=Chess_Patch up:cboAward cboAward=Bike_Pin | Select Count(*) From Scouts | 3
bad date: Tab | mnuAdults txtPackStartDate Control+a '13/45/2020 Tab ?Invalid ok @txtPackStartDate Tab ?Invalid ok @txtPackStartDate Control+a '1/2/2021 Tab ! Alt+s | Select Pack_Start_Date From Adults Where Adult_SID = 1 | 1/2/2021
bad date: a button, an access key, a tab | mnuAdults txtPackStartDate Control+a '9/99 cmdNext ?Invalid ok @txtPackStartDate Alt+s ?Invalid ok @txtPackStartDate tab:Note ?Invalid ok tabAdult=Adult_Information @txtPackStartDate | Select Pack_Start_Date From Adults Where Adult_SID = 1 | 1/2/2024
bad date: another window | mnuDenInfo mnuAssignInsignias 2:fgSelectFrom[0,1] cboAward cboAward[0] txtAssignDate '13/45/2020 Control+Tab @txtDenNumber Control+Tab @txtAssignDate cmdAssignAward ?Invalid ok @txtAssignDate | Select Count(*) From Assigned_Awards_Scouts | 1
bad date: closing asks nothing | mnuAdults txtPackStartDate '9/99 Control+F4 ! mnuPurchaseList txtStartDate '9/99 close ! mnuDenInfo @txtDenNumber | Select Count(*) From Adults | 2
Enter deletes a scout | mnuScouts cmdDelete ?ARE Return ! | Select Count(*) From Scouts | 2
Ctrl+Z brings no other record's text | mnuScouts txtFirst Control+a 'q cmdNext ?Data no txtFirst=Bo txtFirst Control+z Control+z txtFirst=Bo | Select First_Name From Scouts | Ada, Bo, Cy
repair under a grid | ID_Pack_Den_Positions mnuRepairDatabase cmdRefreshDenPostions ! Alt+c ! | Select Count(*) From Dens | 3
)");
}

void tst_hands::hands()
{
    QFETCH(QString, script);
    QFETCH(QString, query);
    QFETCH(QString, result);
    const test::AppFolder folder;
    test::copyLayouts();
    const bool empty = script.startsWith("empty ");
    if (!empty)
        test::fill(Pack);
    QCOMPARE(test::runHands(empty ? script.sliced(6) : script), QString());
    QCOMPARE(test::rows(query), result);
}

ORLO_TEST(tst_hands)

#include "tst_hands.moc"
