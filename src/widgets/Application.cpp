#include "widgets/Application.h"

#include "platform/Application.h"
#include "platform/RuntimeError.h"
#include "widgets/Form.h"

#include <QMessageBox>
#include <QProxyStyle>
#include <QTabBar>

#include <cstdio>
#include <cstdlib>

namespace orlo::widgets
{

namespace
{

constexpr int OutOfMemory = 7;
constexpr int InternalError = 51;

bool reporting = false; // the report is up

// The widget that a press there would give the focus to. A tab bar takes none, but turning its page leaves the field.
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

bool focusMustStay(QObject* receiver, const QEvent* event)
{
    if (!receiver->isWidgetType())
        return false;
    auto* widget = static_cast<QWidget*>(receiver);
    if (event->type() == QEvent::Shortcut)
        return !mayLeaveFocusField(widget);
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick) {
        const QWidget* target = focusTarget(widget);
        return target && !mayLeaveFocusField(target);
    }
    return false;
}

// Fusion, but a combo box opens a list with a scroll bar below itself, not a menu over the whole screen.
class Style : public QProxyStyle
{
public:
    Style() : QProxyStyle(QStringLiteral("Fusion")) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override
    {
        return hint == SH_ComboBox_Popup ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

} // namespace

Application::Application(int& argc, char** argv) : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("ORLO"));
    setStyle(new Style);
}

bool Application::notify(QObject* receiver, QEvent* event)
{
    try {
        if (focusMustStay(receiver, event))
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

// What fails while the report is up, its own painting of the windows behind it included, leaves the report standing:
// the user is to read the first failure.
void Application::failed(const platform::RuntimeError& error)
{
    if (!reporting)
        reportAndEnd(error);
}

void Application::reportAndEnd(const platform::RuntimeError& error)
{
    reporting = true;
    const QString text = QStringLiteral("Run-time error '%1':\n\n%2").arg(error.number()).arg(error.description());
    std::fprintf(stderr, "%s\n", qPrintable(text));
    QMessageBox box(QMessageBox::Critical, platform::title(),
                    text + QStringLiteral("\n\nORLO must close. What was saved before is safe."));
    box.setTextFormat(Qt::PlainText);
    box.exec();
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
}

} // namespace orlo::widgets
