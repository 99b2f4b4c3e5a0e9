#include "platform/Conversion.h"
#include "shell/forms/Module1.h"
#include "shell/frame/mdiPendrake.h"
#include "store/engine/Database.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/Pack.h"
#include "support/RecordScreen.h"
#include "support/Sqlite.h"
#include "support/System.h"
#include "support/Table.h"
#include "widgets/DriveList.h"
#include "widgets/FolderList.h"
#include "widgets/Form.h"
#include "widgets/MessageBox.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidgetItemIterator>

using namespace orlo;
using test::sqlite;
using widgets::DriveList;
using widgets::FolderList;

namespace
{

// The application's folder, and a separate drive with the folders Backups, Backups/.dot and Empty, which is the
// process's current drive.
struct Place : test::AppFolder {
    QTemporaryDir drive;
    QString root = drive.path();
    QString database = AppFolder::path() + "/Quorrel11.mdb";
    qint64 size = QFileInfo(database).size();
    QList<platform::Drive> drives{{QDir::rootPath(), 1LL << 40}, {root, 1LL << 40}};

    Place()
    {
        QDir::setCurrent(root);
        platform::setVolumes([this] { return drives; });
        make("Backups/.dot/ Empty/");
        test::hide(root + "/Backups/.dot");
        test::copyLayouts();
    }
    ~Place()
    {
        QDir::setCurrent(QDir::rootPath());
        platform::setVolumes({});
    }
    [[nodiscard]] QString shown(const QString& path = {}) const { return QDir::toNativeSeparators(root + path); }
    // Makes files from the words of files(), with "database" for the database itself; "Old/" makes a folder,
    // "Old/=gone" removes it.
    void make(const QString& wanted) const
    {
        for (const QString& word : wanted.split(' ', Qt::SkipEmptyParts)) {
            const QString name = word.section('=', 0, 0);
            const QString value = word.section('=', 1);
            QFile file(name == "database" ? database : root + '/' + name);
            if (value == "gone")
                QVERIFY(QDir(file.fileName()).removeRecursively());
            else if (name.endsWith('/'))
                QVERIFY(QDir(root).mkpath(name));
            else if (value == "copy")
                QVERIFY(QFile::copy(database, file.fileName()));
            else
                QVERIFY(file.open(QIODevice::ReadWrite) && file.resize(value == "other" ? size : value.toLongLong()));
        }
    }
    // The drive's files, each with its size, or "copy" for a copy of the database, "other" for bytes of that size.
    [[nodiscard]] QString files() const
    {
        QStringList found;
        for (const QString& name : test::filesBelow(root)) {
            const QByteArray bytes = test::contents(name);
            const QString content = bytes.size() != size                ? QString::number(bytes.size())
                                    : bytes == test::contents(database) ? "copy"
                                                                        : "other";
            found += name.mid(root.size() + 1) + '=' + content;
        }
        return found.join(' ');
    }
};

constexpr auto Backup = "frmDataBackup";
constexpr auto Restore = "frmRestorBackup";

struct Screen : test::RecordScreen {
    bool backsUp = form.objectName() == Backup;
    DriveList& drives = get<DriveList>("lstDrive");
    FolderList& folders = get<FolderList>(backsUp ? "lstDir" : "lstFolders");

    explicit Screen(const QString& name) : RecordScreen(name) { folders.setFocus(); }
    // Opens the folder that the keys find in the current one.
    void open(const QString& name) const
    {
        QTest::keyClicks(&folders, name); // no keys: the current one again
        QTest::keyClick(&folders, Qt::Key_Return);
    }
    // Presses the button; returns the boxes that came, without the question.
    QString go(const QString& answers) const
    {
        QTimer during;
        bool waits = false;
        during.callOnTimeout([&] {
            if (qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                QCOMPARE(form.cursor().shape(), Qt::WaitCursor);
                waits = true;
            }
        });
        during.start(0);
        run(answers);
        click(backsUp ? "cmdBack" : "cmdRestore");
        if (!waits)
            test::fail("no box was looked at");
        return said().section('\n', backsUp ? 4 : 2);
    }
    // The rows, indented by a blank per level, the opened folder in brackets.
    [[nodiscard]] QString shown() const
    {
        QStringList rows;
        for (QTreeWidgetItemIterator at(&folders); *at; ++at) {
            int depth = 0;
            for (auto* parent = (*at)->parent(); parent; parent = parent->parent())
                ++depth;
            const QString name = (*at)->text(0);
            rows += QString(depth, ' ') + (*at == folders.currentItem() ? '[' + name + ']' : name);
        }
        return rows.join('|');
    }
};

constexpr auto Children = {"frmScouts",       "frmAdults",           "frmDenInfo",        "frmPackInformation",
                           "frmInsigniaInfo", "frmPackDenPositions", "frmAssignInsignias"};
// Which of these forms are loaded.
QString loaded()
{
    QStringList names{screenOf(Backup).loaded() ? Backup : "", screenOf(Restore).loaded() ? Restore : ""};
    for (const char* form : Children)
        names += screenOf(form).loaded() ? form : "";
    return names.join(' ').simplified();
}

} // namespace

