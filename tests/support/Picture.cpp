#include "support/Picture.h"

#include <QtWidgets/QtWidgets>

namespace orlo::test
{

namespace
{

QString quoted(QString text)
{
    return u'"' + text.replace(u'\n', QStringLiteral("\\n")) + u'"';
}

QString rowsOf(const QAbstractItemView& view)
{
    const auto* table = qobject_cast<const QTableView*>(&view);
    const auto line = [&](const auto& cell) {
        QStringList cells;
        for (int column = 0; column < view.model()->columnCount(); ++column)
            if (!table || !table->isColumnHidden(column))
                cells += cell(column).toString();
        return cells.join(u'/');
    };
    QStringList rows;
    if (table)
        rows += line([&](int column) { return view.model()->headerData(column, Qt::Horizontal); }) + u':';
    for (int row = 0; row < view.model()->rowCount(); ++row) {
        const auto chosen = view.selectionModel()->isRowSelected(row);
        const auto tick = view.model()->index(row, 0).data(Qt::CheckStateRole).toInt();
        rows += (chosen ? "*" : "") + QString(tick ? "x " : "") +
                line([&](int column) { return view.model()->index(row, column).data(); });
    }
    return '[' + rows.join("; ") + ']';
}

QString textsOf(const QComboBox& box)
{
    QStringList rows;
    for (int row = 0; row < box.count(); ++row)
        rows += box.itemText(row);
    return '[' + rows.join("; ") + ']';
}

QString stateOf(const QWidget& control, What what)
{
    QStringList state;
    const auto add = [&](bool so, const QString& text) { state += so ? QStringList(text) : QStringList(); };
    const bool all = what == What::Everything;
    if (const auto* box = qobject_cast<const QLineEdit*>(&control)) {
        state += quoted(box->text());
        add(all && box->maxLength() < 32767, "at most " + QString::number(box->maxLength()));
        add(box->isReadOnly(), "read only");
    } else if (const auto* text = qobject_cast<const QPlainTextEdit*>(&control))
        state += quoted(text->toPlainText());
    else if (const auto* read = qobject_cast<const QTextEdit*>(&control))
        state += quoted(read->toPlainText());
    else if (const auto* combo = qobject_cast<const QComboBox*>(&control)) {
        state += quoted(combo->currentText());
        add(all && combo->isEditable(), "typed");
    } else if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) {
        const auto* push = qobject_cast<const QPushButton*>(button);
        state += quoted(button->text());
        add(button->isChecked(), "chosen");
        add(all && push && push->isDefault(), "default");
    } else if (const auto* label = qobject_cast<const QLabel*>(&control)) {
        state += quoted(label->text());
        add(label->buddy(), "of " + (label->buddy() ? label->buddy()->objectName() : QString()));
    } else if (const auto* group = qobject_cast<const QGroupBox*>(&control))
        add(!group->title().isEmpty(), quoted(group->title()));
    else if (const auto* tabs = qobject_cast<const QTabWidget*>(&control))
        for (int page = 0; page < tabs->count(); ++page)
            state += (page == tabs->currentIndex() ? "*" : "") + quoted(tabs->tabText(page));
    else if (const auto* view = qobject_cast<const QAbstractItemView*>(&control))
        state += rowsOf(*view);
    const bool says = !state.isEmpty();
    if (!says && qobject_cast<QStackedWidget*>(control.parentWidget()))
        return {}; // a page, which its tab shows
    add(says && all && !control.accessibleName().isEmpty(), "called " + quoted(control.accessibleName()));
    add(says && all && !control.toolTip().isEmpty(), "tip " + quoted(control.toolTip()));
    add(!control.isEnabledTo(control.parentWidget()), "off");
    add(control.isHidden() && !qobject_cast<const QMenu*>(&control), "hidden");
    for (const char* size : {"chars", "mostChars", "edge"})
        add(says && all && control.property(size).isValid(), size + (' ' + control.property(size).toString()));
    return state.join(", ");
}

bool isOwn(const QWidget& control)
{
    const bool isOfThisMachine =
        control.inherits("orlo::widgets::FolderList") || control.inherits("orlo::widgets::DriveList");
    return !isOfThisMachine && !control.objectName().isEmpty() && !control.objectName().startsWith("qt_") &&
           !qobject_cast<QComboBox*>(control.parentWidget()) && !qobject_cast<QTabBar*>(control.parentWidget());
}

} // namespace

QStringList pictureOf(const QWidget& form, What what)
{
    QStringList lines;
    for (const auto* control : form.findChildren<QWidget*>()) {
        if (const QString state = isOwn(*control) ? stateOf(*control, what) : QString(); !state.isEmpty())
            lines += control->objectName() + ": " + state;
        if (const auto* box = qobject_cast<const QComboBox*>(control); box && isOwn(*box))
            lines += box->objectName() + " offers: " + textsOf(*box);
    }
    const auto* focus = form.focusWidget();
    return lines + QStringList("focus: " + (focus ? focus->objectName() : "nothing"));
}

QStringList tabOrderOf(const QWidget& form)
{
    QStringList lines;
    int place = 0;
    for (const auto* at = form.nextInFocusChain(); at != &form; at = at->nextInFocusChain())
        if ((at->focusPolicy() & Qt::TabFocus) && form.isAncestorOf(at) && isOwn(*at) && !at->focusProxy()) {
            if (place++ % 8 == 0)
                lines += "Tab: " + at->objectName();
            else
                lines.last() += ' ' + at->objectName();
        }
    return lines;
}

QStringList shapeOf(const QWidget& form)
{
    const auto size = [](const QWidget& part) { return QString("%1x%2").arg(part.width()).arg(part.height()); };
    QStringList lines;
    for (const auto* control : form.findChildren<QWidget*>()) {
        if (!control->isVisible() || control->objectName().isEmpty() || control->objectName().startsWith("qt_"))
            continue;
        lines += control->objectName() + ": " + size(*control);
        const auto* table = qobject_cast<const QTableView*>(control);
        for (int column = 0; table && column < table->model()->columnCount(); ++column)
            lines.last() += QString(", %1").arg(table->columnWidth(column));
        for (const auto* heading : control->findChildren<QHeaderView*>(Qt::FindDirectChildrenOnly))
            lines.last() += QString(", %1 by %2").arg(size(*heading)).arg(heading->defaultSectionSize());
        if (const auto* area = qobject_cast<const QAbstractScrollArea*>(control))
            for (const auto* bar : {area->horizontalScrollBar(), area->verticalScrollBar()})
                lines.last() += QString(", scrolls %1").arg(bar->maximum());
    }
    return lines;
}

} // namespace orlo::test
