#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace orlo::widgets
{
class ComboBox;
}

namespace orlo
{

/// A row of a list and its key.
struct ListEntry {
    QString text;
    std::int16_t sid = 0;
};

/// Refills a box; `keys` are those of its rows, before and after. The box keeps its text, and its choice if that key
/// still exists, so opening and closing a list changes nothing.
void refill(widgets::ComboBox& box, std::vector<std::int16_t>& keys, const std::vector<ListEntry>& entries);

} // namespace orlo
