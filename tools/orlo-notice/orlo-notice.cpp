// Shows its argument in a box: by it the launcher tells why the program can't start, which itself needs the folder that
// can't be made.

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
