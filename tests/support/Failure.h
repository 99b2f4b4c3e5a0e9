#pragma once

#include "platform/RuntimeError.h"

#include <optional>

namespace orlo::test
{

/// What an action fails with; nothing if it doesn't fail.
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

/// The number that an action fails with, 0 if it doesn't fail.
template <class Action>
int failureNumber(const Action& action)
{
    const auto error = failureOf(action);
    return error ? error->number() : 0;
}

} // namespace orlo::test
