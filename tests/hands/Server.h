#pragma once

#include <QtWidgets/QtWidgets>

#include <stdexcept>

namespace orlo::test
{

/// Evaluates the question in the program's own thread, whichever event loop is running.
template <class F>
auto ask(const F& question)
{
    decltype(question()) answer{};
    QMetaObject::invokeMethod(
        qApp, [&] { answer = question(); }, Qt::BlockingQueuedConnection);
    return answer;
}

/// Repeats the question until the answer is true, for at most 5 seconds.
template <class F>
auto await(const F& question)
{
    const QDeadlineTimer end(5000);
    auto answer = ask(question);
    for (; !answer && !end.hasExpired(); answer = ask(question))
        QThread::msleep(2);
    return answer;
}

/// Raises std::runtime_error with the text if the condition is false.
inline void expect(bool good, const QString& what)
{
    if (!good)
        throw std::runtime_error(what.toStdString());
}

/// Returns when the program is idle.
inline void settle()
{
    for (int i = 0; i < 3; ++i) {
        const auto idle = std::make_shared<std::atomic<bool>>(false);
        QMetaObject::invokeMethod(qApp, [idle] { QTimer::singleShot(0, qApp, [idle] { *idle = true; }); });
        (void)await([idle] { return idle->load(); });
    }
}

/// A connection to the X server, which supplies mouse and keyboard: open while the object lives. All functions below
/// need one, and raise std::runtime_error if the program doesn't receive an event within ten seconds.
class Server
{
public:
    Server();
    ~Server();
};

/// Whether the word names keys as X does, "Alt+s".
[[nodiscard]] bool areKeys(const QString& word);
/// Presses and releases a word's keys.
void strike(const QString& word);
/// Holds the last key until it has come ten times.
void hold(const QString& word);
/// Types a Latin-1 text.
void type(const QString& text);

/// Strikes words one after the other, this many milliseconds apart, whatever the program does meanwhile; a word that
/// names no keys clicks at the pointer. Modifiers shared by two neighbouring words stay pressed in between.
void burst(const QStringList& words, int gap);

/// Moves the pointer, in screen pixels.
void moveTo(QPoint place);
/// Presses and releases a mouse button, from 1; 4 and 5 are wheel up and down.
void press(unsigned button, int times);

/// The window with the server's keyboard focus, and the window manager's active one.
[[nodiscard]] WId focusOfServer();
[[nodiscard]] WId activeOfManager();
/// The window's position in screen pixels.
[[nodiscard]] QPoint placeOfWindow(WId window);
/// Closes a window as the button in its frame does.
void closeByFrame();

} // namespace orlo::test
