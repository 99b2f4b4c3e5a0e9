#include "widgets/Style.h"

#include "widgets/CellMargin.h"
#include "widgets/Glyphs.h"
#include "widgets/TextBox.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOptionViewItem>

#include <algorithm>
#include <cmath>

namespace orlo::widgets
{

namespace
{

constexpr double Readable = 4.5;  // the lowest contrast of a text
constexpr int PaleHighlight = 30; // percent of the highlight over the ground
// Pixels.
constexpr int FocusFrame = 2;
constexpr int ButtonRoom = 12; // beside a button's text, its frame included
constexpr int CellRoom = 5;    // beside a cell's text

// Whether a list or one of its cells' editors has the focus.
bool hasFocusWithin(const QWidget* widget)
{
    const QWidget* focused = QApplication::focusWidget();
    return focused && (focused == widget || widget->isAncestorOf(focused));
}

QColor mixed(const QColor& over, const QColor& ground, int percent)
{
    const auto mix = [percent](int a, int b) { return (a * percent + b * (100 - percent)) / 100; };
    return {mix(over.red(), ground.red()), mix(over.green(), ground.green()), mix(over.blue(), ground.blue())};
}

double luminance(const QColor& color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF()) + 0.05;
}

bool isReadable(const QColor& text, const QColor& ground)
{
    const auto [dark, light] = std::minmax({luminance(text), luminance(ground)});
    return light / dark >= Readable;
}

// The option of a highlighted row in a list without the focus.
QStyleOptionViewItem paler(const QStyleOptionViewItem& item)
{
    QStyleOptionViewItem pale = item;
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        const QColor ground = item.palette.color(group, QPalette::Base);
        const QColor highlight = item.palette.color(QPalette::Active, QPalette::Highlight);
        pale.palette.setColor(group, QPalette::Highlight, mixed(highlight, ground, PaleHighlight));
        pale.palette.setColor(group, QPalette::HighlightedText, item.palette.color(group, QPalette::Text));
    }
    return pale;
}

} // namespace

Style::Style() : QProxyStyle(QStringLiteral("Fusion"))
{
}

void Style::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    // The wheel scrolls what lies under the pointer; the focus moves by presses and keys only.
    if (widget->focusPolicy() == Qt::WheelFocus)
        widget->setFocusPolicy(Qt::StrongFocus);
    if (auto* box = qobject_cast<QLineEdit*>(widget))
        keepOneLine(*box);
}

// The desktop's highlight, moved away from its text until that can be read.
void Style::polish(QPalette& palette)
{
    constexpr int Step = 104; // percent
    QProxyStyle::polish(palette);
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        QColor ground = palette.color(group, QPalette::Highlight);
        const QColor text = palette.color(group, QPalette::HighlightedText);
        const bool darken = luminance(text) > luminance(ground);
        for (int steps = 0; steps < Step && !isReadable(text, ground); ++steps)
            ground = darken ? ground.darker(Step) : ground.lighter(Step);
        palette.setColor(group, QPalette::Highlight, ground);
    }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* data) const
{
    switch (hint) {
    case SH_ComboBox_Popup: // a list with a scroll bar below the box, not a menu over the whole screen
    case SH_DialogButtonBox_ButtonsHaveIcons:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    if (metric == PM_FocusFrameHMargin && qobject_cast<const QAbstractItemView*>(widget))
        return CellRoom - 1; // the delegate adds one
    return QProxyStyle::pixelMetric(metric, option, widget);
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                              const QWidget* widget) const
{
    // Boxes, lists and buttons side by side are of one height, and never too low to be hit.
    constexpr int LeastHeight = 26;
    constexpr int RoomAboveAndBelow = 11;
    constexpr int LeastMarkHeight = 24;
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    const int letters = option ? option->fontMetrics.height() : 0;
    switch (type) {
    case CT_PushButton:
        return {std::max(size.width(), contents.width() + 2 * ButtonRoom),
                std::max(LeastHeight, letters + RoomAboveAndBelow)};
    case CT_LineEdit:
    case CT_ComboBox:
    case CT_SpinBox:
        return {size.width(), std::max(LeastHeight, letters + RoomAboveAndBelow)};
    case CT_CheckBox:
    case CT_RadioButton:
        return size.expandedTo({0, LeastMarkHeight});
    case CT_HeaderSection:
        return size + QSize(2 * HeadingRoom, 0);
    default:
        return size;
    }
}

QIcon Style::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const
{
    switch (icon) {
    case SP_MessageBoxInformation:
        return glyphIcon(Glyph::Information, QPalette::WindowText);
    case SP_MessageBoxQuestion:
        return glyphIcon(Glyph::Question, QPalette::WindowText);
    case SP_MessageBoxWarning:
        return glyphIcon(Glyph::Warning, QPalette::WindowText);
    case SP_MessageBoxCritical:
        return glyphIcon(Glyph::Critical, QPalette::WindowText);
    default:
        return QProxyStyle::standardIcon(icon, option, widget);
    }
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const
{
    if (element == CE_ItemViewItem && (option->state & State_Selected) && widget && !hasFocusWithin(widget))
        if (const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option)) {
            const QStyleOptionViewItem pale = paler(*item);
            QProxyStyle::drawControl(element, &pale, painter, widget);
            return;
        }
    if (element == CE_HeaderLabel)
        if (const auto* label = qstyleoption_cast<const QStyleOptionHeader*>(option)) {
            QStyleOptionHeader inner = *label;
            inner.rect.adjust(HeadingRoom, 0, -HeadingRoom, 0);
            QProxyStyle::drawControl(element, &inner, painter, widget);
            return;
        }
    QProxyStyle::drawControl(element, option, painter, widget);
    const bool hasFocus =
        widget && (widget->hasFocus() || (qobject_cast<const QAbstractItemView*>(widget) && hasFocusWithin(widget)));
    if (element == CE_ShapedFrame && hasFocus && qobject_cast<const QAbstractScrollArea*>(widget)) {
        painter->save();
        painter->setPen(QPen(option->palette.color(QPalette::Active, QPalette::Highlight), FocusFrame));
        painter->drawRect(option->rect.adjusted(1, 1, -1, -1));
        painter->restore();
    }
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const
{
    if (element == PE_PanelItemViewRow && (option->state & State_Selected) && widget && !hasFocusWithin(widget))
        if (const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option)) {
            const QStyleOptionViewItem pale = paler(*item);
            QProxyStyle::drawPrimitive(element, &pale, painter, widget);
            return;
        }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

} // namespace orlo::widgets
