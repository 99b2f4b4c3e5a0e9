#include "widgets/Application.h"

#include "platform/Application.h"
#include "platform/RuntimeError.h"
#include "widgets/Accessible.h"
#include "widgets/Form.h"
#include "widgets/NestedLoop.h"
#include "widgets/Style.h"
#include "widgets/TextBox.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDialog>
#include <QHelpEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTabBar>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace orlo::widgets
{

namespace
{

constexpr int OutOfMemory = 7;
constexpr int InternalError = 51;
constexpr quint64 FirstRepeat = 100; // milliseconds; no desktop lets a held key repeat sooner

bool reporting = false; // the report is being shown
QString closingWords;

QString failureText(const platform::RuntimeError& error)
{
    return QStringLiteral("Run-time error '%1':\n\n%2").arg(error.number()).arg(error.description());
}

// The widget that a press there would focus. A tab bar takes no focus, but turning its page leaves the field.
const QWidget* focusTarget(const QWidget* pressed)
{
    for (const QWidget* widget = pressed; widget; widget = widget->parentWidget()) {
        if (qobject_cast<const QTabBar*>(widget))
            return widget;
        if (widget->isEnabled() && (widget->focusPolicy() & Qt::ClickFocus))
            return widget;
        if (widget->isWindow())
            break;
    }
    return nullptr;
}

bool isPress(const QEvent* event)
{
    return event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
}

bool isInput(const QEvent* event)
{
    return isPress(event) || event->type() == QEvent::KeyPress || event->type() == QEvent::Shortcut ||
           event->type() == QEvent::Wheel;
}

// A key or press that follows the answer to a question closely can still reach its box, and would be a second answer.
bool isClosed(const QWidget& widget)
{
    const auto* dialog = qobject_cast<const QDialog*>(widget.window());
    return (dialog && !dialog->isVisible()) || isInClosedForm(widget);
}

// Whether a field that was left, and whose check refuses, holds back a press or key.
bool focusMustStay(QObject* receiver, const QEvent* event)
{
    const QWidget* target = receiver->isWidgetType() ? static_cast<QWidget*>(receiver) : nullptr;
    if (isPress(event))
        target = focusTarget(target);
    else if (event->type() == QEvent::KeyPress) {
        if (qobject_cast<Form*>(receiver)) // its default button asks by itself
            return false;
    } else if (event->type() == QEvent::Shortcut) {
        if (const auto* label = qobject_cast<QLabel*>(receiver); label && label->buddy())
            target = label->buddy();
    } else
        return false;
    return target && !mayReach(target);
}

// The window or child window that contains a widget.
QWidget* screenOf(QWidget* widget)
{
    while (!widget->isWindow() && widget->windowType() != Qt::SubWindow)
        widget = widget->parentWidget();
    return widget;
}

bool hangsOff(const QWidget* widget, const QWidget& owner)
{
    while (widget && widget != &owner)
        widget = widget->parentWidget();
    return widget;
}

// The window at the end of a chain of owners.
const QWidget* topOwner(const QWidget* window)
{
    while (window->parentWidget())
        window = window->parentWidget();
    return window;
}

// A new window takes a moment to become the active one. Meanwhile Qt holds back what is typed into the windows behind
// it, but not their access keys and commands.
bool isBehindModal(const QObject* receiver)
{
    while (receiver && !receiver->isWidgetType())
        receiver = receiver->parent();
    const auto* widget = static_cast<const QWidget*>(receiver);
    const QWidget* modal = QApplication::activeModalWidget();
    return widget && modal && !hangsOff(widget, *modal) &&
           (modal->windowModality() == Qt::ApplicationModal || topOwner(widget) == topOwner(modal));
}

// Qt answers an access key by pressing the button now and clicking it a tenth of a second later, whatever was typed or
// asked meanwhile.
void clickNow(QAbstractButton& button)
{
    if (!button.isEnabled())
        return;
    if (button.isCheckable() && (button.focusPolicy() & Qt::ClickFocus))
        button.setFocus();
    button.click();
}

bool clickByAccessKey(QObject* receiver)
{
    auto* button = qobject_cast<QAbstractButton*>(receiver);
    if (button)
        clickNow(*button);
    return button;
}

// In a message box a letter works without Alt. A key that was already held when the box appeared answers nothing.
bool answerByLetter(QMessageBox& box, const QKeyEvent& key)
{
    if (key.key() == 0 || (key.modifiers() & (Qt::AltModifier | Qt::ControlModifier | Qt::MetaModifier)))
        return false;
    const auto buttons = box.buttons();
    const auto meant = std::ranges::find_if(buttons, [&key](const QAbstractButton* button) {
        return button->shortcut()[0].key() == key.key(); // nothing has the key 0
    });
    if (meant == buttons.end())
        return false;
    if (!key.isAutoRepeat())
        clickNow(**meant);
    return true;
}

// After a double click on a button that opens a window, the second press goes to the window behind, and the window
// manager may focus that window, although it accepts no input.
void keepKeys(QWidget& modal)
{
    for (const int delay : {50, 150, 400}) // milliseconds
        QTimer::singleShot(delay, &modal, [&modal] {
            if (QApplication::activeModalWidget() == &modal && isBehindModal(QApplication::activeWindow()))
                modal.activateWindow();
        });
}

// The control whose value the wheel would change there.
QWidget* wheelTarget(QWidget* under)
{
    for (QWidget* widget = under; widget; widget = widget->isWindow() ? nullptr : widget->parentWidget()) {
        if (qobject_cast<QComboBox*>(widget) || qobject_cast<QAbstractSpinBox*>(widget) ||
            qobject_cast<QTabBar*>(widget))
            return widget;
        if (qobject_cast<QAbstractSlider*>(widget))
            return qobject_cast<QScrollBar*>(widget) ? nullptr : widget;
    }
    return nullptr;
}

} // namespace

Application::Application(int& argc, char** argv) : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("ORLO"));
    setStyle(new Style);
    installEventFilter(this);
    installAccessibility();
}