class tst_backup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { mdiPendrake::handOverDataForms(); }
    // drive: its free space beyond the database's size; late: done after all checks, before the copy; loaded: the forms
    // that stay loaded
    void backup_data() { test::tableOf("upkeep/backup_backup.txt"); }
    void backup()
    {
        QFETCH(QString, folder);
        QFETCH(QString, drive);
        QFETCH(QString, late);
        QFETCH(QString, told);
        if (late == "full")
            test::limitFiles(1LL << 40); // whether there are limits
        Place place;
        test::fill("Insert Into Purchase_List (Award_Name) Values ('old')");
        test::showForm("frmScouts");
        test::showForm("frmAdults");
        test::showForm("frmDenInfo");
        connect(&screenOf("frmAdults").get(), &widgets::Form::unloaded, this, [&] {
            if (late == "full") {
                test::limitFiles(place.size - 1);
                QTimer::singleShot(0, [] { test::limitFiles(-1); }); // while the message is up
            } else
                place.make(late);
        });
        const Screen screen(Backup);
        screen.open(folder);
        place.make(test::cell("prepared"));
        if (drive == "gone")
            place.drives.removeLast();
        else if (!drive.isEmpty())
            place.drives[1].freeSpace = place.size + drive.toInt();
        const QString path = place.shown(folder.isEmpty() ? "" : '/' + folder);
        QCOMPARE(screen.folders.path(), path);
        QTEST(screen.go(told.isEmpty() ? "no" : "yes ok").replace(path, "%"), "told");
        QVERIFY(!screenOf(Backup).loaded() || screen.form.cursor().shape() == Qt::ArrowCursor);
        QTEST(loaded(), "loaded");
        QTEST(place.files(), "files");
        // The list's window is loaded only to be unloaded, which empties it.
        QCOMPARE(test::count("Purchase_List"), test::cell("loaded").contains("frmScouts") ? 1 : 0);
        if (auto* scouts = screenOf("frmScouts").loaded()) // nothing was closed under them
            test::control<QPushButton>(*scouts, "cmdNew").click();
    }

    // A form that isn't on the list of those to unload stays, and its record set is dead.
    void otherForms()
    {
        Place place;
        const auto walkAfterwards = [] {
            const test::RecordScreen dens("frmDenInfo");
            widgets::message("takes the answer that waits");
            Screen(Backup).go("yes ok");
            dens.run("ok N");
        };
        QCOMPARE(test::failureInChild("Insert Into Dens (Den_SID) Values (1), (2)", walkAfterwards), "3420");
    }

    void restore_data() { test::tableOf("upkeep/backup_restore.txt"); }
    void restore()
    {
        QFETCH(QString, told);
        Place place;
        place.make("Backups/Quorrel11_Backup=copy");
        test::fill("Insert Into Dens (Den_SID) Values (1), (2)");
        std::ranges::for_each(Children, [](const char* form) { test::showForm(form); });
        const Screen screen(Restore);
        screen.open(test::cell("folder"));
        QTEST(screen.go(told.isEmpty() ? "no" : "yes ok"), "told");
        QVERIFY(!screenOf(Restore).loaded() || screen.form.cursor().shape() == Qt::ArrowCursor);
        QTEST(loaded(), "loaded");
        QTEST(QString::number(test::count("Dens")), "dens");
    }

    // What Escape deletes in the dens' window, a copy of the day brings back, with everything that pointed to it. No
    // copy is deleted while one is restored, even if the first change of the day happens during that.
    void aDenComesBack_data() { test::table({"copy"}, "today's\none that has had its time"); }
    void aDenComesBack()
    {
        const bool old = QTest::currentDataTag() != QByteArray("today's");
        Place place;
        platform::setToday(QDate(2026, 6, 7));
        const auto clock = qScopeGuard([] { platform::setToday({}); });
        test::fill(test::Pack);
        const QString links =
            "Select (Select Count(*) From Dens), (Select Count(*) From Scouts Where Assigned_Den_SID = 2), "
            "(Select Count(*) From Leader_Den_Assignments Where Den_SID = 2)";
        const QDir copies(gAppPath + "/copies");
        if (old)
            for (QDate day(2026, 5, 28); day < QDate(2026, 6, 7); day = day.addDays(1)) {
                const QString folder = copies.filePath(day.toString(Qt::ISODate));
                QVERIFY(QDir().mkpath(folder) && QFile::copy(place.database, folder + "/Quorrel11_Backup"));
            }
        openDatabase(databasePath());
        if (!old)
            database().execute("Update Dens Set Den_Name = 'today' Where Den_SID = 1");
        test::showForm("frmDenInfo");
        if (!old) {
            test::control<QPushButton>(screenOf("frmDenInfo").get(), "cmdLast").click();
            QTest::keyClick(&screenOf("frmDenInfo").get(), Qt::Key_Escape);
            QCOMPARE(sqlite(place.database, links.toUtf8()), QStringList("2|1|1"));
        }
        screenOf("frmDenInfo").unload();
        const Screen screen(Restore);
        const QStringList days = copies.entryList({old ? "2026-05-30" : "2026-06-07 *"}, QDir::Dirs);
        screen.folders.setPath(copies.filePath(days.value(0)));
        QVERIFY(screen.go("yes ok").startsWith("Restore Complete: "));
        QCOMPARE(sqlite(place.database, links.toUtf8()), QStringList("3|2|3"));
        QCOMPARE(copies.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), old ? 11 : 3);
    }

    void repairKeepsACopy()
    {
        const Place place;
        sqlite(place.database, "Create Table Gone(a); Insert Into Gone Values (zeroblob(200000)); Drop Table Gone");
        openDatabase(databasePath());
        mdiPendrake frame;
        auto& repair = test::control<QAction>(frame, "mnuRepairDatabase");
        repair.trigger();
        QVERIFY(QFile(place.database).size() < 200000); // it is compacted
        const QString copy = gAppPath + "/copies/" + QDate::currentDate().toString(Qt::ISODate) + "/Quorrel11_Backup";
        QCOMPARE(sqlite(copy, "Pragma integrity_check"), QStringList("ok"));
        // As after a failed start; trigger() would leak.
        QCOMPARE(test::failureNumber([&repair] { gDatabase.reset(), Q_EMIT repair.triggered(); }), 91);
    }

    // A drive that has been removed is noticed before anything is touched.
    void restoreOfAnythingElseEndsTheProgram_data() { test::table({"drive"}, "there\ngone"); }
    void restoreOfAnythingElseEndsTheProgram()
    {
        const bool gone = QTest::currentDataTag() == QByteArray("gone");
        Place place;
        test::write(place.root + "/Quorrel11_Backup", "garbage");
        const auto restore = [&] {
            widgets::message("takes the answer that waits");
            const Screen screen(Restore);
            place.drives.resize(gone ? 1 : 2);
            screen.go("yes ok ok");
        };
        database().close(); // only some systems replace a file that is also open here
        QCOMPARE(test::failureInChild("", restore), "91");
        QCOMPARE(test::contents(place.database) == "garbage", !gone);
    }

    void lists_data() { test::table({"form"}, "frmDataBackup\nfrmRestorBackup"); }
    void lists()
    {
        Place place;
        place.make("Backups/Old/Older/");
        const Screen screen(test::cell("form"));
        QCOMPARE(screen.drives.text(), place.shown());
        QCOMPARE(screen.drives.count(), place.drives.size());
        QCOMPARE(screen.shown(), '[' + place.shown() + "]| Backups| Empty");
        screen.open("Backups");
        QTest::keyClick(&screen.folders, Qt::Key_H, Qt::ControlModifier);
        QCOMPARE(screen.shown(), place.shown() + "| [Backups]|  .dot|  Old");
        QTest::keyClick(&screen.folders, Qt::Key_Down);
        QTest::keyClick(&screen.folders, Qt::Key_Down);
        const QPoint row = screen.folders.visualItemRect(screen.folders.currentItem()).center();
        QTest::mouseClick(screen.folders.viewport(), Qt::LeftButton, {}, row);
        QTest::mouseDClick(screen.folders.viewport(), Qt::LeftButton, {}, row);
        QCOMPARE(screen.shown(), place.shown() + "| Backups|  [Old]|   Older");
        const QString other = QDir::toNativeSeparators(QDir::rootPath());
        screen.drives.setText(other);
        QCOMPARE(screen.folders.path(), other);
        QVERIFY(screen.shown().startsWith('[' + screen.drives.text() + "]| ")); // its own folders
        screen.drives.setText(place.shown()); // back where it was on that drive, as far as that still exists
        QCOMPARE(screen.folders.path(), place.shown("/Backups/Old"));
        place.make("Backups/Old/=gone");
        QCOMPARE(screen.folders.path(), place.shown("/Backups/Old"));
        screen.open("Older");
        QCOMPARE(screen.shown(), place.shown() + "| [Backups]|  .dot");
        QTest::keyClick(&screen.folders, Qt::Key_Backspace);
        QCOMPARE(screen.folders.path(), place.shown());
        const int high = screen.form.height(); // however many folders there are
        QTest::keyClick(&screen.form, Qt::Key_Escape);
        QCOMPARE(loaded(), QString());
        for (int i = 0; i < 300; ++i)
            place.make(QString::number(i) + '/');
        QCOMPARE(Screen(test::cell("form")).form.height(), high);
    }
};

ORLO_TEST(tst_backup)
#include "tst_backup.moc"
