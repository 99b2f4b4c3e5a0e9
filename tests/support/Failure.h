#pragma once

#include "platform/RuntimeError.h"

#include <optional>

namespace orlo::test
{

/// The failure that an action raises; nothing if it raises none.
template <class Error = platform::RuntimeError, class Action>
std::optional<Error> failureOf(const Action& action)
{
    try {
        static_cast<void>(action());
    } catch (const Error& error) {
        return error;
    }
    return {};
}

/// The number of the failure that an action raises; 0 if it raises none.
template <class Action>
int failureNumber(const Action& action)
{
    const auto error = failureOf(action);
    return error ? error->number() : 0;
}

} // namespace orlo::test
