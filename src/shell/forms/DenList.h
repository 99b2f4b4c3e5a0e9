#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace orlo::store
{
class Recordset;
}

namespace orlo::widgets
{
class ComboBox;
}

namespace orlo
{

/// A den as the screens list it: "Wolf Den 3".
struct DenEntry {
    QString text;
    std::int16_t sid = 0;
};

/// The text of the current record of a set with Den_Type and Den_Number.
[[nodiscard]] QString denText(const store::Recordset& den);

/// All dens, or the active ones, in number order. Raise 91 while no database is open.
[[nodiscard]] std::vector<DenEntry> allDens();
[[nodiscard]] std::vector<DenEntry> activeDens();
/// Fills the box anew with the active dens; their keys by row. Raises 91 as above.
std::vector<std::int16_t> listActiveDens(widgets::ComboBox& box);

} // namespace orlo
