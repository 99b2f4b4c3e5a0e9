#include "widgets/Measure.h"

#include "widgets/CellMargin.h"
#include "widgets/PageScroll.h"
#include "widgets/Section.h"

#include <QAbstractItemView>
#include <QBoxLayout>
#include <QHash>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVariant>

#include <algorithm>

namespace orlo::widgets
{

namespace
{

constexpr int FewLines = 4;

// What stands beside a box's characters: its frame, its margins and its calendar button or arrow.
int roomBeside(const QWidget& control)
{
    constexpr int UsualCharacters = 17; // of a box's own size hint
    if (const auto* box = qobject_cast<const QLineEdit*>(&control))
        return box->sizeHint().width() - UsualCharacters * box->fontMetrics().horizontalAdvance(u'x');
    if (const auto* area = qobject_cast<const QAbstractScrollArea*>(&control))
        return 2 * area->frameWidth() + area->verticalScrollBar()->sizeHint().width();
    return 0;
}

int widthOf(const QWidget& control, int characters)
{
    return characters * control.fontMetrics().horizontalAdvance(u'0') + roomBeside(control);
}

int heightOf(const QWidget& control, int lines)
{
    return lines * (control.fontMetrics().height() + 2 * CellMargin);
}

void giveRoom(QWidget& control)
{
    if (const int characters = control.property("chars").toInt())
        control.setMinimumWidth(widthOf(control, characters));
    if (const int characters = control.property("mostChars").toInt())
        control.setMaximumWidth(std::max(control.minimumWidth(), widthOf(control, characters)));
    if (const int lines = control.property("lines").toInt())
        control.setMinimumHeight(heightOf(control, lines));
    if (const QString longest = control.property("longest").toString(); !longest.isEmpty())
        control.setMinimumWidth(control.fontMetrics().horizontalAdvance(longest) + 1);
}

int widthNeeded(const QWidget& control)
{
    if (const auto* section = qobject_cast<const Section*>(&control))
        return section->titleWidth();
    if (qobject_cast<const QLineEdit*>(&control))
        return control.minimumWidth();
    return control.sizeHint().width();
}

void alignEdges(const QWidget& window)
{
    QHash<QString, QWidgetList> edges;
    for (QWidget* control : window.findChildren<QWidget*>())
        if (const QString edge = control->property("edge").toString(); !edge.isEmpty())
            edges[edge].append(control);
    for (const QWidgetList& controls : std::as_const(edges)) {
        int widest = 0;
        for (const QWidget* control : controls)
            widest = std::max(widest, widthNeeded(*control));
        for (QWidget* control : controls)
            if (auto* section = qobject_cast<Section*>(control))
                section->setTitleWidth(widest);
            else
                control->setFixedWidth(widest);
    }
}

void evenOut(const QBoxLayout& row)
{
    QList<QPushButton*> buttons;
    for (int at = 0; at < row.count(); ++at)
        if (auto* button = qobject_cast<QPushButton*>(row.itemAt(at)->widget());
            button && button->maximumWidth() == QWIDGETSIZE_MAX)
            buttons.append(button);
    int widest = 0;
    for (QPushButton* button : std::as_const(buttons)) {
        button->setMinimumWidth(0);
        widest = std::max(widest, button->sizeHint().width());
    }
    for (QPushButton* button : std::as_const(buttons))
        button->setMinimumWidth(widest);
}

} // namespace

void measure(QWidget& window)
{
    for (QWidget* control : window.findChildren<QWidget*>())
        giveRoom(*control);
    alignEdges(window);
    for (const QBoxLayout* row : window.findChildren<QBoxLayout*>())
        if (row->direction() == QBoxLayout::LeftToRight)
            evenOut(*row);
    for (PageScroll* page : window.findChildren<PageScroll*>())
        page->tellSize();
}

void letShrink(QWidget& window)
{
    for (QWidget* control : window.findChildren<QWidget*>())
        if (control->property("lines").toInt() > FewLines)
            control->setMinimumHeight(heightOf(*control, FewLines));
}

} // namespace orlo::widgets
