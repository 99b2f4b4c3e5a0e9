#include "awards/AwardList.h"

#include "shell/forms/Module1.h"
#include "widgets/ComboBox.h"

namespace orlo
{

std::vector<AwardEntry> awardEntries()
{
    std::vector<AwardEntry> entries;
    auto awards =
        database().openRecordset(QStringLiteral("Select * From Insignias Order by Insignia_Name, Insignia_Type"));
    for (; !awards.eof(); awards.moveNext())
        entries.push_back({awards[u"Insignia_Name"].textOrEmpty() + u' ' + awards[u"Insignia_Type"].textOrEmpty(),
                           awards[u"Insignia_SID"].toInt16()});
    return entries;
}

std::vector<std::int16_t> listAwards(widgets::ComboBox& box)
{
    box.clear();
    std::vector<std::int16_t> keys;
    for (const AwardEntry& award : awardEntries()) {
        box.addItem(award.text);
        keys.push_back(award.sid);
    }
    return keys;
}

} // namespace orlo
