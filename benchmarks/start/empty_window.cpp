// The least that a program with a window does: the baseline for the time from a start to the first picture.

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
