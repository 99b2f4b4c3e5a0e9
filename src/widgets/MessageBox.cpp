#include "widgets/MessageBox.h"

#include "platform/Application.h"
#include "widgets/Form.h"
#include "widgets/NestedLoop.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPointer>

namespace orlo::widgets
{

namespace
{

class Box : public QMessageBox
{
public:
    Box(QWidget* parent, OnEscape onEscape) : QMessageBox(parent), m_onEscape(onEscape)
    {
        if (onEscape == OnEscape::DoesNothing)
            setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    }

protected:
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
    OnEscape m_onEscape;
};

QMessageBox::StandardButton show(const QString& text, const QString& title, QMessageBox::Icon icon,
                                 QMessageBox::StandardButtons buttons, QMessageBox::StandardButton preset,
                                 OnEscape onEscape = OnEscape::IsNo)
{
    // A dialog that has just been closed may still count as active; it goes soon, and would take the box with it.
    QPointer<QWidget> before = QApplication::activeWindow();
    if (!before) // between two windows: the one that was closed has gone, its owner isn't active yet
        before = QApplication::activeModalWidget() ? QApplication::activeModalWidget() : Form::mainWindow();
    while (before && !before->isVisible())
        before = before->parentWidget() ? before->parentWidget()->window() : nullptr;
    const QPointer<Box> box = new Box(before, onEscape); // which goes with the window before it
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
    // Not every platform gives the window before it the focus back.
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
