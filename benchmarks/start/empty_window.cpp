// The least that a program with a window does: the time from its start to its first picture is what others' is measured
// against.

#include "FirstPaint.h"

#include <QApplication>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const orlo::bench::FirstPaint end;
    QWidget window;
    window.resize(483, 401);
    window.show();
    return QApplication::exec();
}
