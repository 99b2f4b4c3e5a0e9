#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>

namespace orlo::test
{

/// Ends the row that runs, which fails with these words; the next one goes on.
[[noreturn]] void fail(const QString& why);
/// Ends the row that runs, which can't be tried here, and why.
[[noreturn]] void skip(const QString& why);
/// Where a row of data stands, by its name, for what is said of it when it is red; those of the function before are
/// forgotten.
struct RowPlace {
    QByteArray file;
    int line = 0;
};
void setRowPlaces(QHash<QByteArray, RowPlace> places);
/// The place of the row that runs; line 0 where none is known.
[[nodiscard]] RowPlace rowPlace();
/// Runs a test function; what is thrown out of it fails its row.
void guard(const std::function<void()>& function);

/// A class of tests, each function of which runs guarded.
template <class Tests>
class Guarded : public Tests
{
public:
    const QMetaObject* metaObject() const override
    {
        static const QMetaObject guarded = [] {
            QMetaObject meta = Tests::staticMetaObject;
            meta.d.static_metacall = [](QObject* tests, QMetaObject::Call call, int function, void** arguments) {
                guard([&] { Tests::staticMetaObject.d.static_metacall(tests, call, function, arguments); });
            };
            return meta;
        }();
        return &guarded;
    }
};

/// A class of tests in a room's test program, known to it from the program's start.
class TestClass
{
public:
    using Child = int (*)(const QStringList& arguments);

    TestClass(const char* name, QObject* (*make)(), Child child = nullptr);

    const char* name;
    QObject* (*make)();
    Child child; ///< what a process does that a test starts by childArguments()
};

/// The arguments with which a test starts its own program once more, to run the class's child routine on them.
[[nodiscard]] QStringList childArguments(const QStringList& arguments);
/// The same to run one test function, or one row of it as "function:row".
[[nodiscard]] QStringList functionArguments(const QString& function);

/// Runs the class that the first argument names, with the rest of the arguments as Qt Test takes them, or every class
/// of the program; the exit status.
[[nodiscard]] int runTests(const QStringList& arguments);

} // namespace orlo::test

/// Puts a class of tests into its room's program; a second argument is its child routine.
#define ORLO_TEST(Class, ...)                                                                                          \
    static const orlo::test::TestClass Class##Entry(                                                                   \
        #Class, []() -> QObject* { return new orlo::test::Guarded<Class>; } __VA_OPT__(, ) __VA_ARGS__);
