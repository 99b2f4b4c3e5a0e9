#include "widgets/Form.h"

#include "platform/Logging.h"
#include "widgets/BoundGrid.h"
#include "widgets/Measure.h"
#include "widgets/NestedLoop.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QComboBox>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QScopedValueRollback>
#include <QScreen>
#include <QStyle>

#include <algorithm>

namespace orlo::widgets
{

namespace
{

// State shared by all forms: the main window, and which forms are loaded.
struct FormRegistry {
    QPointer<QWidget> mainWindow;
    std::function<void(Form&)> showChild; // shows it as a child window
    QList<Form*> loaded;                  // in loading order
};

FormRegistry& registry()
{
    static FormRegistry forms;
    return forms;
}

QMdiSubWindow* subWindowOf(const Form& form)
{
    for (QWidget* outer = form.parentWidget(); outer; outer = outer->parentWidget())
        if (auto* window = qobject_cast<QMdiSubWindow*>(outer))
            return window;
    return nullptr;
}

// The window above which a modal form opens: the form waiting already, or the main window.
QWidget* ownerOfNextWindow()
{
    if (auto* modal = QApplication::activeModalWidget())
        return modal;
    return registry().mainWindow;
}

// A control's form; null for controls outside of forms, such as menus, window frames and message boxes.
Form* formOf(const QWidget* widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (auto* form = qobject_cast<const Form*>(widget))
            return const_cast<Form*>(form);
        if (widget->isWindow())
            break;
    }
    return nullptr;
}

// On X11 a combo box's accessible name is its value, so its purpose goes into the description. An editable box's line
// edit has the focus but no label.
void describeComboBoxes(const QWidget& form)
{
    const auto boxes = form.findChildren<QComboBox*>();
    const auto labels = form.findChildren<QLabel*>();
    for (QComboBox* box : boxes) {
        const auto label = std::ranges::find(labels, static_cast<QWidget*>(box), &QLabel::buddy);
        QString name = box->accessibleName();
        if (name.isEmpty() && label != labels.end())
            name = (*label)->text().remove(u'&').remove(u':');
        box->setAccessibleDescription(name);
        if (QLineEdit* line = box->lineEdit(); line && line->accessibleName().isEmpty())
            line->setAccessibleName(name);
    }
}

constexpr int LeastWidth = 340; // of a window of its own, in pixels

constexpr Qt::WindowFlags OwnWindow =
    Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;

// Centres a window on its owner, within the screen.
void centreOnOwner(QWidget& form)
{
    const QWidget* owner = form.parentWidget();
    form.adjustSize();
    const QRect room = form.screen()->availableGeometry();
    const int most = room.height() - form.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    if (form.layout() && form.height() > most) { // its lists shrink
        form.layout()->setSizeConstraint(QLayout::SetNoConstraint);
        letShrink(form);
        form.setFixedSize(form.width(), std::max(most, form.layout()->totalMinimumSize().height()));
    }
    QRect place = form.rect();
    place.moveCenter(owner ? owner->window()->geometry().center() : room.center());
    place.moveLeft(std::clamp(place.left(), room.left(), std::max(room.left(), room.right() - place.width())));
    place.moveTop(std::clamp(place.top(), room.top(), std::max(room.top(), room.bottom() - place.height())));
    form.move(place.topLeft());
}

} // namespace

Form::Form(FormKind kind) : m_kind(kind), m_depth(NestedLoop::depth())
{
    setAttribute(Qt::WA_DeleteOnClose);
    registry().loaded.append(this);
}

Form::~Form()
{
    registry().loaded.removeOne(this);
}

void Form::ensureLoaded()
{
    if (m_loaded)
        return;
    m_loaded = true;
    qCDebug(platform::formsLog) << "loads" << objectName();
    describeComboBoxes(*this);
    measure(*this);
    if (auto* column = qobject_cast<QBoxLayout*>(layout()); column && m_kind == FormKind::Window)
        column->addStrut(LeastWidth - column->contentsMargins().left() - column->contentsMargins().right());
    load();
}

void Form::showForm()
{
    ensureLoaded();
    if (m_kind == FormKind::Child && registry().showChild) {
        registry().showChild(*this);
        return;
    }
    if (!isVisible()) {
        setParent(registry().mainWindow, OwnWindow);
        setFixedBorder();
        centreOnOwner(*this);
    }
    show();
    raise();
    activateWindow();
}

void Form::showWaiting()
{
    ensureLoaded();
    if (isVisible()) { // already waiting
        activateWindow();
        return;
    }
    const QPointer<QWidget> owner = ownerOfNextWindow();
    setParent(owner, OwnWindow);
    // All windows are owned by the main window, so window modality blocks them all but leaves report previews alone.
    setWindowModality(owner ? Qt::WindowModal : Qt::ApplicationModal);
    setFixedBorder();
    centreOnOwner(*this);
    qCDebug(platform::formsLog) << "waits for" << objectName();
    const NestedLoop nested;
    m_depth = NestedLoop::depth();
    QEventLoop loop;
    connect(this, &Form::unloaded, &loop, &QEventLoop::quit);
    show();
    activateWindow();
    loop.exec(QEventLoop::DialogExec);
    if (owner && owner->isVisible() && QApplication::activeWindow() != owner)
        owner->activateWindow();
}

void Form::unload()
{
    if (m_unloading)
        return;
    m_unloading = true;
    qCDebug(platform::formsLog) << "unloads" << objectName();
    m_unchecked.clear(); // no field is used any more while closing
    registry().loaded.removeOne(this);
    if (m_forget)
        m_forget();
    if (auto* window = subWindowOf(*this))
        window->close();
    else if (isVisible())
        close();
    else
        deleteLater();
    Q_EMIT unloaded();
}

