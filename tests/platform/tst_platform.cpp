#include "platform/Conversion.h"
#include "platform/FileLock.h"
#include "platform/FileNames.h"
#include "platform/FileReplacement.h"
#include "platform/FileSystem.h"
#include "platform/WriteAll.h"
#include "support/Failure.h"
#include "support/Files.h"
#include "support/Main.h"
#include "support/System.h"
#include "support/Table.h"

#include <QDir>
#include <QFile>
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
        // read: the short form, empty if it isn't a date
        test::tableOf("platform/platform_dates.txt");
        QTest::newRow("blanks") << QString(" 6 / 7 / 2004 ") << QString("6/7/2004");
    }
    void dates()
    {
        QFETCH(QString, text);
        setToday(QDate(2026, 11, 24));
        const auto read = readDate(text);
        QTEST(read ? shortDate(*read) : QString(), "read");
        QCOMPARE(isDate(text), read.has_value());
        if (read) // a date as shown must read back as the same date
            QVERIFY(readDate(shortDate(*read)) == read && readDate(longDate(read->date))->date == read->date);
        setToday({});
    }

    // What val() reads, or its failure, whether readNumber() accepts the text, and what leadingDigits() reads.
    void numbers_data() { test::tableOf("platform/platform_numbers.txt"); }
    void numbers()
    {
        QFETCH(QString, text);
        const int number = failureNumber([&] { return val(text); });
        QTEST(number == 0 ? numberText(val(text)) : standardDescription(number), "leading");
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
        const int number = failureNumber([&] { flushFile(file.fileName()); });
        test::failFlushes(false);
        QTEST(number == 0 ? QString() : standardDescription(number), "said");
    }

    void files()
    {
        QTemporaryDir folder;
        const QString path = folder.path() + "\\Sub\\FILE.mdb";
        QVERIFY(QDir(folder.path()).mkdir("sub"));
        const FileSystem system;
        QVERIFY(!system.fileExists(path));
        test::write(folder.filePath("sub/File.mdb"), "12345");
        QVERIFY(system.fileExists(path) && !system.fileExists(folder.path() + "\\sub"));
        QCOMPARE(system.getFile(path).size, qint64(5));

        const QString copy = folder.path() + "\\sub\\Copy";
        const QString none = folder.path() + "\\no";
        system.copyFile(path, copy, true);
        QCOMPARE(test::contents(folder.filePath("sub/Copy")), "12345");
        QCOMPARE(failureNumber([&] { system.copyFile(none, copy, true); }), int(FileNotFound));
        QCOMPARE(failureNumber([&] { system.copyFile(copy, none + "\\x", true); }), int(PathNotFound));
        QCOMPARE(failureNumber([&] { system.copyFile(copy, path, false); }), 58);
        QCOMPARE(failureNumber([&] { return system.getFile(none); }), int(FileNotFound));
        QCOMPARE(failureNumber([&] { return system.getFolder(none); }), int(PathNotFound));
        QCOMPARE(failureNumber([&] { return system.getDrive("/no/such/place"); }), int(DeviceUnavailable));
        QVERIFY(system.getDrive(QDir::rootPath()).freeSpace > 0);
        system.deleteFile(copy, false);
        QVERIFY(!system.fileExists(copy));
        QCOMPARE(failureNumber([&] { system.deleteFile(copy, false); }), int(FileNotFound));
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
        const bool kept = copy(large.fileName()) == DiskFull && test::contents(path).size() == 600'000;
        const bool copied = copy(path + "-new") == 0 && test::contents(path) == test::contents(path + "-new");
        QVERIFY(test::mountSmall(folder.path(), 0));
        QVERIFY(kept && copied);
        QCOMPARE(test::putInPlaceUnflushed(), QStringList(path + ".part")); // the old one, which it replaces
    }

    // A file is on the disk before it replaces another one, and an old file that is the same is kept only once.
    void putsInPlace()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("File.mdb");
        (void)test::putInPlaceUnflushed();
        for (int time = 0; time < 2; ++time) {
            test::write(path, "old");
            test::write(path + ".new", "new");
            QCOMPARE(putInPlace(path, path + ".new", "before"), folder.filePath("File (before).mdb"));
        }
        QCOMPARE(test::putInPlaceUnflushed(), QStringList());
        QCOMPARE(test::contents(folder.filePath("File (before).mdb")) + test::contents(path), "oldnew");
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 2);
    }

    // What another program holds for a moment doesn't count as unwritable.
    void heldForAMoment()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("File.mdb");
        test::write(path, "held");
        std::promise<void> held;
        const std::jthread other([&] {
            FileLock lock(path);
            lock.keepOthersOut({});
            held.set_value();
            QTest::qSleep(300);
        });
        held.get_future().wait();
        QVERIFY(isWritable(path));
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
