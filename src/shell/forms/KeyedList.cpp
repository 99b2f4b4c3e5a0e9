#include "shell/forms/KeyedList.h"

#include "widgets/ComboBox.h"

#include <algorithm>

namespace orlo
{

void refill(widgets::ComboBox& box, std::vector<std::int16_t>& keys, const std::vector<ListEntry>& entries)
{
    int chosen = -1;
    if (const int row = box.listIndex(); row >= 0 && row < std::ssize(keys)) {
        const auto same = std::ranges::find(entries, keys[static_cast<std::size_t>(row)], &ListEntry::sid);
        if (same != entries.end())
            chosen = static_cast<int>(same - entries.begin());
    }
    keys.clear();
    QStringList rows;
    for (const ListEntry& entry : entries) {
        keys.push_back(entry.sid);
        rows.append(entry.text);
    }
    box.refill(rows, chosen);
}

} // namespace orlo
