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

/// A row of a list and the key that it stands for.
struct ListEntry {
    QString text;
    std::int16_t sid = 0;
};

/// Fills a box anew; `keys` are those of its rows before and after. What the box shows stays, and so does the choice of
/// a key that is still there: to open a list and close it again changes nothing.
void refill(widgets::ComboBox& box, std::vector<std::int16_t>& keys, const std::vector<ListEntry>& entries);

} // namespace orlo