bool Form::writeOpenRows()
{
    return std::ranges::all_of(findChildren<BoundGrid*>(), &BoundGrid::commitRow);
}

bool Form::writeAllOpenRows()
{
    return std::ranges::all_of(QList(registry().loaded), &Form::writeOpenRows);
}

void Form::unloadAll()
{
    while (!registry().loaded.isEmpty())
        registry().loaded.last()->unload();
}

bool Form::putsOffDeletion(QObject& object)
{
    const auto* form = qobject_cast<Form*>(&object);
    if (!form)
        form = object.findChild<Form*>();
    if (!form || form->m_depth >= NestedLoop::depth())
        return false;
    NestedLoop::deleteAtDepth(object, form->m_depth);
    return true;
}

QWidget* Form::controlNamed(const char* name) const
{
    QWidget*& control = m_controls[QLatin1StringView(name)];
    if (!control)
        control = findChild<QWidget*>(QLatin1StringView(name));
    return control;
}

void Form::setDefaultButton(QPushButton* button)
{
    if (m_defaultButton)
        m_defaultButton->setDefault(false);
    m_defaultButton = button;
    if (button)
        button->setDefault(true);
}

void Form::setCancelButton(QPushButton* button)
{
    m_cancelButton = button;
}

void Form::setFixedBorder()
{
    m_fixedBorder = true;
    if (layout())
        layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void Form::setLeaveCheck(QWidget* field, std::function<bool()> check)
{
    m_leaveChecks.append({field, std::move(check)});
    field->installEventFilter(this);
}

// Focus changes made in code can't be held back; a check that refuses moves the focus back.
bool Form::eventFilter(QObject* watched, QEvent* event)
{
    auto* field = static_cast<QWidget*>(watched);
    if (event->type() == QEvent::FocusIn)
        m_unchecked = field;
    else if (event->type() == QEvent::FocusOut && static_cast<QFocusEvent*>(event)->reason() == Qt::OtherFocusReason)
        QMetaObject::invokeMethod(
            field,
            [this, field] {
                if (const QWidget* now = field->window()->focusWidget(); now && isAncestorOf(now))
                    (void)mayGoTo(now);
            },
            Qt::QueuedConnection);
    return QWidget::eventFilter(watched, event);
}

// The controls get their letters after the form.
void Form::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (m_loaded && (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange))
        QMetaObject::invokeMethod(
            this, [this] { measure(*this); }, Qt::QueuedConnection);
}

QWidget* Form::checkedFieldAt(const QWidget* target) const
{
    const auto found = std::ranges::find_if(m_leaveChecks, [target](const LeaveCheck& check) {
        return check.field == target || check.field->isAncestorOf(target);
    });
    return found == m_leaveChecks.end() ? nullptr : found->field;
}

bool Form::mayGoTo(const QWidget* target)
{
    static bool asking = false; // the check's own message box changes the focus, too
    QWidget* const field = checkedFieldAt(target);
    if (!asking && m_unchecked && m_unchecked != field && m_unchecked->isEnabled() && m_unchecked->isVisible()) {
        const QScopedValueRollback guard(asking, true);
        const QPointer<QWidget> left = m_unchecked;
        const auto passes = std::ranges::find(m_leaveChecks, left.data(), &LeaveCheck::field)->passes;
        const bool passed = passes(); // its message box may outlive the form
        if (left && !passed)
            left->setFocus();
        if (!left || !passed)
            return false;
    }
    if (!asking)
        m_unchecked = field;
    return true;
}

void Form::closeEvent(QCloseEvent* event)
{
    const bool closes = m_unloading || writeOpenRows();
    event->setAccepted(closes);
    if (closes)
        unload();
}

void Form::keyPressEvent(QKeyEvent* event)
{
    QPushButton* button = nullptr;
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        auto* focused = qobject_cast<QPushButton*>(focusWidget());
        button = focused ? focused : m_defaultButton.data();
    } else if (event->key() == Qt::Key_Escape)
        button = m_cancelButton;
    if (button && button->isEnabled() && !(event->modifiers() & ~Qt::KeypadModifier)) {
        event->accept();
        // Escape discards, so nothing needs checking.
        if (event->key() == Qt::Key_Escape || mayReach(button))
            button->click();
        return;
    }
    QWidget::keyPressEvent(event);
}

bool Form::focusNextPrevChild(bool next)
{
    return !mayGoTo(this) || QWidget::focusNextPrevChild(next);
}

void setMainWindow(QWidget* frame, std::function<void(Form&)> showChild)
{
    registry().mainWindow = frame;
    registry().showChild = std::move(showChild);
}

QWidget* mainWindow()
{
    return registry().mainWindow;
}

bool isInClosedForm(const QWidget& widget)
{
    const Form* form = formOf(&widget);
    return form && form->m_unloading;
}

void pressOncePerDoubleClick(QPushButton& button)
{
    struct Filter : QObject {
        using QObject::QObject;
        // The first press may have been on something that covered the button and closed.
        bool eventFilter(QObject*, QEvent* event) override { return event->type() == QEvent::MouseButtonDblClick; }
    };
    button.installEventFilter(new Filter(&button));
}

bool mayReach(const QWidget* target)
{
    Form* form = formOf(target);
    if (!form)
        return true;
    if (!form->mayGoTo(target))
        return false;
    // A window remembers its focused control even while it isn't active.
    Form* left = formOf(target->window()->focusWidget());
    return !left || left == form || left->mayGoTo(target);
}

} // namespace orlo::widgets