bool Application::notify(QObject* receiver, QEvent* event)
{
    try {
        if (event->type() == QEvent::DeferredDelete && receiver->isWidgetType() && NestedLoop::depth() > 0 &&
            Form::putsOffDeletion(*receiver))
            return true;
        noteAlt(receiver, event);
        if (event->type() == QEvent::Shortcut && (isBehindModal(receiver) || belongsElsewhere(receiver, event)))
            return true;
        if (isInput(event) && receiver->isWidgetType() && isClosed(*static_cast<QWidget*>(receiver)))
            return true;
        if (pressesAgain(receiver, event) || focusMustStay(receiver, event))
            return true;
        return QApplication::notify(receiver, event);
    } catch (const platform::RuntimeError& error) {
        failed(error);
    } catch (const std::bad_alloc&) {
        failed(platform::RuntimeError(OutOfMemory, QString(), QStringLiteral("Out of memory")));
    } catch (const std::exception& error) {
        failed(platform::RuntimeError(InternalError, QString(), QString::fromUtf8(error.what())));
    }
    return false;
}

// Further failures while the report is shown, such as those from painting the windows behind it, are ignored: the user
// must be able to read the first one.
void Application::failed(const platform::RuntimeError& error)
{
    if (!reporting)
        reportAndEnd(error);
}

void Application::noteAlt(QObject* receiver, const QEvent* event)
{
    if (event->type() == QEvent::ApplicationActivate)
        m_altDown = false; // it may have been released elsewhere
    if (!receiver->isWidgetType() || (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease))
        return;
    const auto* key = static_cast<const QKeyEvent*>(event);
    if (key->key() != Qt::Key_Alt || key->isAutoRepeat())
        return;
    m_altDown = event->type() == QEvent::KeyPress;
    // Keys sent to a window are meant for its focused control.
    auto* pressed = static_cast<QWidget*>(receiver);
    QWidget* const focus = focusWidget();
    m_altPressedIn = screenOf(focus && focus->window() == pressed->window() ? focus : pressed);
}

// While Alt is held for two keys, both are meant for the window that was in front at the first. The second must not act
// on what has come up since: a question, or the window behind one that was closed.
bool Application::belongsElsewhere(QObject* receiver, const QEvent* event) const
{
    const QKeySequence keys = static_cast<const QShortcutEvent*>(event)->key();
    return m_altDown && receiver->isWidgetType() && !qobject_cast<QMenuBar*>(receiver) &&
           (keys[0].keyboardModifiers() & Qt::AltModifier) &&
           screenOf(static_cast<QWidget*>(receiver)) != m_altPressedIn;
}

