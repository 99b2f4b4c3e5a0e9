#pragma once

#include <QApplication>

namespace orlo::platform
{
class RuntimeError;
}

namespace orlo::widgets
{

/// The application object: the one place where an untrapped failure ends the process, and where the focus is kept in a
/// field whose check refuses to let it go.
class Application : public QApplication
{
    Q_OBJECT

public:
    Application(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;

    /// Shows the run-time's report, "Run-time error '3421':" and the description, then ends the process at once with
    /// status 1: nothing is saved or closed.
    [[noreturn]] static void reportAndEnd(const platform::RuntimeError& error);

private:
    static void failed(const platform::RuntimeError& error);
};

} // namespace orlo::widgets
