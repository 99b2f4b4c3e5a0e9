#include "support/Main.h"
#include "support/TestApp.h"
#include "support/Windows.h"
#include "widgets/Contrast.h"
#include "widgets/Form.h"

#include <QTest>
#include <QtWidgets/QtWidgets>

using namespace orlo;

namespace
{

// What a screen reader calls the control: its own name, its label's, or its text.
QString nameOf(QWidget* control)
{
    const auto labels = control->window()->findChildren<QLabel*>();
    const auto label = std::ranges::find(labels, control, &QLabel::buddy);
    QString name = control->accessibleName();
    if (name.isEmpty() && label != labels.end())
        name = (*label)->text();
    else if (name.isEmpty() && !qobject_cast<QComboBox*>(control)) // a box would be named by its choice
        name = QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name);
    return name.remove(QRegularExpression("[&:]"));
}

// What a screen reader says before the first of a group of choices.
QString groupOf(const QAccessibleInterface& choice)
{
    const auto* parent = choice.parent();
    while (parent && parent->role() != QAccessible::Grouping && parent->role() != QAccessible::Dialog)
        parent = parent->parent();
    return parent && parent->role() == QAccessible::Grouping ? parent->text(QAccessible::Name) : QString();
}

// What a screen reader finds without a name in the window: parts that can be worked, columns, and boxes without a
// description, because a box is named by its choice on X11.
void addNameless(QAccessibleInterface& part, QStringList& faults)
{
    using A = QAccessible;
    const QStringList path{part.object() ? part.object()->objectName() : "", part.parent()->object()->objectName()};
    const auto expect = [&](const QString& text, const char* fault) {
        if (!text.contains(QRegularExpression("\\pL")))
            faults += QString("%1: %2").arg(fault, path.join(" of "));
    };
    if (part.state().invisible)
        return;
    if (const auto* box = qobject_cast<QGroupBox*>(part.object()))
        expect(box->title().isEmpty() || part.text(A::Name) == box->title().remove('&') ? "x" : "", "other name");
    if (part.role() == A::RadioButton)
        expect(groupOf(part) + part.text(A::Description), "no group");
    if (part.role() == A::ComboBox)
        expect(part.text(A::Description), "no description");
    else if (QSet{A::EditableText, A::CheckBox, A::RadioButton, A::Button, A::ButtonMenu, A::SpinBox, A::List, A::Table,
                  A::Tree, A::PageTab}
                 .contains(part.role()))
        expect(part.text(A::Name), "no name");
    if (const auto* grid = qobject_cast<QTableView*>(part.object()); grid && path[0] != "qt_calendar_calendarview")
        for (int column = 0; column < grid->model()->columnCount(); ++column)
            if (!grid->isColumnHidden(column))
                expect(part.child(column + 1)->text(A::Name), "no heading");
    for (int i = 0; i < part.childCount(); ++i)
        if (auto* child = part.child(i); child && child->role() != A::Cell)
            addNameless(*child, faults);
}

