#include "support/Main.h"
#include "widgets/Application.h"

// The tests run in the program's own application object, so that failures and focus checks go the way they go in the
// program.
int main(int argc, char** argv)
{
    const orlo::widgets::Application application(argc, argv);
    return orlo::test::runTests(QApplication::arguments());
}
