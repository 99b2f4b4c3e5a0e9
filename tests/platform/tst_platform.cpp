#include "platform/Conversion.h"
#include "platform/FileSystem.h"
#include "platform/RuntimeError.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace orlo;
using namespace orlo::platform;

class tst_platform : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dates_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("read"); // in the short form, empty for no date
        const auto row = [](const char* text, const char* read) {
            QTest::newRow(text) << QString::fromUtf8(text) << QString::fromLatin1(read);
        };
        row("6/7/2004", "6/7/2004");
        row("06/07/04", "6/7/2004");
        row("6-7-2004", "6/7/2004");
        row("6.7.2004", "6/7/2004");
        row(" 6 / 7 / 2004 ", "6/7/2004");
        row("1/1/29", "1/1/2029");
        row("1/1/30", "1/1/1930");
        row("1/1/1001", "1/1/1001");
        row("2/29/2004", "2/29/2004");
        row("6/7", "6/7/2026");
        row("2004-06-07", "6/7/2004");
        row("7 June 2004", "6/7/2004");
        row("Sept 7, 2004", "9/7/2004");
        row("6/7/2004 13:30", "6/7/2004 1:30:00 PM");
        row("6/7/2004 12:00:05 am", "6/7/2004 12:00:05 AM");
        for (const char* none : {"", " ", "6", "2004", "13/1/2001", "2/30/2001", "2/29/2001", "0/1/2001", "1/0/2001",
                                 "6/7/20044", "6/7-2004", "6/7/2004 25:00", "6/7/2004 13:00 PM", "6//2004", "abc",
                                 "June", "6/7/2004x", "1/1/0099", "\xD9\xA6/\xD9\xA7/2004"})
            row(none, "");
    }

    void dates()
    {
        QFETCH(QString, text);
        setToday(QDate(2026, 11, 24));
        const auto read = readDate(text);
        QTEST(read ? shortDate(*read) : QString(), "read");
        QCOMPARE(isDate(text), read.has_value());
        if (read) // what a date is shown as reads back as the same date
            QVERIFY(readDate(shortDate(*read)) == read && readDate(longDate(read->date))->date == read->date);
        setToday({});
    }

    void numbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("leading"); // what val() reads
        QTest::addColumn<bool>("whole");     // readNumber() takes it, too
        const auto row = [](const char* text, double leading, bool whole) {
            QTest::newRow(text) << QString::fromUtf8(text) << leading << whole;
        };
        row("12", 12, true);
        row("12a", 12, false);
        row("", 0, false);
        row("a12", 0, false);
        row(" 1 2 ", 12, false);
        row("-1.5e2x", -150, false);
        row("-1.5e2", -150, true);
        row("1e", 1, false);
        row(".5", 0.5, true);
        row("-", 0, false);
        row("1.2.3", 1.2, false);
    }

    void numbers()
    {
        QFETCH(QString, text);
        QTEST(val(text), "leading");
        QTEST(readNumber(text).has_value(), "whole");
    }

    void narrowing()
    {
        QCOMPARE(toInt16(2.5), std::int16_t(2));
        QCOMPARE(toInt16(3.5), std::int16_t(4));
        QCOMPARE(toInt16(-32768.5), std::int16_t(-32768));
        QCOMPARE(toInt32(2147483647.4), 2147483647);
        for (const double number : {32767.5, -32769.0, std::nan("")})
            QVERIFY_THROWS_EXCEPTION(RuntimeError, (void)toInt16(number));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, (void)val(u"1e999"));
        QCOMPARE(numberText(0.1 + 0.2), QStringLiteral("0.3"));
        QCOMPARE(numberText(1e15), QStringLiteral("1E+15"));
        QCOMPARE(numberText(-5), QStringLiteral("-5"));
    }

    void files()
    {
        QTemporaryDir folder;
        const QString path = folder.path() + QStringLiteral("\\Sub\\FILE.mdb");
        QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("sub")));
        const FileSystem system;
        QVERIFY(!system.fileExists(path));
        QFile file(folder.filePath(QStringLiteral("sub/File.mdb")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("12345") == 5);
        file.close();
        QVERIFY(system.fileExists(path));
        QVERIFY(!system.fileExists(folder.path() + QStringLiteral("\\sub")));
        QCOMPARE(system.getFile(path).size, qint64(5));

        const QString copy = folder.path() + QStringLiteral("\\sub\\Copy");
        system.copyFile(path, copy, true);
        QVERIFY(QFile::exists(folder.filePath(QStringLiteral("sub/Copy"))));
        const auto number = [](const auto& action) {
            try {
                action();
            } catch (const RuntimeError& error) {
                return error.number();
            }
            return 0;
        };
        QCOMPARE(number([&] { system.copyFile(copy + u'x', copy, true); }), int(FileNotFound));
        QCOMPARE(number([&] { system.copyFile(copy, folder.path() + QStringLiteral("\\no\\x"), true); }),
                 int(PathNotFound));
        QCOMPARE(number([&] { system.copyFile(copy, path, false); }), 58);
        QCOMPARE(number([&] { (void)system.getFile(folder.path() + QStringLiteral("\\no")); }), int(FileNotFound));
        QCOMPARE(number([&] { (void)system.getFolder(folder.path() + QStringLiteral("\\no")); }), int(PathNotFound));
        QCOMPARE(number([&] { (void)system.getDrive(QStringLiteral("/no/such/place")); }), int(DeviceUnavailable));
        QVERIFY(system.getDrive(QStringLiteral("/")).freeSpace > 0);
        system.deleteFile(copy, false);
        QVERIFY(!system.fileExists(copy));
        QCOMPARE(number([&] { system.deleteFile(copy, false); }), int(FileNotFound));
    }
};

QTEST_GUILESS_MAIN(tst_platform)
#include "tst_platform.moc"