// Everything that is wrong with a window in its current state.
QStringList faultsOf(QWidget& form)
{
    QStringList faults;
    QSet<QString> names;
    QSet<QKeySequence> keys;
    QWidgetList controls;
    const auto expect = [&](bool good, const char* fault, const QWidget* widget) {
        if (!good)
            faults += QString("%1: %2").arg(fault, widget->objectName());
    };
    const auto takesKey = [&keys](const QString& text) {
        const auto key = QKeySequence::mnemonic(text);
        return key.isEmpty() || (!keys.contains(key) && (keys += key, true));
    };
    if (auto* info = form.findChild<QLabel*>("lblRecordInfo"))
        info->setText(info->text().section(' ', 0, 0) + " 12345 of 12345");
    if (auto* window = qobject_cast<QMainWindow*>(form.window()))
        for (const auto* menu : window->menuBar()->actions())
            expect(takesKey(menu->text()), "access key of another menu", menu->menu());
    for (auto* widget : form.findChildren<QWidget*>()) {
        if (!widget->isVisible())
            continue;
        const auto* bar = qobject_cast<QTabBar*>(widget);
        const bool part = std::ranges::any_of(controls, [=](auto* whole) { return whole->isAncestorOf(widget); });
        if ((widget->focusPolicy() & Qt::TabFocus) && !part && !qobject_cast<QTabWidget*>(widget)) {
            controls += widget;
            const QString name = nameOf(widget);
            expect(name.contains(QRegularExpression("\\pL")), "no name", widget);
            expect(bar || !names.contains(name), "another control's name", widget);
            names += name;
        }
        expect(!bar || bar->width() >= bar->sizeHint().width(), "clipped tabs", widget->parentWidget());
        if (widget->objectName().startsWith("qt_") || qobject_cast<QLineEdit*>(widget->parentWidget()))
            continue;
        const auto* label = qobject_cast<QLabel*>(widget);
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        if (button || (label && label->buddy()))
            expect(takesKey(label ? label->text() : button->text()), "another control's access key", widget);
        if (const auto* box = qobject_cast<QLineEdit*>(widget)) // its frame and margins come on top
            expect(box->width() > box->property("chars").toInt() * box->fontMetrics().horizontalAdvance('0') + 3,
                   "narrow", widget);
        if (const auto* list = qobject_cast<QAbstractItemView*>(widget); list && !qobject_cast<QHeaderView*>(widget))
            expect(list->viewport()->height() >= 2 * list->fontMetrics().height(), "low", widget);
        QSize room = widget->sizeHint();
        if (widget->hasHeightForWidth())
            room = QSize(0, widget->heightForWidth(widget->width()));
        else if (button && button->icon().isNull()) // its hint includes the width that buttons have in common
            room.setWidth(button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width() + 8);
        expect(!(label || button) || room.boundedTo(widget->size()) == room, "clipped", widget);
        using P = QPalette;
        for (const auto& [text, ground] : {std::pair(widget->foregroundRole(), widget->backgroundRole()),
                                           {P::Text, P::Base},
                                           {P::Text, P::AlternateBase},
                                           {P::HighlightedText, P::Highlight},
                                           {P::ButtonText, P::Button}}) {
            expect(widgets::contrast(widget->palette().color(P::Active, text),
                                     widget->palette().color(P::Active, ground)) >= widgets::ReadableText,
                   "contrast", widget);
        }
    }
    QWidget* inside = form.findChild<widgets::Form*>(); // inside a scrolling area
    auto* screen = QAccessible::queryAccessibleInterface(inside ? inside : &form);
    const bool isMain = qobject_cast<QMainWindow*>(&form);
    expect(screen->role() == (isMain ? QAccessible::Window : QAccessible::Dialog), "role", &form);
    expect(screen->state().modal == form.isModal(), "modal or not", &form);
    expect(screen->text(QAccessible::Name) == form.windowTitle(), "no title", &form);
    addNameless(*QAccessible::queryAccessibleInterface(&form), faults);
    for (auto* control : controls)
        control->setEnabled(true);
    QWidgetList reached;
    for (auto* at = QApplication::focusWidget(); at && !reached.contains(at); at = QApplication::focusWidget()) {
        reached += at;
        QTest::keyClick(at, Qt::Key_Tab);
    }
    for (auto* control : controls)
        expect(std::ranges::any_of(reached,
                                   [control](QWidget* at) { // Tab stops at one button of a group
                                       return control == at || control->isAncestorOf(at) ||
                                              (qobject_cast<QRadioButton*>(control) &&
                                               qobject_cast<QRadioButton*>(at) && control->parent() == at->parent());
                                   }),
               "Tab doesn't come to", control);
    return faults;
}

} // namespace

class tst_access : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyWindow_data() { test::addWindows(); }
    void everyWindow()
    {
        QFETCH(test::Open, open);
        QFont large = QApplication::font(); // what fits in large letters also fits in small ones
        large.setPointSize(16);
        QApplication::setFont(large);
        const test::AppFolder folder;
        test::prepareForWindows();
        QStringList faults;
        QVERIFY(test::openAndLook(open, [&](QWidget& form) {
            for (const QColor colour : {QColor(45, 47, 51), QColor(239, 239, 239)}) {
                QApplication::setPalette(colour);
                QTest::qWait(1);
                faults += faultsOf(form);
            }
        }));
        faults.removeDuplicates();
        QCOMPARE(faults.join(", "), QString());
    }
};

ORLO_TEST(tst_access)

#include "tst_access.moc"
