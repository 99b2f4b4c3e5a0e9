#include "platform/Conversion.h"
#include "support/Main.h"
#include "support/Pack.h"
#include "support/RecordScreen.h"
#include "widgets/ListBox.h"

#include <QTest>

#include <optional>

using namespace orlo;
using test::RecordScreen;

// What the den's screen shows is in tst_pictures.
class tst_dens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder.emplace();
        platform::setToday(QDate(2026, 11, 24));
    }

    void newKeysAndLongTexts()
    {
        const RecordScreen screen("frmDenInfo");
        screen.run("n DenNumber=7a Enter");
        test::execute("Update Dens Set Den_SID = 41");
        screenOf("frmDenInfo").unload();
        RecordScreen("frmDenInfo").run("n DenName=O'Hara's YearStarted=x Active=" + QString(300, 'r') + " s");
        QCOMPARE(test::rows("Select * From Dens Order by Den_SID"),
                 "41/7// /2026/Y, 42/0/O'Hara's/ /0/" + QString(255, 'r'));
    }

    void keysRunOut()
    {
        QCOMPARE(test::failureInChild("Insert Into Dens (Den_SID) Values (32767)",
                                      [] { RecordScreen("frmDenInfo").click("cmdNew"); }),
                 "6");
        QCOMPARE(test::count("Dens"), 1);
    }

    void membersAreMovedUnderABusyPointer()
    {
        test::fill(test::Pack);
        const RecordScreen screen("frmDenInfo");
        const auto add = [&] { screen.run("cmdAddScouts>lstScouts:0,cmdSelect"); };
        QVERIFY(test::alwaysBusy("Where Scout_SID", add));
        test::clickRow(screen.get<widgets::ListBox>("lstScouts"), 0);
        QVERIFY(test::alwaysBusy("Where Scout_SID", [&] { screen.click("cmdDelScouts"); }));
    }

private:
    std::optional<test::AppFolder> m_folder;
};

ORLO_TEST(tst_dens)

#include "tst_dens.moc"
