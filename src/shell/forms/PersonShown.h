#pragma once

#include <cstdint>

namespace orlo
{

/// The person shown by a record form, for dialogs opened above it.
class PersonShown
{
public:
    PersonShown() = default;
    virtual ~PersonShown() = default;
    PersonShown(const PersonShown&) = delete;
    PersonShown& operator=(const PersonShown&) = delete;

    /// The person's key. Raises 3021 if the form has no record.
    [[nodiscard]] virtual std::int16_t currentPerson() const = 0;
    /// Reloads the person's awards.
    virtual void ReloadAwardGrid() = 0;
};

} // namespace orlo
