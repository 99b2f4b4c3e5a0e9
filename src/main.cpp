#include "shell/frame/Main.h"

int main(int argc, char** argv)
{
    return orlo::runProgram(argc, argv);
}
