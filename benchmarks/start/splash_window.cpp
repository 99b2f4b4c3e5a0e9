// The program's own start, in the folder given as argument, up to the first picture of its splash.

#include "FirstPaint.h"
#include "platform/Application.h"
#include "shell/frame/Main.h"
#include "widgets/Application.h"

int main(int argc, char** argv)
{
    const orlo::widgets::Application application(argc, argv);
    const orlo::bench::FirstPaint end;
    orlo::platform::setFolder(QString::fromLocal8Bit(argv[1]));
    orlo::startProgram();
    return orlo::widgets::Application::exec();
}
