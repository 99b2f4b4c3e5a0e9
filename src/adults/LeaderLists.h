#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace orlo::widgets
{
class ComboBox;
}

/// What the dialogs for an adult's positions offer: dens and titles, each with a number by row.
namespace orlo::leaderLists
{

using Numbers = std::vector<std::int16_t>;

/// A table of titles.
struct Titles {
    QString table;
    QString field;
    int most; ///< characters that a position's title takes
};

[[nodiscard]] Titles denTitles();
[[nodiscard]] Titles packTitles();

/// What a title without a rank does.
enum class Unranked { Last, Fails };

/// Fills the box with the active dens in which the adult has no position yet; their keys. `order` ends the statement.
[[nodiscard]] Numbers addDens(widgets::ComboBox& box, std::int16_t adult, const QString& order);
/// Fills the box with all titles in the order of their ranks, and lets no longer text be typed there than a position
/// takes; their ranks. Raises 94 for a title without one, unless it
/// is to count as 100.
[[nodiscard]] Numbers addTitles(widgets::ComboBox& box, const Titles& titles, Unranked unranked);

/// The number of a row. Raises 9 for no row, which is where a box stands after a text was typed by hand.
[[nodiscard]] std::int16_t entry(const Numbers& numbers, int row);

} // namespace orlo::leaderLists
