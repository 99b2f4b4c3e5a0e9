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

/// An award as the screens list it: "name type".
struct AwardEntry {
    QString text;
    std::int16_t sid = 0;
};

/// The whole catalogue of awards by name and type. Raises 91 while no database is open.
[[nodiscard]] std::vector<AwardEntry> awardEntries();
/// Fills the box anew with the catalogue; the awards' keys by row. Raises 91 as above.
std::vector<std::int16_t> listAwards(widgets::ComboBox& box);

} // namespace orlo
