#include "shell/forms/Module1.h"
#include "shell/forms/PeopleFilter.h"
#include "shell/forms/Reading.h"
#include "shell/forms/RecordWalk.h"
#include "store/engine/Value.h"
#include "support/Main.h"
#include "support/Sqlite.h"
#include "support/Table.h"
#include "support/TestApp.h"

#include <QEventLoop>
#include <QTimer>

using namespace orlo;

class tst_recordwalk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // F, P, N and L step, "s" settles, "d" deletes and "2" goes to the second record; the place and the record where
    // the walk ends, and what settling or, for a walking form, the place reported last: "-" none, "+" one, "="
    // unchanged.
    void steps_data() { test::tableOf("shell/steps.txt"); }
    void steps()
    {
        const auto [records, steps] = test::cells("records", "steps");
        const test::AppFolder folder;
        for (int key = 1; key <= records.toInt(); ++key)
            test::fill("Insert Into Dens (Den_SID) Values (" + QString::number(key) + ")");
        RecordWalk walk;
        walk.openRecords("Select Den_SID From Dens Order by Den_SID");
        const auto told = [](const RecordWalk::Ways& ways) {
            const auto sign = [](std::optional<bool> way) { return !way ? '=' : *way ? '+' : '-'; };
            return QString(sign(ways.back)) + sign(ways.ahead);
        };
        QString settled;
        const QMap<QString, std::function<void()>> does{{"s", [&] { settled = told(walk.settle()); }},
                                                        {"F", [&] { walk.stepToFirst(); }},
                                                        {"P", [&] { walk.stepToPrevious(); }},
                                                        {"N", [&] { walk.stepToNext(); }},
                                                        {"L", [&] { walk.stepToLast(); }},
                                                        {"d", [&] { walk.rsRecords->remove(); }},
                                                        {"2", [&] { walk.goTo(2); }}};
        for (const QString& step : steps.split(' '))
            does[step]();
        QTEST(QString::number(walk.recordIndex()), "place");
        QTEST(walk.mRecordCount ? walk.rsRecords->value(u"Den_SID").toText() : QString("none"), "record");
        QTEST(settled, "settled");
        QTEST(told(walk.ways()), "ways");
    }

    // Reading together keeps others from writing, but only until a write or a wait.
    void reading_data() { test::tableOf("shell/recordwalk_reading.txt"); }
    void reading()
    {
        const test::AppFolder folder;
        test::fill("Insert Into Dens (Den_SID) Values (1)");
        const Reading reading(database());
        store::Recordset dens = database().openRecordset("Dens");
        (void)dens[u"Den_SID"];
        std::make_unique<Reading>(database()).reset(); // a nested one
        if (test::cell("ended by") == "write")
            database().execute("Update Dens Set Active = 'Y'");
        QEventLoop loop;
        QTimer::singleShot(50, &loop, &QEventLoop::quit);
        if (test::cell("ended by") == "wait")
            loop.exec();
        const QStringList said = test::sqlite(folder.path() + "/Quorrel11.mdb", "UPDATE Dens SET Active = 'N'");
        QCOMPARE(said.isEmpty(), test::cell("writes") == "yes");
    }

    // The " and " that a find adds stays if neither view nor den follow.
    void criteria_data() { test::tableOf("shell/criteria.txt"); }
    void criteria()
    {
        const auto [start, view, den] = test::cells("start", "view", "den");
        const PeopleFilter filter{PeopleFilter::View(view.toInt()), den};
        QTEST(filter.BuildViewCriteria(start).trimmed(), "criteria");
    }
};

ORLO_TEST(tst_recordwalk)
#include "tst_recordwalk.moc"
