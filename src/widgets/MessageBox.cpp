#include "widgets/MessageBox.h"

#include "platform/Application.h"

#include <QApplication>
#include <QMessageBox>

namespace orlo::widgets
{

namespace
{

QMessageBox::StandardButton show(const QString& text, const QString& title, Icon icon,
                                 QMessageBox::StandardButtons buttons, QMessageBox::StandardButton preset)
{
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(title.isEmpty() ? platform::title() : title);
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.setIcon(icon == Icon::Question      ? QMessageBox::Question
                : icon == Icon::Exclamation ? QMessageBox::Warning
                                            : QMessageBox::NoIcon);
    box.setStandardButtons(buttons);
    box.setDefaultButton(preset);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

} // namespace

void message(const QString& text, const QString& title, Icon icon)
{
    show(text, title, icon, QMessageBox::Ok, QMessageBox::Ok);
}

bool ask(const QString& text, const QString& title, Icon icon)
{
    return show(text, title, icon, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) == QMessageBox::Yes;
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
