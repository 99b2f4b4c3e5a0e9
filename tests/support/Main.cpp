#include "support/Main.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <stdexcept>
#include <vector>

namespace orlo::test
{

namespace
{

const QString ChildMark = QStringLiteral("--child");

std::vector<const TestClass*>& classes()
{
    static std::vector<const TestClass*> all;
    return all;
}

const TestClass* theClass = nullptr; // the running class
QtMessageHandler testLog = nullptr;  // Qt Test's own handler

struct Skipped : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Warnings of off-screen windows about hints and raising are noise.
void log(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (!message.startsWith(QLatin1String("This plugin does not support ")))
        testLog(type, context, message);
}

// A hanging row ends the program under its name; long runs have no limit.
void limitRows()
{
    constexpr auto Limit = "QTEST_FUNCTION_TIMEOUT";
    const auto isSet = [](const char* variable) { return qEnvironmentVariableIsSet(variable); };
    const bool isLong = std::ranges::any_of(std::array{"ORLO_KILLS", "ORLO_DAMAGED_FILES", "ORLO_JET_FILES"}, isSet);
    if (!isSet(Limit))
        qputenv(Limit, isLong ? "7200000" : "150000");
}

int run(const TestClass& one, const QStringList& arguments)
{
    theClass = &one;
    testLog = nullptr;
    const std::unique_ptr<QObject> tests(one.make());
    return QTest::qExec(tests.get(), arguments);
}

} // namespace

static QHash<QByteArray, RowPlace> thePlaces;

void setRowPlaces(QHash<QByteArray, RowPlace> places)
{
    thePlaces = std::move(places);
}

RowPlace rowPlace()
{
    return thePlaces.value(QTest::currentDataTag());
}

void fail(const QString& why)
{
    throw std::runtime_error(why.toStdString());
}

void skip(const QString& why)
{
    throw Skipped(why.toStdString());
}

void guard(const std::function<void()>& function)
{
    if (!testLog)
        testLog = qInstallMessageHandler(log);
    try {
        function();
    } catch (const Skipped& why) {
        QTest::qSkip(why.what(), __FILE__, __LINE__);
    } catch (const std::exception& error) {
        QTest::qFail(error.what(), __FILE__, __LINE__);
    }
    if (const RowPlace place = rowPlace(); place.line > 0 && QTest::currentTestFailed())
        qWarning("the row: %s:%d", place.file.constData(), place.line);
}

TestClass::TestClass(const char* given, QObject* (*maker)(), Child routine) : name(given), make(maker), child(routine)
{
    classes().push_back(this);
}

QStringList childArguments(const QStringList& arguments)
{
    return QStringList{QString::fromLatin1(theClass->name), ChildMark} + arguments;
}

QStringList functionArguments(const QString& function)
{
    return {QString::fromLatin1(theClass->name), function};
}

int runTests(const QStringList& arguments)
{
    limitRows();
    const auto named = std::ranges::find_if(
        classes(), [&](const TestClass* one) { return arguments.value(1) == QLatin1String(one->name); });
    if (named == classes().end()) {
        int failed = 0; // one process per class, so that whatever one leaves open doesn't affect the next
        for (const TestClass* one : classes())
            failed += QProcess::execute(arguments[0], QStringList(QString::fromLatin1(one->name)) + arguments.mid(1));
        return failed;
    }
    // Whatever this process or a child leaves behind, even a killed one, goes with this folder.
    const QTemporaryDir room(QDir::tempPath() + QStringLiteral("/orlo-tests-XXXXXX"));
    QFile::setPermissions(room.path(), QFile::Permissions(0x7755)); // some children run as another user
    for (const char* variable : {"TMPDIR", "TMP"})
        qputenv(variable, QFile::encodeName(QDir::toNativeSeparators(room.path())));
    if (arguments.value(2) == ChildMark)
        return (*named)->child(arguments.mid(3));
    return run(**named, arguments.mid(1));
}

} // namespace orlo::test
