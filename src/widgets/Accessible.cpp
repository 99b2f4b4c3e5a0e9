#include "widgets/Accessible.h"

#include "widgets/Application.h"
#include "widgets/Form.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAccessibleWidget>
#include <QCheckBox>
#include <QGroupBox>
#include <QMenu>
#include <QToolButton>

namespace orlo::widgets
{

namespace
{

QString withoutAccessKey(const QString& text)
{
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && i + 1 < text.size())
            ++i;
        plain += text[i];
    }
    return plain;
}

class WindowAccessible : public QAccessibleWidget
{
public:
    explicit WindowAccessible(QWidget* window) : QAccessibleWidget(window, QAccessible::Dialog) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        const QString own = QAccessibleWidget::text(kind);
        return own.isEmpty() && kind == QAccessible::Name ? widget()->windowTitle() : own; // a child window's
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = widget()->isModal();
        return state;
    }
};

// Qt names nested group boxes after the outer one.
class GroupAccessible : public QAccessibleWidget
{
public:
    explicit GroupAccessible(QGroupBox* box) : QAccessibleWidget(box, QAccessible::Grouping) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        const QString title = withoutAccessKey(static_cast<QGroupBox*>(widget())->title());
        const bool named = kind != QAccessible::Name || !widget()->accessibleName().isEmpty() || title.isEmpty();
        return named ? QAccessibleWidget::text(kind) : title;
    }
};

// Qt's own presses the button and clicks it a tenth of a second later, whatever happened meanwhile.
class ButtonAccessible : public QAccessibleWidget
{
public:
    explicit ButtonAccessible(QAbstractButton* button) : QAccessibleWidget(button, roleOf(*button)) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Accelerator)
            return button().shortcut().toString(QKeySequence::NativeText);
        const QString caption = withoutAccessKey(button().text());
        const bool named = kind != QAccessible::Name || !button().accessibleName().isEmpty() || caption.isEmpty();
        return named ? QAccessibleWidget::text(kind) : caption;
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = button().isCheckable();
        state.checked = button().isChecked();
        if (const auto* box = qobject_cast<const QCheckBox*>(&button()))
            state.checkStateMixed = box->checkState() == Qt::PartiallyChecked;
        state.pressed = button().isDown();
        if (const auto* push = qobject_cast<const QPushButton*>(&button()))
            state.defaultButton = push->isDefault();
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (button().isEnabled())
            names.prepend(button().isCheckable() ? toggleAction() : pressAction());
        return names;
    }

    void doAction(const QString& name) override
    {
        if (name != pressAction() && name != toggleAction()) {
            QAccessibleWidget::doAction(name);
            return;
        }
        QMetaObject::invokeMethod(
            &button(), [button = &button()] { Application::press(*button); }, Qt::QueuedConnection);
    }

    [[nodiscard]] QStringList keyBindingsForAction(const QString& name) const override
    {
        if (name != pressAction() && name != toggleAction())
            return QAccessibleWidget::keyBindingsForAction(name);
        return {button().shortcut().toString()};
    }

private:
    static QAccessible::Role roleOf(const QAbstractButton& button)
    {
        if (!button.isCheckable())
            return QAccessible::Button;
        return button.autoExclusive() ? QAccessible::RadioButton : QAccessible::CheckBox;
    }
    [[nodiscard]] QAbstractButton& button() const { return static_cast<QAbstractButton&>(*widget()); }
};

// Qt calls this for the object's class and its base classes, until one is known here or to Qt.
QAccessibleInterface* accessibleFor(const QString& type, QObject* object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    auto* widget = static_cast<QWidget*>(object);
    if (type == u"orlo::widgets::Form" ||
        (type == u"QWidget" && (widget->windowType() == Qt::Dialog || widget->windowType() == Qt::Window)))
        return new WindowAccessible(widget);
    if (type == u"QGroupBox" && !static_cast<QGroupBox*>(widget)->isCheckable())
        return new GroupAccessible(static_cast<QGroupBox*>(widget));
    const auto* push = qobject_cast<QPushButton*>(widget);
    const auto* tool = qobject_cast<QToolButton*>(widget);
    const bool hasMenu =
        (push && push->menu()) || (tool && (tool->menu() || (tool->defaultAction() && tool->defaultAction()->menu())));
    if (!hasMenu &&
        (type == u"QPushButton" || type == u"QToolButton" || type == u"QCheckBox" || type == u"QRadioButton"))
        return new ButtonAccessible(static_cast<QAbstractButton*>(widget));
    return nullptr;
}

} // namespace

void installAccessibility()
{
    QAccessible::installFactory(&accessibleFor);
}

QString otherCells(const QModelIndex& cell, const std::function<bool(int column)>& isRead)
{
    QStringList parts;
    const QAbstractItemModel& model = *cell.model();
    for (int column = 0; column < model.columnCount(); ++column) {
        const QString text = cell.siblingAtColumn(column).data().toString();
        if (column != cell.column() && !text.isEmpty() && isRead(column))
            parts += QStringLiteral("%1: %2").arg(model.headerData(column, Qt::Horizontal).toString(), text);
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace orlo::widgets
