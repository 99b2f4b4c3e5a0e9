#include "support/Main.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return orlo::test::runTests(QCoreApplication::arguments());
}
