#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace orlo::widgets
{
class ComboBox;
}

/// What the dialogs for an adult's positions offer: dens and titles, each row with a number.
namespace orlo::leaderLists
{

using Numbers = std::vector<std::int16_t>;

/// A table of titles.
struct Titles {
    QString table;
    QString field;
    int most; ///< characters of a position's title
};

[[nodiscard]] Titles denTitles();
[[nodiscard]] Titles packTitles();

/// What happens to a title without a rank.
enum class Unranked { Last, Fails };

/// Fills the box with the active dens in which the adult has no position yet, and returns their keys. `order` ends the
/// statement.
[[nodiscard]] Numbers addDens(widgets::ComboBox& box, std::int16_t adult, const QString& order);
/// Fills the box with all titles by rank, limits typing to a position's length, and returns the ranks. Raises 94 for a
/// title without a rank, unless such titles count as 100.
[[nodiscard]] Numbers addTitles(widgets::ComboBox& box, const Titles& titles, Unranked unranked);

/// A row's number. Raises 9 for row -1, where a box is after a text was typed.
[[nodiscard]] std::int16_t entry(const Numbers& numbers, int row);

} // namespace orlo::leaderLists
