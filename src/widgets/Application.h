#pragma once

#include <QApplication>
#include <QPointer>

class QAbstractButton;

namespace orlo::platform
{
class RuntimeError;
}

namespace orlo::widgets
{

/// The application object: the one place where an untrapped failure ends the process, and where the rules hold that
/// every control obeys. A field whose check refuses keeps the focus. An access key acts at once, and only in the window
/// in which its Alt was pressed. A key that is held down presses a button once. The wheel changes only the control that
/// has the focus.
class Application : public QApplication
{
    Q_OBJECT

public:
    Application(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Clicks the button as its access key would: at once, and not where that is held back.
    static void press(QAbstractButton& button);

    /// Shows the run-time's report, "Run-time error '3421':" and the description, then ends the process at once with
    /// status 1: nothing is saved or closed.
    [[noreturn]] static void reportAndEnd(const platform::RuntimeError& error);
    /// What that report says.
    [[nodiscard]] static QString reportOf(const platform::RuntimeError& error);

private:
    static void failed(const platform::RuntimeError& error);
    [[nodiscard]] bool pressesAgain(QObject* receiver, const QEvent* event);

    void noteAlt(QObject* receiver, const QEvent* event);
    [[nodiscard]] bool belongsElsewhere(QObject* receiver, const QEvent* event) const;

    bool m_altDown = false;
    QPointer<QWidget> m_altPressedIn; // the window or child window that had the keys then
    bool m_held = false;              // the key that is being dealt with repeats by itself
    int m_releasedKey = 0;
    quint64 m_releasedAt = 0; // its time stamp
};

/// The sentence with which the report of a failure ends from now on, about what has become of the records; an empty
/// text for the usual one, "What was saved before is safe."
void setClosingWords(const QString& sentence);

} // namespace orlo::widgets
