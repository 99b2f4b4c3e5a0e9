#include "hands/Hands.h"

#include "shell/frame/mdiPendrake.h"
#include "widgets/Form.h"

#include <QtWidgets/QtWidgets>

#include <stdexcept>

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#undef Bool
#undef None

namespace orlo::test
{

namespace
{

// ---- What the program's own thread is asked, in whatever event loop it is

template <class F>
auto ask(const F& question)
{
    decltype(question()) answer{};
    QMetaObject::invokeMethod(
        qApp, [&] { answer = question(); }, Qt::BlockingQueuedConnection);
    return answer;
}

template <class F>
auto await(const F& question)
{
    const QDeadlineTimer end(5000);
    auto answer = ask(question);
    for (; !answer && !end.hasExpired(); answer = ask(question))
        QThread::msleep(2);
    return answer;
}

void expect(bool good, const QString& what)
{
    if (!good)
        throw std::runtime_error(what.toStdString());
}

// Returns when the program has nothing left to do but to wait.
void settle()
{
    for (int i = 0; i < 3; ++i) {
        const auto idle = std::make_shared<std::atomic<bool>>(false);
        QMetaObject::invokeMethod(qApp, [idle] { QTimer::singleShot(0, qApp, [idle] { *idle = true; }); });
        (void)await([idle] { return idle->load(); });
    }
}

// ---- Mouse and keyboard

Display* server = nullptr;

// Counts the events that the program gets, by X's numbers, before it does anything about them.
struct Counter : QAbstractNativeEventFilter {
    std::atomic<int> of[LASTEvent] = {};

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override
    {
        const auto* bytes = static_cast<const unsigned char*>(message);
        const int type = bytes[0] & 0x7F; // the first bit tells of events that another client sent
        const int number = type == GenericEvent ? bytes[8] | bytes[9] << 8 : type;
        if (number < LASTEvent) // extensions' events have numbers beyond
            ++of[number];
        return false;
    }
} counter;

// A tip that comes up under the pointer would take the next click.
struct NoTips : QObject {
    bool eventFilter(QObject*, QEvent* event) override { return event->type() == QEvent::ToolTip; }
};

// Does something with the server and returns when the program has got that many more events of the type.
template <class Action>
void send(int type, int count, const Action& action)
{
    const int before = counter.of[type];
    action();
    XSync(server, False);
    for (const QDeadlineTimer end(10000); counter.of[type] < before + count; QThread::msleep(1))
        expect(!end.hasExpired(), "the program gets no event");
}

// The key last, before it those that are held meanwhile.
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

void strike(const QList<KeySym>& keys)
{
    send(KeyRelease, static_cast<int>(keys.size()), [&] {
        for (const KeySym key : keys)
            change(key, true);
        for (auto key = keys.rbegin(); key != keys.rend(); ++key)
            change(*key, false);
    });
}

void type(const QString& text)
{
    for (const QChar letter : text) {
        const KeySym key = letter.unicode(); // those of Latin-1 are their own names
        const bool plain = XkbKeycodeToKeysym(server, XKeysymToKeycode(server, key), 0, 0) == key;
        strike(plain ? QList<KeySym>{key} : QList<KeySym>{XK_Shift_L, key});
    }
}

// Comes from a little way off, so that two clicks are a double click only where the script says so.
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

Window focusOfServer()
{
    Window window = 0;
    int revert = 0;
    XGetInputFocus(server, &window, &revert);
    return window;
}

// The window manager tells of the focus last; until it has, it may still be moving it.
Window activeOfManager()
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

// As the window manager does for the button in a window's frame.
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

// ---- What can be seen

QMainWindow& frame()
{
    return mdiPendrake::instance();
}

// The box or dialog that waits, or the active window, in the frame the active child window first. While a list of a
// box is open, no window may be the active one.
QWidgetList workedOn()
{
    QWidget* active = QApplication::activeWindow();
    auto* child = frame().findChild<QMdiArea*>()->currentSubWindow();
    if (active && active != &frame())
        return {active};
    if (QApplication::activeModalWidget())
        return {QApplication::activeModalWidget()};
    return child ? QWidgetList{child, &frame()} : QWidgetList{&frame()};
}

// A list without a frame is wholly covered by its own rows.
bool isInSight(const QWidget& widget)
{
    const auto* area = qobject_cast<const QAbstractScrollArea*>(&widget);
    return !(area ? area->viewport() : &widget)->visibleRegion().isEmpty();
}

QWidget* shown(const QString& name)
{
    for (const QWidget* place : workedOn())
        for (QWidget* widget : place->findChildren<QWidget*>(name))
            if (isInSight(*widget))
                return widget;
    return nullptr;
}

QMessageBox* messageBox()
{
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return box && box->isActiveWindow() ? box : nullptr;
}

using Place = std::optional<QPoint>;

// A window that has just come up, or is being moved, may still be elsewhere than the program believes.
bool standsWhereItSeems(const QWidget& window)
{
    QPoint place;
    Window below = 0;
    XTranslateCoordinates(server, window.winId(), DefaultRootWindow(server), 0, 0, &place.rx(), &place.ry(), &below);
    return (place - window.mapToGlobal(QPoint()) * window.devicePixelRatio()).manhattanLength() <= 2; // it rounds
}

Place middle(const QWidget* widget, QRect part)
{
    part &= widget->visibleRegion().boundingRect();
    if (part.isEmpty() || !(widget->isActiveWindow() || widget->window()->windowType() == Qt::Popup) ||
        !standsWhereItSeems(*widget->window()))
        return {};
    return widget->mapToGlobal(part.center()) * widget->devicePixelRatio();
}

Place placeOfTab(const QString& title)
{
    for (const QWidget* place : workedOn())
        for (const auto* bar : place->findChildren<QTabBar*>())
            for (int tab = 0; tab < bar->count(); ++tab)
                if (bar->isVisible() && bar->tabText(tab).remove('&') == title)
                    return middle(bar, bar->tabRect(tab));
    return {};
}

Place placeOfRow(QWidget* widget, const QStringList& cell)
{
    const auto* box = qobject_cast<QComboBox*>(widget);
    auto* view = box ? box->view() : qobject_cast<QAbstractItemView*>(widget);
    if (!view || !view->isVisible())
        return {};
    const int row = cell[0].toInt();
    const int column = cell.value(1).toInt();
    if (auto* table = qobject_cast<QTableView*>(view); table && column < 0) {
        const auto* heads = table->verticalHeader();
        return middle(heads->viewport(),
                      QRect(0, heads->sectionViewportPosition(row), heads->width(), heads->sectionSize(row)));
    }
    const auto index = view->model()->index(row, column, view->rootIndex());
    view->scrollTo(index);
    return middle(view->viewport(), view->visualRect(index));
}

// Where on the screen to click for a word; nowhere as long as that can't be seen.
Place placeOf(const QString& word)
{
    static const QMap<QString, QMessageBox::StandardButton> answers{
        {"yes", QMessageBox::Yes}, {"no", QMessageBox::No}, {"ok", QMessageBox::Ok}};
    if (answers.contains(word)) {
        const auto* button = messageBox() ? messageBox()->button(answers[word]) : nullptr;
        return button ? middle(button, button->rect()) : Place();
    }
    if (word.startsWith("tab:"))
        return placeOfTab(word.sliced(4).replace('_', ' '));
    QWidget* widget = shown(word.section('[', 0, 0));
    if (!widget)
        return {};
    if (word.contains('['))
        return placeOfRow(widget, word.section('[', 1).chopped(1).split(','));
    QRect part = widget->rect();
    if (qobject_cast<QCheckBox*>(widget) || qobject_cast<QRadioButton*>(widget))
        part.setWidth(16);
    else if (qobject_cast<QComboBox*>(widget))
        part.setLeft(part.right() - 12);
    return middle(widget, part);
}

QString textOf(const QWidget& widget)
{
    if (const auto* pages = qobject_cast<const QTabWidget*>(&widget))
        return pages->tabText(pages->currentIndex()).remove('&');
    if (const auto* list = qobject_cast<const QAbstractItemView*>(&widget))
        return QString::number(list->currentIndex().row());
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return button->isCheckable() ? button->isChecked() ? "on" : "off" : button->isEnabled() ? "live" : "grey";
    for (const char* property : {"currentText", "plainText", "text"})
        if (widget.property(property).isValid())
            return widget.property(property).toString();
    return {};
}

QString focusName()
{
    const QWidget* focus = QApplication::focusWidget();
    while (focus && (focus->objectName().isEmpty() || focus->objectName().startsWith("qt_")))
        focus = focus->parentWidget();
    return focus ? focus->objectName() : "nothing";
}

// ---- The words

void click(const std::function<Place()>& find, unsigned button = Button1, int times = 1)
{
    Place before;
    Place place = await(find);
    while (place && place != before) { // what has just come up may still take its place
        moveTo(*place);
        before = std::exchange(place, await(find));
    }
    expect(place.has_value(), "not to be seen");
    press(button, times);
    settle();
}

void openByMenus(const QAction* command)
{
    QList<QWidget*> holders;
    for (QObject* object : command->associatedObjects())
        if (qobject_cast<QMenuBar*>(object) || qobject_cast<QMenu*>(object))
            holders += static_cast<QWidget*>(object);
    auto* menu = qobject_cast<QMenu*>(holders.value(0));
    if (menu)
        openByMenus(menu->menuAction());
    click([&] {
        auto* action = const_cast<QAction*>(command);
        auto* bar = qobject_cast<QMenuBar*>(holders.value(0));
        return menu ? middle(menu, menu->actionGeometry(action)) : middle(bar, bar->actionGeometry(action));
    });
}

void awaitKeys()
{
    const auto ready = [] {
        const auto* window = QGuiApplication::focusWindow();
        const bool blocked = QApplication::activeModalWidget() && window == frame().windowHandle();
        return QApplication::activePopupWidget() ||
               (window && !blocked && focusOfServer() == window->winId() && activeOfManager() == window->winId());
    };
    expect(await(ready), "no window takes keys");
}

void step(const QString& word)
{
    const QString rest = word.sliced(1).replace('_', ' ');
    const QString text = word.section('=', 1).replace('_', ' ');
    const auto shows = [&, name = word.section('=', 0, 0)] { return shown(name) ? textOf(*shown(name)) : "nothing"; };
    const bool keys = word.startsWith('\'') || word.endsWith('~') || !keysOf(word).contains(NoSymbol);
    if (keys || word == "close")
        awaitKeys();
    if (word.startsWith('\''))
        type(rest);
    else if (word.endsWith('~')) {
        const KeySym key = keysOf(word.chopped(1)).last();
        send(KeyPress, 10, [=] { change(key, true); });
        send(KeyRelease, 1, [=] { change(key, false); });
    } else if (keys)
        strike(keysOf(word));
    else if (word == "close")
        closeByFrame();
    else if (word.startsWith('@'))
        expect(await([&] { return focusName() == word.sliced(1); }), "the focus is on " + ask(focusName));
    else if (word.startsWith('?'))
        expect(await([&] { return messageBox() && messageBox()->text().startsWith(rest); }), "not asked");
    else if (word == "!")
        expect(!ask([] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()) != nullptr; }),
               "something is asked");
    else if (word.contains('='))
        expect(await([&] { return shows() == text; }), "it shows " + ask(shows));
    else if (const auto* command = ask([&] { return frame().findChild<QAction*>(word); }))
        openByMenus(command);
    else if (const QString wheel = word.section(':', 0, 0); wheel == "up" || wheel == "down")
        click([&] { return placeOf(word.section(':', 1)); }, wheel == "up" ? Button4 : Button5);
    else
        click([&] { return placeOf(word.startsWith("2:") ? word.sliced(2) : word); }, Button1,
              word.startsWith("2:") ? 2 : 1);
}

