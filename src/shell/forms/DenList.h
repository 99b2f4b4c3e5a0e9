#pragma once

#include "shell/forms/KeyedList.h"

#include <QStringList>

namespace orlo::store
{
class Recordset;
}

namespace orlo
{

/// The den's text, from a record with Den_Type and Den_Number.
[[nodiscard]] QString denText(const store::Recordset& den);

/// "Wolf Den 3" for a den's key; "" if there is no such den.
[[nodiscard]] QString denName(std::int16_t denSID);

/// All dens, or the active ones, as "Wolf Den 3" in number order. Raises 91 while no database is open.
[[nodiscard]] std::vector<ListEntry> allDens();
[[nodiscard]] std::vector<ListEntry> activeDens();

/// The dens that a form's lists last showed, with their keys.
struct DenRows {
    std::vector<std::int16_t> mDenSIDs;
    QStringList texts;

    /// Reads all dens. False if there are none; the former ones are kept then.
    [[nodiscard]] bool read();
    /// The key of the den that the list shows under this text; -1 if there is none, and for "".
    [[nodiscard]] std::int16_t keyOf(const widgets::ComboBox& list, const QString& denName) const;
};

} // namespace orlo
