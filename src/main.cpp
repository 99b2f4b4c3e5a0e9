#include "shell/Module1.h"

int main(int argc, char** argv)
{
    return orlo::runProgram(argc, argv);
}
