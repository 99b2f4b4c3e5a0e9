#pragma once

#include <QtGlobal>

namespace orlo::test
{

/// How often a test repeats: the number in the environment variable, for long runs, or the usual one.
inline int repeats(const char* variable, int usual)
{
    const int wanted = qEnvironmentVariableIntValue(variable);
    return wanted > 0 ? wanted : usual;
}

} // namespace orlo::test
