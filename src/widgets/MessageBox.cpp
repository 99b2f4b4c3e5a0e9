#include "widgets/MessageBox.h"

#include "platform/Application.h"
#include "widgets/Form.h"
#include "widgets/NestedLoop.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPointer>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace orlo::widgets
{

namespace
{

constexpr int MaxLine = 70;   // characters
constexpr int MinWidth = 340; // pixels

// The number of lines at this width; 0 if one has too many characters. A long word can't be broken.
int linesAt(int width, const QString& text, const QFont& font)
{
    int lines = 0;
    const auto paragraphs = text.split(u'\n');
    for (const QString& paragraph : paragraphs) {
        QTextLayout layout(paragraph, font);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine(), ++lines) {
            line.setLineWidth(width);
            const QString shown = paragraph.mid(line.textStart(), line.textLength()).trimmed();
            if (shown.size() > MaxLine && shown.contains(u' '))
                return 0;
        }
        layout.endLayout();
    }
    return lines;
}

// The smallest width with the fewest lines, so that lines are about equally long.
int textWidth(const QString& text, const QFont& font)
{
    const QFontMetrics metrics(font);
    const int word = metrics.boundingRect(QRect(0, 0, 1, 1), Qt::TextWordWrap, text).width();
    const int step = std::max(1, metrics.averageCharWidth() / 2);
    int width =
        std::min(metrics.size(0, text).width(), std::max(word, MaxLine * metrics.averageCharWidth() * 3 / 2)) + 1;
    while (width > word && linesAt(width, text, font) == 0)
        width -= step;
    const int lines = linesAt(width, text, font);
    while (width - step > word && linesAt(width - step, text, font) == lines)
        width -= step;
    return std::max(width, word);
}

// Lines of a readable length; a short text is centred on the sign.
class Box : public QMessageBox
{
public:
    Box(QWidget* parent, OnEscape onEscape) : QMessageBox(parent), m_onEscape(onEscape)
    {
        if (onEscape == OnEscape::DoesNothing)
            setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    }

protected:
    bool event(QEvent* event) override
    {
        const bool done = QMessageBox::event(event);
        if (isVisible() && (event->type() == QEvent::LayoutRequest || event->type() == QEvent::FontChange))
            layOut();
        return done;
    }
    void showEvent(QShowEvent* event) override
    {
        QMessageBox::showEvent(event);
        layOut();
    }
    void keyPressEvent(QKeyEvent* event) override
    {
        if (m_onEscape == OnEscape::IsNo || !event->matches(QKeySequence::Cancel))
            QMessageBox::keyPressEvent(event);
    }
    void closeEvent(QCloseEvent* event) override
    {
        if (m_onEscape == OnEscape::IsNo)
            QMessageBox::closeEvent(event);
        else
            event->ignore();
    }

private:
    // Again after the base class's own layout, which it repeats at each request.
    void layOut()
    {
        auto* label = findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        const int width = textWidth(text(), label->font());
        label->setWordWrap(true);
        label->setFixedSize(
            width, std::max(iconPixmap().deviceIndependentSize().toSize().height(), label->heightForWidth(width)));
        layout()->activate();
        const QSize needed = layout()->totalMinimumSize();
        const int title = fontMetrics().horizontalAdvance(windowTitle()) + MinWidth / 4;
        const int spare = std::max({title, MinWidth, needed.width()}) - needed.width();
        label->setFixedWidth(width + spare); // the surplus lies to the right of the text
        layout()->activate();
        setFixedSize(needed + QSize(spare, 0));
        QCoreApplication::removePostedEvents(this, QEvent::LayoutRequest);
    }

    OnEscape m_onEscape;
};

QMessageBox::StandardButton show(const QString& text, const QString& title, QMessageBox::Icon icon,
                                 QMessageBox::StandardButtons buttons, QMessageBox::StandardButton preset,
                                 OnEscape onEscape = OnEscape::IsNo)
{
    // A dialog just closed may still be active; it would take the box with it when it is destroyed.
    QPointer<QWidget> before = QApplication::activeWindow();
    if (!before) // between two windows: one was closed, its owner isn't active yet
        before = QApplication::activeModalWidget() ? QApplication::activeModalWidget() : mainWindow();
    while (before && !before->isVisible())
        before = before->parentWidget() ? before->parentWidget()->window() : nullptr;
    const QPointer<Box> box = new Box(before, onEscape); // destroyed with the window before it
    box->setWindowTitle(title.isEmpty() ? platform::title() : title);
    box->setTextFormat(Qt::PlainText);
    box->setText(text);
    box->setIcon(icon);
    box->setStandardButtons(buttons);
    box->setDefaultButton(preset);
    const NestedLoop loop;
    const int pressed = box->exec();
    const bool answered = box;
    delete box;
    // Not every platform returns the focus to the window before.
    if (before && before->isVisible() && QApplication::activeWindow() != before)
        before->activateWindow();
    return answered ? static_cast<QMessageBox::StandardButton>(pressed) : QMessageBox::No;
}

} // namespace

void message(const QString& text, const QString& title)
{
    show(text, title, QMessageBox::Information, QMessageBox::Ok, QMessageBox::Ok);
}

void warn(const QString& text, const QString& title)
{
    show(text, title, QMessageBox::Warning, QMessageBox::Ok, QMessageBox::Ok);
}

bool ask(const QString& text, const QString& title, Preset preset, OnEscape onEscape)
{
    return show(text, title, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
                preset == Preset::Yes ? QMessageBox::Yes : QMessageBox::No, onEscape) == QMessageBox::Yes;
}

QString lines(const QStringList& texts)
{
    return texts.join(u'\n');
}

BusyPointer::BusyPointer()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

BusyPointer::~BusyPointer()
{
    QApplication::restoreOverrideCursor();
}

} // namespace orlo::widgets
