#include "platform/Conversion.h"
#include "platform/FileLock.h"
#include "platform/FileNames.h"
#include "platform/FileReplacement.h"
#include "platform/FileSystem.h"
#include "platform/Logging.h"
#include "platform/System.h"
#include "platform/Text.h"
#include "platform/WriteAll.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/System.h"
#include "support/Table.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <future>
#include <thread>

using namespace orlo;
using namespace orlo::platform;
using test::failureNumber;

class tst_platform : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dates_data()
    {
        // read and long: both forms, empty if it isn't a date
        test::tableOf("platform/platform_dates.txt");
        QTest::newRow("blanks") << QString(" 6 \t/\r7 / 2004 ") << QString("6/7/2004") << QString("06/07/2004");
    }
    void dates()
    {
        QFETCH(QString, text);
        setToday(QDate(1999, 11, 24));
        const auto read = readDate(text);
        QTEST(read ? shortDate(*read) : QString(), "read");
        QTEST(read ? longDate(read->date) : QString(), "long");
        QCOMPARE(isDate(text), read.has_value());
        if (read) // a date as shown must read back as the same date
            QVERIFY(readDate(shortDate(*read)) == read && readDate(longDate(read->date))->date == read->date);
        setToday({});
    }

    // What val() reads, or its failure, as a whole number of 16 bits, too, whether readNumber() accepts the text, and
    // what leadingDigits() reads.
    void numbers_data() { test::tableOf("platform/platform_numbers.txt"); }
    void numbers()
    {
        QFETCH(QString, text);
        const int number = failureNumber([&] { return val(text); });
        QTEST(number == 0 ? numberText(val(text)) : standardDescription(number), "leading");
        const auto small = [&] { return toInt16(val(text)); };
        QTEST(failureNumber(small) == 0 ? QString::number(small()) : QString(), "small");
        QTEST(QString(readNumber(text) ? "yes" : "no"), "whole");
        QTEST(numberText(leadingDigits(text)), "digits");
    }

    void descriptions_data() { test::tableOf("platform/platform_failures.txt"); }
    void descriptions() { QTEST(standardDescription(test::cell("number").toInt()), "text"); }

    // What the system's reasons to refuse are called, here of a flush; a volume that knows no flush refuses nothing.
    void refusals_data() { test::tableOf("platform/platform_refusals.txt"); }
    void refusals()
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        test::failFlushes(true, test::cell("errno").toInt());
        const auto failure = test::failureOf([&] { return (flushFile(file.fileName()), 0); });
        test::failFlushes(false);
        QTEST(failure ? QString::fromUtf8(failure->what()) + ' ' + failure->source() : QString(), "said");
    }

    void files_data() { test::cases({"steps", "said"}, "platform/files.txt"); }
    void files()
    {
        if (QDir::separator() == '\\' && test::cell("steps").contains(QRegularExpression("link|mode|look sub")))
            QSKIP("there are no such links, modes and names here");
        const int flushes = test::folderFlushes();
        const QTemporaryDir folder;
        const FileSystem system;
        QStringList all;
        for (const QString& step : test::cell("steps").trimmed().split('\n')) {
            const QString word = step.section(' ', 0, 0);
            const QString one = step.count(' ') > 0 ? folder.path() + '\\' + step.section(' ', 1, 1) : QString();
            const QString other = folder.path() + '\\' + step.section(' ', 2);
            QString said;
            const QMap<QString, std::function<void()>> works{
                {"write", [&] { test::write(nativePath(one), step.section(' ', 2).toUtf8()); }},
                {"folder", [&] { QDir().mkdir(nativePath(one)); }},
                {"link", [&] { QFile::link(nativePath(other), nativePath(one)); }},
                {"copy", [&] { system.copyFile(one, other, false); }},
                {"over", [&] { system.copyFile(one, other, true); }},
                {"delete", [&] { system.deleteFile(one, false); }},
                {"look", [&] { said = system.getFolder(one).path; }},
                {"drive", [&] { said = system.getDrive(one).root; }},
                {"there", [&] { said = system.fileExists(one) ? "yes" : "no"; }},
                {"size", [&] { said = QString::number(system.getFile(one).size); }},
                {"text", [&] { said = test::contents(nativePath(one)); }},
                {"only",
                 [&] {
                     QFile::setPermissions(nativePath(one),
                                           QFile::Permissions(other.section('\\', -1).toInt(nullptr, 16)));
                 }},
                {"mode", [&] { said = QString::number(int(QFile::permissions(nativePath(one))), 16); }},
                {"names",
                 [&] { said = QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).join(' '); }},
                {"flushes", [&] { said = QString::number(test::folderFlushes() - flushes); }}};
            const auto failure = test::failureOf([&] { return works[word](), 0; });
            all += failure ? QString(failure->what()) + ' ' + failure->source() : said.remove(folder.path());
        }
        QCOMPARE(all.join('\n').trimmed(), test::cell("said").trimmed());
    }

    // The volume that a path lies on, and its room; the real ones are no part of the system's own.
    void volumes()
    {
        const FileSystem system;
        for (const Drive& drive : system.drives())
            QVERIFY(!drive.root.contains(QRegularExpression("^/(proc|dev|sys)(/|$)")));
        QVERIFY(!QFile::exists("/proc/self") || !holdsUserFiles(QStorageInfo("/proc")));
        QVERIFY(system.freeSpaceAt(QDir::tempPath()) > 0 && system.freeSpaceAt("/no/such") > 1LL << 60 &&
                system.getDrive(QDir::rootPath() + '.').freeSpace > 0);
        if (QDir::separator() == '\\')
            QSKIP("volumes have letters here");
        setVolumes([] { return QList<Drive>{{"/a/deep", 3}, {"/a", 5}}; });
        QString seen;
        for (const QString path : {"/a/b", "/a", "/ab", "/a/deep/x"})
            seen += path + " on " + system.driveOf(path) + ": " + QString::number(system.freeSpaceAt(path)) + "; ";
        setVolumes({});
        QCOMPARE(seen, "/a/b on /a: 5; /a on /a: 5; /ab on /: 0; /a/deep/x on /a/deep: 3; ");
    }

    // How two texts compare, the same for the store and the reports, and whether they are one name, or the other a
    // pattern of the one. A byte that begins no letter, here "%C3", counts as itself, above all letters.
    void texts_data() { test::tableOf("platform/texts.txt"); }
    void texts()
    {
        const auto [one, other] = test::cells("one", "other");
        const auto utf8 = [](const QString& text) {
            return QByteArray::fromPercentEncoding(text.toUtf8()).toStdString();
        };
        const auto sign = [](int number) { return number < 0 ? -1 : int(number > 0); };
        const int order = sign(compareUtf8(utf8(one), utf8(other)));
        const bool like = matchesLikeUtf8(utf8(one), utf8(other));
        QTEST(QString::number(order), "order");
        QTEST(QString(like ? "yes" : "no"), "like");
        if (one.contains('%'))
            return;
        QCOMPARE(compareText(one, other), order);
        QCOMPARE(sign(sortKey(one).compare(sortKey(other))), order);
        QTEST(QString(sameName(one, other) ? "yes" : "no"), "same");
        QCOMPARE(matchesLike(one, other), like);
    }

    // What a path of the program's means: names in any case, backslashes between them, but the one that is there as
    // written counts first.
    void paths_data() { test::tableOf("platform/platform_paths.txt"); }
    void paths()
    {
        if (QDir::separator() == u'\\')
            QSKIP("the system does it");
        const QTemporaryDir folder;
        for (const char* name : {"Sub", "sub2/Deep", "both", "BOTH", "back\\slash"})
            QVERIFY(QDir(folder.path()).mkpath(name));
        for (const char* name : {"Sub/File.mdb", "sub2/Deep/x", "both/a", "BOTH/B", "back\\slash/Pack.mdb", ".Hidden"})
            test::write(folder.filePath(name), "x");
        const QString found = nativePath(folder.path() + test::cell("named"));
        QTEST(found.mid(folder.path().size()), "found");
        QTEST(QString(isWithin(found, folder.path() + "/Sub") ? "yes" : "no"), "in Sub");
    }

    // If a volume has no room for a second file, the old one is overwritten, and nothing of it remains after the new
    // one. A file that fits neither way leaves the old one as it is.
    void takesTheOldOnesRoom()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("old");
        if (!test::mountSmall(folder.path(), 1'000'000))
            QSKIP("no volume can be mounted");
        test::write(path, QByteArray(600'000, 'o'));
        test::write(path + "-new", QByteArray(300'000, 'n'));
        (void)test::putInPlaceUnflushed();
        QTemporaryFile large;
        QVERIFY(large.open() && large.resize(2'000'000));
        const auto copy = [&path](const QString& from) {
            return failureNumber([&] { FileSystem().copyFile(from, path, true); });
        };
        const bool kept = copy(large.fileName()) == DiskFull && test::contents(path).size() == 600'000 &&
                          QDir(folder.path()).entryList(QDir::Files) == QStringList({"old", "old-new"});
        test::failLinks(true);
        const bool copied = copy(path + "-new") == 0 && test::contents(path) == test::contents(path + "-new");
        test::failLinks(false);
        QVERIFY(test::mountSmall(folder.path(), 0));
        QVERIFY(kept && copied);
        QCOMPARE(test::putInPlaceUnflushed(), QStringList(path + ".part")); // the old one, which it replaces
    }

    // A file is on the disk before it replaces another one, and an old file that is the same is kept only once.
    void putsInPlace_data() { test::tableOf("platform/placed.txt"); }
    void putsInPlace()
    {
        const QTemporaryDir folder;
        (void)test::putInPlaceUnflushed();
        QStringList kept;
        const QByteArray large(1 << 20, '#'); // as "#"
        for (const QString& step : test::cell("steps").split(' ')) {
            const QString path = folder.filePath(step.section('=', 0, 0));
            test::write(path, step.section('=', 1).toUtf8().replace("#", large));
            const FileInTheMaking making(path, ".new");
            test::write(making.name(), "new");
            test::write(making.name() + "-journal", "");
            kept += putInPlace(path, making.name(), "before").mid(folder.path().size() + 1);
            kept.back() +=
                '=' + test::contents(folder.filePath(kept.back())).replace(large, "#") + test::contents(path);
        }
        QCOMPARE(test::putInPlaceUnflushed(), QStringList());
        QTEST(kept.join(", "), "kept");
        QTEST(QDir(folder.path()).entryList(QDir::Files).join(", "), "files");
    }

    // The time that a log says.
    void notes()
    {
        QByteArrayList names;
        for (const QLoggingCategory* log : {&sqlLog(), &formsLog(), &reportLog(), &takeoverLog()})
            names += log->categoryName();
        QCOMPARE(names.join(' '), "orlo.sql orlo.forms orlo.report orlo.takeover");
        QLoggingCategory::setFilterRules("orlo.*=true");
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^([2-9]\\d|\\d{3,4})(\\.\\d+)? ms what$"));
        {
            const TimeLog time(sqlLog(), "what");
            QTest::qSleep(30);
        }
        QLoggingCategory::setFilterRules({});
    }

    // What another program holds for a moment is waited for, and isn't unwritable meanwhile: a lock of the program's
    // own, or a byte of those that SQLite locks. What is held longer is refused.
    void held_data() { test::tableOf("platform/held.txt"); }
    void held()
    {
        const auto [work, byte] = test::cells("work", "byte");
        const int time = test::cell("ms").toInt();
        if (QDir::separator() == '\\' && work != "lock")
            QSKIP("other locks keep out readers, too");
        const QTemporaryDir folder;
        const QString path = folder.filePath("File.mdb");
        test::write(path, "held");
        test::write(path + "2", "other");
        std::promise<bool> held;
        std::promise<void> done;
        const std::jthread other([&] {
            QFile file(path);
            std::optional<FileLock> lock;
            if (byte.isEmpty())
                lock.emplace(path).keepOthersOut({});
            held.set_value(lock ||
                           (file.open(QIODevice::ReadWrite) && test::lockByte(file, byte.toLongLong(nullptr, 16))));
            done.get_future().wait_for(std::chrono::milliseconds(time));
        });
        QElapsedTimer timer;
        timer.start();
        QVERIFY(held.get_future().get() && (time > 2000 || isWritable(path)));
        const auto failure = test::failureOf([&] {
            if (work == "lock")
                return (void)FileLock(path), 0;
            const QString from = work == "from" ? path : path + "2";
            return FileSystem().copyFile(from, work == "from" ? path + "2" : path, true), 0;
        });
        done.set_value();
        const QString said = failure ? QString(failure->what()).section(": " + folder.path(), 0, 0) : "done";
        QTEST((timer.elapsed() < time / 2 ? "" : "waits, ") + said, "then");
    }

    // All bytes arrive, or the failure has the device's text, however little it accepts at a time.
    void writesAll_data()
    {
        test::table({"once", "room", "taken"}, "7 | 999 | 100\n7 | 50 | 50 full\n7 | 0 | 0 full\n0 | 9 | 0 full");
    }
    void writesAll()
    {
        struct Slow : QIODevice {
            qint64 room = test::cell("room").toInt();
            qint64 taken = 0;
            qint64 readData(char*, qint64) override { return -1; }
            qint64 writeData(const char*, qint64 count) override
            {
                const qint64 now = std::min({count, qint64(test::cell("once").toInt()), room - taken});
                taken += now;
                setErrorString("full");
                return now > 0 || taken < room ? now : -1;
            }
        } device;
        device.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        const auto error = test::failureOf([&] { return (writeAll(device, QByteArray(100, 'x')), 0); });
        QTEST(QString::number(device.taken) + (error ? error->description().section(':', -1) : QString()), "taken");
    }
};

ORLO_TEST(tst_platform)
#include "tst_platform.moc"