// A text box accepts a held key as often as it repeats, but auto-repeat must not press a button again, or the next
// dialog's. A shortcut event doesn't say whether its key repeats, so that is noted when the event is announced.
bool Application::pressesAgain(QObject* receiver, const QEvent* event)
{
    if (event->type() == QEvent::Shortcut)
        return m_held && (qobject_cast<QAbstractButton*>(receiver) || qobject_cast<QAction*>(receiver));
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride &&
        event->type() != QEvent::KeyRelease)
        return false;
    const auto* key = static_cast<const QKeyEvent*>(event);
    if (event->type() == QEvent::KeyRelease) {
        m_releasedKey = key->key();
        m_releasedAt = key->timestamp();
        return false;
    }
    // A busy program isn't always told that a key repeats. It then gets a release and a press with the same time stamp.
    // A program that types can produce that, too, and Qt takes it for a repeat; but no key repeats that soon. Only X
    // stamps a repeat with its own time.
    const int code = key->key();
    const quint64 at = key->timestamp();
    if (code != m_releasedKey)
        m_releasedKey = 0;
    const bool atOnce = at != 0 && code == m_releasedKey && at == m_releasedAt;
    static const bool isStamped = platformName() == QLatin1String("xcb");
    const bool tooSoon = isStamped && atOnce && code == m_pressedKey && at - m_pressedAt < FirstRepeat;
    m_held = (key->isAutoRepeat() || atOnce) && !tooSoon;
    if (!m_held && !tooSoon) {
        m_pressedKey = code;
        m_pressedAt = at;
    }
    if (!m_held || event->type() == QEvent::ShortcutOverride || !receiver->isWidgetType())
        return false;
    switch (code) {
    case Qt::Key_Escape:
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return !qobject_cast<QPlainTextEdit*>(receiver);
    case Qt::Key_Space:
        return qobject_cast<QAbstractItemView*>(receiver) || qobject_cast<QAbstractButton*>(receiver);
    default:
        return false;
    }
}

bool Application::eventFilter(QObject* watched, QEvent* event)
{
    if (!watched->isWidgetType())
        return QApplication::eventFilter(watched, event);
    auto* widget = static_cast<QWidget*>(watched);
    if (event->type() == QEvent::Shortcut) {
        if (!static_cast<QShortcutEvent*>(event)->isAmbiguous() && clickByAccessKey(widget))
            return true;
    } else if (event->type() == QEvent::KeyPress) {
        if (auto* box = qobject_cast<QMessageBox*>(widget);
            box && answerByLetter(*box, static_cast<QKeyEvent&>(*event)))
            return true;
    } else if (event->type() == QEvent::Show && widget->isModal()) {
        keepKeys(*widget);
    } else if (event->type() == QEvent::Wheel) {
        if (const QWidget* target = wheelTarget(widget);
            target && !target->hasFocus() && !target->isAncestorOf(focusWidget())) {
            event->ignore(); // let it go on to what lies behind the control
            return true;
        }
    } else if (event->type() == QEvent::ToolTip && showCutText(*widget, *static_cast<QHelpEvent*>(event)))
        return true;
    return QApplication::eventFilter(watched, event);
}

void Application::press(QAbstractButton& button)
{
    if (auto* application = qobject_cast<Application*>(qApp))
        application->m_held = false; // whatever the keys are doing
    QShortcutEvent accessKey(QKeySequence(), 0);
    sendEvent(&button, &accessKey);
}

QString Application::reportOf(const platform::RuntimeError& error)
{
    return QStringLiteral("%1\n\nORLO must close. %2")
        .arg(failureText(error),
             closingWords.isEmpty() ? QStringLiteral("What was saved before is safe.") : closingWords);
}

void setClosingWords(const QString& sentence)
{
    closingWords = sentence;
}

void Application::reportAndEnd(const platform::RuntimeError& error)
{
    reporting = true;
    std::fprintf(stderr, "%s\n", qPrintable(failureText(error)));
    QMessageBox box(QMessageBox::Critical, platform::title(), reportOf(error));
    box.setTextFormat(Qt::PlainText);
    box.exec();
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
}

} // namespace orlo::widgets
