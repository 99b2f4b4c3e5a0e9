#pragma once

#include <QtWidgets/QtWidgets>

#include <stdexcept>

namespace orlo::test
{

/// Has the question answered in the program's own thread, in whatever event loop that is.
template <class F>
auto ask(const F& question)
{
    decltype(question()) answer{};
    QMetaObject::invokeMethod(
        qApp, [&] { answer = question(); }, Qt::BlockingQueuedConnection);
    return answer;
}

/// Asks until the answer is one, 5 seconds at most.
template <class F>
auto await(const F& question)
{
    const QDeadlineTimer end(5000);
    auto answer = ask(question);
    for (; !answer && !end.hasExpired(); answer = ask(question))
        QThread::msleep(2);
    return answer;
}

/// Raises std::runtime_error with the text where it isn't so.
inline void expect(bool good, const QString& what)
{
    if (!good)
        throw std::runtime_error(what.toStdString());
}

/// Returns when the program has nothing left to do but to wait.
inline void settle()
{
    for (int i = 0; i < 3; ++i) {
        const auto idle = std::make_shared<std::atomic<bool>>(false);
        QMetaObject::invokeMethod(qApp, [idle] { QTimer::singleShot(0, qApp, [idle] { *idle = true; }); });
        (void)await([idle] { return idle->load(); });
    }
}

/// The connection to the X server, with which the person works: open while it lives. All calls below need one, and
/// raise std::runtime_error where the program doesn't get an event within ten seconds.
class Server
{
public:
    Server();
    ~Server();
};

/// Whether the word names keys as X does, "Alt+s".
[[nodiscard]] bool areKeys(const QString& word);
/// Presses and releases the keys of such a word.
void strike(const QString& word);
/// Holds the last of the keys until it came ten times.
void hold(const QString& word);
/// Types a text of Latin-1.
void type(const QString& text);

/// Strikes one after the other, so many milliseconds apart, whatever the program does meanwhile; a word that names no
/// keys clicks where the pointer is. Keys that two neighbours have in common before their last ones are held between.
void burst(const QStringList& words, int gap);

/// Moves the pointer, in the screen's own pixels.
void moveTo(QPoint place);
/// Presses and releases a button of the mouse, from 1 on; 4 and 5 are the wheel's up and down.
void press(unsigned button, int times);

/// The window that the server gives the keys, and the one that the window manager says to be active.
[[nodiscard]] WId focusOfServer();
[[nodiscard]] WId activeOfManager();
/// Where the window stands, in the screen's own pixels.
[[nodiscard]] QPoint placeOfWindow(WId window);
/// As the window manager does for the button in a window's frame.
void closeByFrame();

} // namespace orlo::test
