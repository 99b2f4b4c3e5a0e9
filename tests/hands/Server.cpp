#include "hands/Server.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#undef Bool
#undef None

namespace orlo::test
{

namespace
{

Display* server = nullptr;

constexpr int CorePointer = 2; // the server's number for the pointer that all mice move

// Counts the events that the program receives, by X event number, before it handles them. The server reports the mouse
// twice: for the device at once, and for the core pointer, which Qt uses, once the window manager has seen the press
// and let it through.
struct Counter : QAbstractNativeEventFilter {
    std::atomic<int> of[LASTEvent] = {};

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override
    {
        const auto* bytes = static_cast<const unsigned char*>(message);
        const int type = bytes[0] & 0x7F; // the top bit marks events sent by another client
        const int number = type == GenericEvent ? bytes[8] | bytes[9] << 8 : type;
        const bool devices = type == GenericEvent && (bytes[10] | bytes[11] << 8) != CorePointer;
        if (number < LASTEvent && !devices) // extensions' events have higher numbers
            ++of[number];
        return false;
    }
} counter;

// A tool tip that appears under the pointer would take the next click.
struct NoTips : QObject {
    bool eventFilter(QObject*, QEvent* event) override { return event->type() == QEvent::ToolTip; }
} noTips;

// Does something through the server and returns when the program has received that many more events of the type. A busy
// disk may keep it for a while.
template <class Action>
void send(int type, int count, const Action& action)
{
    const int before = counter.of[type];
    action();
    XSync(server, False);
    for (const QDeadlineTimer end(30000); counter.of[type] < before + count; QThread::msleep(1))
        expect(!end.hasExpired(), "the program gets no event");
}

// The key last, its modifiers before it.
QList<KeySym> keysOf(const QString& word)
{
    static const QMap<QString, QString> sided{{"Shift", "Shift_L"}, {"Control", "Control_L"}, {"Alt", "Alt_L"}};
    QList<KeySym> keys;
    for (const QString& name : word.split('+'))
        keys += XStringToKeysym(qPrintable(sided.value(name, name)));
    return keys;
}

void change(KeySym key, bool down)
{
    XTestFakeKeyEvent(server, XKeysymToKeycode(server, key), down ? True : False, CurrentTime);
}

void strikeKeys(const QList<KeySym>& keys)
{
    send(KeyRelease, static_cast<int>(keys.size()), [&] {
        for (const KeySym key : keys)
            change(key, true);
        for (auto key = keys.rbegin(); key != keys.rend(); ++key)
            change(*key, false);
    });
}

} // namespace

Server::Server()
{
    server = XOpenDisplay(nullptr);
    XkbSetAutoRepeatRate(server, XkbUseCoreKbd, 200, 20);
    qApp->installNativeEventFilter(&counter);
    qApp->installEventFilter(&noTips);
}

Server::~Server()
{
    qApp->removeEventFilter(&noTips);
    qApp->removeNativeEventFilter(&counter);
    XCloseDisplay(server);
}

bool areKeys(const QString& word)
{
    return !keysOf(word).contains(NoSymbol);
}

void strike(const QString& word)
{
    strikeKeys(keysOf(word));
}

void hold(const QString& word)
{
    const QList<KeySym> keys = keysOf(word);
    constexpr unsigned long pause = 5; // a hand doesn't press a key again right after releasing it
    QThread::msleep(pause);
    send(KeyPress, static_cast<int>(keys.size()) + 9, [&] {
        for (const KeySym key : keys)
            change(key, true);
    });
    send(KeyRelease, static_cast<int>(keys.size()), [&] {
        for (auto key = keys.rbegin(); key != keys.rend(); ++key)
            change(*key, false);
    });
    QThread::msleep(pause);
}

void burst(const QStringList& words, int gap)
{
    QList<KeySym> held;
    const auto hold = [&held](const QList<KeySym>& wanted) {
        for (const KeySym key : std::as_const(held))
            if (!wanted.contains(key))
                change(key, false);
        for (const KeySym key : wanted)
            if (!held.contains(key))
                change(key, true);
        held = wanted;
    };
    for (qsizetype i = 0; i < words.size(); ++i) {
        if (i > 0)
            QThread::msleep(static_cast<unsigned long>(gap));
        QList<KeySym> keys = keysOf(words[i]);
        const bool click = keys.contains(NoSymbol);
        const KeySym last = keys.takeLast();
        hold(click ? QList<KeySym>() : keys);
        for (const int down : {True, False})
            if (click)
                XTestFakeButtonEvent(server, 1, down, CurrentTime);
            else
                change(last, down == True);
        XSync(server, False);
    }
    hold({});
    XSync(server, False);
    QThread::msleep(60); // for the window manager, which decides on the focus
    settle();
}

void type(const QString& text)
{
    for (const QChar letter : text) {
        const KeySym key = letter.unicode(); // latin-1 codes are their own key symbols
        const bool plain = XkbKeycodeToKeysym(server, XKeysymToKeycode(server, key), 0, 0) == key;
        strikeKeys(plain ? QList<KeySym>{key} : QList<KeySym>{XK_Shift_L, key});
    }
}

// Approaches from a short distance, so that two clicks are a double click only if the script says so.
void moveTo(QPoint place)
{
    const QPoint away(place.x() < DisplayWidth(server, 0) / 2 ? 23 : -23,
                      place.y() < DisplayHeight(server, 0) / 2 ? 11 : -11);
    for (const QPoint at : {place + away, place}) {
        send(MotionNotify, 1, [=] { XTestFakeMotionEvent(server, -1, at.x(), at.y(), CurrentTime); });
        settle();
    }
}

void press(unsigned button, int times)
{
    for (int i = 0; i < 2 * times; ++i) {
        const bool down = i % 2 == 0;
        send(down ? ButtonPress : ButtonRelease, 1,
             [=] { XTestFakeButtonEvent(server, button, down ? True : False, CurrentTime); });
        settle();
    }
}

WId focusOfServer()
{
    Window window = 0;
    int revert = 0;
    XGetInputFocus(server, &window, &revert);
    return window;
}

// The window manager reports the focus last; until then it may still be moving it.
WId activeOfManager()
{
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(server, DefaultRootWindow(server), XInternAtom(server, "_NET_ACTIVE_WINDOW", False), 0, 1, False,
                       AnyPropertyType, &type, &format, &count, &left, &data);
    const Window active = count == 1 ? *reinterpret_cast<Window*>(data) : 0;
    XFree(data);
    return active;
}

void closeByFrame()
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = focusOfServer();
    event.xclient.message_type = XInternAtom(server, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(server, "WM_DELETE_WINDOW", False));
    send(ClientMessage, 1, [&] { XSendEvent(server, event.xclient.window, False, NoEventMask, &event); });
}

QPoint placeOfWindow(WId window)
{
    QPoint place;
    Window below = 0;
    XTranslateCoordinates(server, window, DefaultRootWindow(server), 0, 0, &place.rx(), &place.ry(), &below);
    return place;
}

} // namespace orlo::test
