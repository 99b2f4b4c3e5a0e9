// Shows its argument in a message box. The launcher uses it to say why the program can't start: the program itself
// needs the folder that can't be created.

#include <QApplication>
#include <QMessageBox>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Verrano (ORLO)"), application.arguments().value(1));
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.exec();
    return 0;
}
