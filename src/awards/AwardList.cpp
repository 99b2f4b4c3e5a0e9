#include "awards/AwardList.h"

#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"

namespace orlo
{

std::vector<ListEntry> awardEntries()
{
    std::vector<ListEntry> entries;
    auto awards =
        database().openRecordset(QStringLiteral("Select * From Insignias Order by Insignia_Name, Insignia_Type"));
    for (; !awards.eof(); awards.moveNext())
        entries.push_back({awards[u"Insignia_Name"].textOrEmpty() + u' ' + awards[u"Insignia_Type"].textOrEmpty(),
                           awards[u"Insignia_SID"].toInt16()});
    return entries;
}

} // namespace orlo
