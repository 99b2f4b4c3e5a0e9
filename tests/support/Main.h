#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>

namespace orlo::test
{

/// Fails the current row with this reason and goes on with the next.
[[noreturn]] void fail(const QString& why);
/// Skips the current row, which can't run here, with a reason.
[[noreturn]] void skip(const QString& why);
/// Where a row of data is.
struct RowPlace {
    QByteArray file;
    int line = 0;
};
/// Sets the places of a function's rows, by their names; the previous function's are forgotten.
void setRowPlaces(QHash<QByteArray, RowPlace> places);
/// The place of the current row; line 0 if it isn't known.
[[nodiscard]] RowPlace rowPlace();
/// Runs a test function; an exception fails its row, and a failed row's place is logged.
void guard(const std::function<void()>& function);

/// A class of tests whose functions all run guarded.
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

/// Registers a class of tests with its room's test program at start-up.
class TestClass
{
public:
    using Child = int (*)(const QStringList& arguments);

    TestClass(const char* name, QObject* (*make)(), Child child = nullptr);

    const char* name;
    QObject* (*make)();
    Child child; ///< for processes that a test starts with childArguments()
};

/// Arguments to start this program again and run the class's child routine on them.
[[nodiscard]] QStringList childArguments(const QStringList& arguments);
/// The same for a test function, or one of its rows as "function:row".
[[nodiscard]] QStringList functionArguments(const QString& function);

/// Runs the class that the first argument names, passing the others to Qt Test, or every class; returns the exit
/// status.
[[nodiscard]] int runTests(const QStringList& arguments);

} // namespace orlo::test

/// Registers a class of tests; a second argument is its child routine.
#define ORLO_TEST(Class, ...)                                                                                          \
    static const orlo::test::TestClass Class##Entry(                                                                   \
        #Class, []() -> QObject* { return new orlo::test::Guarded<Class>; } __VA_OPT__(, ) __VA_ARGS__);
