#include "support/Main.h"

#include <QTest>

#include <algorithm>
#include <memory>
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

const TestClass* theClass = nullptr; // the one that runs

int run(const TestClass& one, const QStringList& arguments)
{
    theClass = &one;
    const std::unique_ptr<QObject> tests(one.make());
    return QTest::qExec(tests.get(), arguments);
}

} // namespace

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
    const auto named = std::ranges::find_if(
        classes(), [&](const TestClass* one) { return arguments.value(1) == QLatin1String(one->name); });
    if (named == classes().end()) {
        int failed = 0;
        for (const TestClass* one : classes())
            failed += run(*one, arguments);
        return failed;
    }
    if (arguments.value(2) == ChildMark)
        return (*named)->child(arguments.mid(3));
    return run(**named, arguments.mid(1));
}

} // namespace orlo::test
