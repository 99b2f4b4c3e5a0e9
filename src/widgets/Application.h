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

/// The application object. An untrapped failure ends the process here and nowhere else. It also enforces the rules that
/// hold for every control: a field whose check refuses keeps the focus; an access key acts at once, and only in the
/// window where its Alt was pressed; a held key presses a button once; the wheel changes only the focused control.
class Application : public QApplication
{
    Q_OBJECT

public:
    Application(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Clicks a button as its access key would: at once, unless access keys are held back there.
    static void press(QAbstractButton& button);

    /// Shows the run-time report, "Run-time error '3421':" and the description, then ends the process at once with
    /// status 1, without saving or closing anything.
    [[noreturn]] static void reportAndEnd(const platform::RuntimeError& error);
    /// The report's text.
    [[nodiscard]] static QString reportOf(const platform::RuntimeError& error);

private:
    static void failed(const platform::RuntimeError& error);
    [[nodiscard]] bool pressesAgain(QObject* receiver, const QEvent* event);

    void noteAlt(QObject* receiver, const QEvent* event);
    [[nodiscard]] bool belongsElsewhere(QObject* receiver, const QEvent* event) const;

    bool m_altDown = false;
    QPointer<QWidget> m_altPressedIn; // the window or child window that was focused then
    bool m_held = false;              // the current key event is an auto-repeat
    int m_pressedKey = 0;             // the last that was surely no auto-repeat
    quint64 m_pressedAt = 0;          // its time stamp
    int m_releasedKey = 0;            // if no other was pressed since
    quint64 m_releasedAt = 0;
};

/// The sentence with which the report of a failure ends from now on, about what has become of the records; an empty
/// text for the usual one, "What was saved before is safe."
void setClosingWords(const QString& sentence);

} // namespace orlo::widgets
