#include "hands/Hands.h"
#include "shell/forms/Module1.h"
#include "shell/frame/mdiPendrake.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Table.h"

#include <QDir>

using namespace orlo;

class tst_hands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(test::showFrame()); }

    void hands_data() { test::cases({"script", "query", "result"}, "hands/hands.txt"); }
    void hands() { QCOMPARE(afterHands(), test::cell("result").trimmed()); }

private:
    // The file's contents after the row's script, or what failed.
    static QString afterHands()
    {
        const auto [script, query] = test::cells("script", "query");
        const bool empty = script.startsWith("empty ");
        const test::AppFolder folder;
        test::copyFiles();
        if (!empty)
            test::fill(test::contents(ORLO_SOURCE_DIR "/tests/hands/pack.sql"));
        openDatabase(databasePath()); // as the program does
        QDir::setCurrent(gAppPath);
        const QString fault = test::runHands(script.simplified().mid(empty ? 6 : 0));
        QDir::setCurrent(QDir::rootPath());
        return fault.isEmpty() ? test::rows(query) : fault;
    }
};

ORLO_TEST(tst_hands)

#include "tst_hands.moc"
