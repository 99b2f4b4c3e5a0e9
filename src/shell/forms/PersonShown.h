#pragma once

#include <cstdint>

namespace orlo
{

/// The person on screen in a record form, for a dialog above it.
class PersonShown
{
public:
    PersonShown() = default;
    virtual ~PersonShown() = default;
    PersonShown(const PersonShown&) = delete;
    PersonShown& operator=(const PersonShown&) = delete;

    /// The person's key. Raises 3021 where the form has no record.
    [[nodiscard]] virtual std::int16_t currentPerson() const = 0;
    /// Shows the person's awards anew.
    virtual void ReloadAwardGrid() = 0;
};

} // namespace orlo
