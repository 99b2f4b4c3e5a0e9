#include "platform/RuntimeError.h"
#include "shell/forms/Module1.h"
#include "store/repair/Repair.h"
#include "store/schema/Schema.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/RecordScreen.h"
#include "support/Repeats.h"
#include "support/Sqlite.h"
#include "support/Table.h"

#include <QApplication>
#include <QDir>
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTimer>

using namespace orlo;
using test::sqlite;

// Files that are damaged, or made to do harm: whatever they contain, the program ends normally or with its own report.

namespace
{

enum End { Well = 0, Report = 1, NotOpened = 3 };

void useForms()
{
    for (const QString form : {"frmScouts", "frmAdults", "frmDenInfo", "frmInsigniaInfo", "frmAssignInsignias",
                               "frmPackInformation", "frmPackDenPositions", "frmCreatePurchaseList"}) {
        test::showForm(form);
        for (const char* button : {"cmdLast", "cmdPrevious", "cmdNew", "cmdSave"})
            if (auto* found = screenOf(form).get().findChild<QPushButton*>(button))
                found->click();
        screenOf(form).unload();
    }
}

// The child: opens the file, uses every form that depends on it, repairs it, and uses them again.
int useFile(const QStringList& arguments)
{
    QTimer boxes;
    QObject::connect(&boxes, &QTimer::timeout, [] {
        if (auto* box = QApplication::activeModalWidget())
            box->close();
    });
    boxes.start(2);
    gAppPath = arguments[0];
    gDbName = "\\Quorrel11.mdb";
    try {
        openDatabase(databasePath());
    } catch (const platform::RuntimeError&) {
        return NotOpened;
    }
    QTimer::singleShot(0, [] {
        useForms();
        database().close();
        store::DBEngine::repairDatabase(databasePath(), store::schema::versions());
        openDatabase(databasePath());
        useForms();
        std::_Exit(Well);
    });
    return QApplication::exec();
}

} // namespace

class tst_hostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        gDatabase.reset();
        test::copyLayouts();
        sqlite(m_file, test::contents(ORLO_SOURCE_DIR "/tests/upkeep/hostile.sql"));
        m_whole = test::contents(m_file);
        QCOMPARE(use(), Well);
    }

    void harm_data() { test::tableOf("upkeep/harm.txt"); }
    void harm()
    {
        restore(m_whole);
        QCOMPARE(sqlite(m_file, test::cell("sql").toUtf8()), QStringList());
        QCOMPARE(use(), int(test::cell("end") == "well" ? Well : Report));
        QVERIFY(sqlite(m_file, "Select Count(*) From Adults").value(0).toInt() >= 400);
    }

    void damage()
    {
        const int files = test::repeats("ORLO_DAMAGED_FILES", 10);
        QRandomGenerator random(20261124);
        QMap<int, int> ends;
        for (int i = 0; i < files; ++i) {
            QByteArray bytes = m_whole;
            if (i % 4 == 3)
                bytes.truncate(random.bounded(int(bytes.size())));
            else
                for (int n = 1 << random.bounded(6); n > 0; --n)
                    bytes[random.bounded(int(bytes.size()))] = char(random.bounded(256));
            restore(bytes);
            const int end = use();
            QVERIFY2(end == Well || end == Report || end == NotOpened,
                     qPrintable(QString("file %1: %2").arg(i).arg(end)));
            ++ends[end];
        }
        qInfo("%d files: %d used, %d ended by a report, %d not opened", files, ends[Well], ends[Report],
              ends[NotOpened]);
    }

private:
    void restore(const QByteArray& bytes) const
    {
        QDir folder(m_folder.path());
        for (const QString& old : folder.entryList({"Quorrel11*"}))
            folder.remove(old);
        test::write(m_file, bytes);
    }
    // How a child that uses the file ends; -1 if it was killed or didn't end.
    [[nodiscard]] int use() const
    {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), test::childArguments({m_folder.path()}));
        if (!child.waitForFinished(150000)) { // the worst takes seconds, and much longer if the machine is busy
            child.kill();
            child.waitForFinished();
            return -2;
        }
        return child.exitStatus() == QProcess::NormalExit ? child.exitCode() : -1;
    }

    const test::AppFolder m_folder;
    const QString m_file = m_folder.path() + "/Quorrel11.mdb";
    QByteArray m_whole;
};

ORLO_TEST(tst_hostile, useFile)

#include "tst_hostile.moc"
