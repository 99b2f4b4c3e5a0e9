#include "widgets/TextBox.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QListView>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QToolTip>

namespace orlo::widgets
{

namespace
{

constexpr auto KeptOneLine = "orlo_one_line"; // the property of a box that keepOneLine() was called for
constexpr auto WholeText =
    "orlo_whole_text";       // of a box filled with more than it can hold: the whole text, and what is shown
constexpr int BoxMargin = 2; // pixels on both sides of a box's text

bool breaksLine(QChar c)
{
    return c == u'\n' || c == u'\r' || c == u'\t' || c == u'\v' || c == u'\f' || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

// Replaces a text that was just typed or pasted; the cursor stays behind what was before it.
void clean(QLineEdit& box, const QString& text)
{
    const QString cleaned = oneLine(text);
    if (cleaned == text)
        return;
    const qsizetype before = oneLine(text.left(box.cursorPosition())).size();
    box.setText(cleaned);
    box.setModified(true);
    box.setCursorPosition(static_cast<int>(before));
}

// The text under the pointer, if it is cut off.
QString cutText(const QWidget& widget, const QPoint& pointer)
{
    int room = 0;
    QString text;
    if (const auto* box = qobject_cast<const QLineEdit*>(&widget)) {
        if (showsBeginning(*box))
            return box->property(WholeText).toStringList().first();
        QStyleOptionFrame option;
        option.initFrom(box);
        option.lineWidth = box->hasFrame() ? box->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, box) : 0;
        const QRect contents = box->style()->subElementRect(QStyle::SE_LineEditContents, &option, box);
        const QMargins margins = box->textMargins();
        room = contents.width() - margins.left() - margins.right() - 2 * BoxMargin;
        text = box->displayText();
    } else if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
        QStyleOptionComboBox option;
        option.initFrom(combo);
        room =
            combo->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo).width();
        text = combo->currentText();
    } else if (const auto* view = qobject_cast<const QAbstractItemView*>(widget.parentWidget())) {
        const QModelIndex index = view->indexAt(pointer);
        room = std::min(view->visualRect(index).right(), widget.width()) - view->visualRect(index).left();
        text = index.data().toString();
        int wanted = view->sizeHintForIndex(index).width();
        if (qobject_cast<const QListView*>(view)) { // whose rows all ask for the widest one's
            const int margins = 2 * (view->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, view) + 1);
            wanted = widget.fontMetrics().horizontalAdvance(text) + margins;
            if (index.data(Qt::CheckStateRole).isValid())
                wanted += view->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, view) + margins;
        }
        return wanted > room ? text : QString();
    }
    return widget.fontMetrics().horizontalAdvance(text) > room ? text : QString();
}

} // namespace

void fillBox(QLineEdit& box, const QString& text)
{
    // Unless something changes or can be undone, spare the layout.
    if (box.text() != text || box.isUndoAvailable() || box.isRedoAvailable())
        box.setText(text);
    box.setCursorPosition(0);
    if (const bool cut = box.text() != text; cut || box.property(WholeText).isValid())
        box.setProperty(WholeText, cut ? QVariant(QStringList{text, box.text()}) : QVariant());
}

bool showsBeginning(const QLineEdit& box)
{
    const QStringList whole = box.property(WholeText).toStringList();
    return !whole.isEmpty() && !box.isModified() && whole.last() == box.text();
}

QString oneLine(const QString& text)
{
    QString line;
    line.reserve(text.size());
    bool blank = false; // a line break came, after some text
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (breaksLine(c)) {
            blank = !line.isEmpty();
            continue;
        }
        const bool pair = c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (c.category() == QChar::Other_Control || (c.isSurrogate() && !pair))
            continue;
        if (std::exchange(blank, false))
            line += u' ';
        line += c;
        if (pair)
            line += text[++i];
    }
    return line;
}

void keepOneLine(QLineEdit& box)
{
    if (box.property(KeptOneLine).toBool())
        return;
    box.setProperty(KeptOneLine, true);
    QObject::connect(&box, &QLineEdit::textEdited, &box, [&box](const QString& text) { clean(box, text); });
}

bool showCutText(QWidget& widget, const QHelpEvent& event)
{
    if (!widget.toolTip().isEmpty())
        return false;
    const QString text = cutText(widget, event.pos());
    if (text.isEmpty())
        return false;
    QToolTip::showText(event.globalPos(), Qt::convertFromPlainText(text), &widget);
    return true;
}

} // namespace orlo::widgets
