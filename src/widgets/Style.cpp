#include "widgets/Style.h"

#include "widgets/CellMargin.h"
#include "widgets/Contrast.h"
#include "widgets/Edges.h"
#include "widgets/Glyphs.h"
#include "widgets/TextBox.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOptionViewItem>

namespace orlo::widgets
{

namespace
{

constexpr double FaintText = 3.4; // contrast; thin letters keep about 3 of it
constexpr int PaleHighlight = 30; // percent of the highlight colour
constexpr int RaisedButton = 125; // percent of a button's colour, as Fusion may paint it
// Pixels.
constexpr int ButtonRoom = 12; // beside a button's text, including the frame
constexpr int CellRoom = 5;    // beside a cell's text

// Whether a list or an editor in it has the focus.
bool hasFocusWithin(const QWidget* widget)
{
    const QWidget* focused = QApplication::focusWidget();
    return focused && (focused == widget || widget->isAncestorOf(focused));
}

// The option for a highlighted row in a list without focus.
QStyleOptionViewItem paler(const QStyleOptionViewItem& item)
{
    QStyleOptionViewItem pale = item;
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        const QColor text = item.palette.color(group, QPalette::Text);
        const QColor highlight = mixed(item.palette.color(QPalette::Active, QPalette::Highlight),
                                       item.palette.color(group, QPalette::Base), PaleHighlight);
        pale.palette.setColor(group, QPalette::Highlight, highlight);
        pale.palette.setColor(group, QPalette::HighlightedText, text);
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
    // The wheel scrolls what is under the pointer; only presses and keys move the focus.
    if (widget->focusPolicy() == Qt::WheelFocus)
        widget->setFocusPolicy(Qt::StrongFocus);
    if (auto* box = qobject_cast<QLineEdit*>(widget))
        keepOneLine(*box);
}

// Moves the desktop's highlight away from its text until that is readable, and pale texts towards the normal ones until
// they can be made out.
void Style::polish(QPalette& palette)
{
    constexpr int Step = 104; // percent
    QProxyStyle::polish(palette);
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        QColor ground = palette.color(group, QPalette::Highlight);
        const QColor text = palette.color(group, QPalette::HighlightedText);
        const bool darken = contrast(text, Qt::black) > contrast(ground, Qt::black);
        for (int steps = 0; steps < Step && contrast(text, ground) < ReadableText; ++steps)
            ground = darken ? ground.darker(Step) : ground.lighter(Step);
        palette.setColor(group, QPalette::Highlight, ground);
    }
    const auto ground = [&palette](QPalette::ColorRole role) { return palette.color(QPalette::Disabled, role); };
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(
            QPalette::Disabled, role,
            raised(ground(role), palette.color(QPalette::Active, role),
                   {ground(QPalette::Window), ground(QPalette::Base), ground(QPalette::Button).lighter(RaisedButton)},
                   FaintText));
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* data) const
{
    switch (hint) {
    case SH_ComboBox_Popup: // a list with a scroll bar, not a menu over the whole screen
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
    if (metric == PM_DefaultFrameWidth && qobject_cast<const QAbstractScrollArea*>(widget))
        return EdgeWidth;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                              const QWidget* widget) const
{
    // Boxes, lists and buttons side by side have one height, and are never too low to be hit.
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
        return glyphIcon(Glyph::Information);
    case SP_MessageBoxQuestion:
        return glyphIcon(Glyph::Question);
    case SP_MessageBoxWarning:
        return glyphIcon(Glyph::Warning);
    case SP_MessageBoxCritical:
        return glyphIcon(Glyph::Critical);
    default:
        return QProxyStyle::standardIcon(icon, option, widget);
    }
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const
{
    if (element == CE_ItemViewItem && (option->state & State_Selected))
        if (const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option)) {
            QStyleOptionViewItem row = widget && !hasFocusWithin(widget) ? paler(*item) : *item;
            const auto* view = qobject_cast<const QAbstractItemView*>(widget);
            if (view && view->selectionMode() == QAbstractItemView::SingleSelection)
                row.state &= ~State_HasFocus; // the highlighted row is the current one and needs no frame
            QProxyStyle::drawControl(element, &row, painter, widget);
            return;
        }
    if (element == CE_HeaderLabel)
        if (const auto* label = qstyleoption_cast<const QStyleOptionHeader*>(option)) {
            QStyleOptionHeader inner = *label;
            inner.rect.adjust(HeadingRoom, 0, -HeadingRoom, 0);
            QProxyStyle::drawControl(element, &inner, painter, widget);
            return;
        }
    if (element == CE_ShapedFrame)
        if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
            frame && frame->frameShape == QFrame::StyledPanel && qobject_cast<const QAbstractScrollArea*>(widget)) {
            QStyleOptionFrame edge = *frame;
            const bool isView = qobject_cast<const QAbstractItemView*>(widget);
            edge.state.setFlag(State_HasFocus, widget->hasFocus() || (isView && hasFocusWithin(widget)));
            painter->fillRect(frame->rect.adjusted(1, 1, -1, -1), frame->palette.base());
            paintEdge(*painter, edge);
            return;
        }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const
{
    if (control == CC_ComboBox)
        if (const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
            paintComboBox(*painter, *box, subControlRect(control, option, SC_ComboBoxArrow, widget));
            return;
        }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_SpinBox)
        paintEdge(*painter, *option);
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
    switch (element) {
    case PE_FrameLineEdit:
        paintEdge(*painter, *option);
        break;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        paintTick(*painter, *option);
        break;
    case PE_IndicatorRadioButton:
        paintRadio(*painter, *option);
        break;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

} // namespace orlo::widgets
