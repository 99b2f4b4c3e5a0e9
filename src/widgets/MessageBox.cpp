#include "widgets/MessageBox.h"

#include "platform/Application.h"
#include "widgets/Form.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>

namespace orlo::widgets
{

namespace
{

QMessageBox::StandardButton show(const QString& text, const QString& title, QMessageBox::Icon icon,
                                 QMessageBox::StandardButtons buttons, QMessageBox::StandardButton preset)
{
    // A dialog that has just been closed may still count as active; it goes soon, and would take the box with it.
    QPointer<QWidget> before = QApplication::activeWindow();
    if (!before) // between two windows: the one that was closed has gone, its owner isn't active yet
        before = QApplication::activeModalWidget() ? QApplication::activeModalWidget() : Form::mainWindow();
    while (before && !before->isVisible())
        before = before->parentWidget() ? before->parentWidget()->window() : nullptr;
    QMessageBox box(before);
    box.setWindowTitle(title.isEmpty() ? platform::title() : title);
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.setIcon(icon);
    box.setStandardButtons(buttons);
    box.setDefaultButton(preset);
    const int pressed = box.exec();
    // Not every platform gives the window before it the focus back.
    if (before && QApplication::activeWindow() != before)
        before->activateWindow();
    return static_cast<QMessageBox::StandardButton>(pressed);
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

bool ask(const QString& text, const QString& title, Preset preset)
{
    return show(text, title, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
                preset == Preset::Yes ? QMessageBox::Yes : QMessageBox::No) == QMessageBox::Yes;
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
