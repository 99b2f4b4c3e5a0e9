#pragma once

#include "platform/RuntimeError.h"

#include <functional>
#include <optional>

namespace orlo::test
{

/// What an action fails with; nothing if it doesn't fail.
inline std::optional<platform::RuntimeError> failureOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const platform::RuntimeError& error) {
        return error;
    }
    return {};
}

/// The number that an action fails with, 0 if it doesn't fail.
inline int failureNumber(const std::function<void()>& action)
{
    const auto error = failureOf(action);
    return error ? error->number() : 0;
}

} // namespace orlo::test
