#pragma once

#include "shell/forms/KeyedList.h"

#include <QStringList>

namespace orlo::store
{
class Recordset;
}

namespace orlo
{

/// The text of the current record of a set with Den_Type and Den_Number.
[[nodiscard]] QString denText(const store::Recordset& den);

/// "Wolf Den 3" of a den's key, "" for a den that isn't there.
[[nodiscard]] QString denName(std::int16_t denSID);

/// All dens as "Wolf Den 3", or the active ones, in number order. Raise 91 while no database is open.
[[nodiscard]] std::vector<ListEntry> allDens();
[[nodiscard]] std::vector<ListEntry> activeDens();

/// The dens as a form's lists last showed them, with their keys.
struct DenRows {
    std::vector<std::int16_t> mDenSIDs;
    QStringList texts;

    /// Reads all dens. False where there are none, and those of before stay.
    [[nodiscard]] bool read();
    /// The key of the row of a list of dens that equals the text; -1 for none and for "".
    [[nodiscard]] std::int16_t keyOf(const widgets::ComboBox& list, const QString& denName) const;
};

} // namespace orlo