// A button that an access key presses stays down for a moment before it does its work.
bool noButtonIsDown()
{
    return std::ranges::none_of(QApplication::allWidgets(), [](const QWidget* widget) {
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        return button && button->isDown();
    });
}

bool closeOne()
{
    if (auto* popup = QApplication::activePopupWidget())
        return popup->close();
    auto* modal = QApplication::activeModalWidget();
    if (auto* dialog = qobject_cast<QDialog*>(modal))
        dialog->done(QMessageBox::No);
    else if (auto* form = qobject_cast<widgets::Form*>(modal)) // which may tell something once more
        QMetaObject::invokeMethod(form, &widgets::Form::unload, Qt::QueuedConnection);
    return modal != nullptr;
}

QString runWords(const QString& script)
{
    QString fault;
    for (const QString& word : script.split(' ', Qt::SkipEmptyParts)) {
        try {
            step(word);
            (void)await(noButtonIsDown);
            settle();
            expect(!ask([] { return messageBox() && messageBox()->text().startsWith("Run-time"); }), "it ends");
            const auto seen = [] { return !QApplication::focusWidget() || QApplication::focusWidget()->isVisible(); };
            expect(await(seen), "the focus is on hidden " + ask(focusName));
        } catch (const std::exception& error) {
            fault = word + ": " + error.what();
            break;
        }
    }
    while (ask(closeOne))
        settle();
    QMetaObject::invokeMethod(qApp, [] { widgets::Form::unloadAll(); });
    for (settle(); ask(closeOne);)
        settle();
    return fault;
}

} // namespace

QString runHands(const QString& script)
{
    server = XOpenDisplay(nullptr);
    QApplication::setDoubleClickInterval(5000); // however slow the machine is
    XkbSetAutoRepeatRate(server, XkbUseCoreKbd, 200, 20);
    qApp->installNativeEventFilter(&counter);
    NoTips noTips;
    qApp->installEventFilter(&noTips);
    QString fault;
    const std::unique_ptr<QThread> person(QThread::create([&] { fault = runWords(script); }));
    QEventLoop loop;
    QObject::connect(person.get(), &QThread::finished, &loop, &QEventLoop::quit);
    person->start();
    loop.exec();
    qApp->removeNativeEventFilter(&counter);
    XCloseDisplay(server);
    return fault;
}

} // namespace orlo::test
