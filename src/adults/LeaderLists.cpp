#include "adults/LeaderLists.h"

#include "platform/RuntimeError.h"
#include "shell/forms/DenList.h"
#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "widgets/ComboBox.h"

#include <QLineEdit>

namespace orlo::leaderLists
{

namespace
{

constexpr std::int16_t LowestRank = 100;

}

Titles denTitles()
{
    return {QStringLiteral("Den_Titles"), QStringLiteral("Den_Title"), 50};
}

Titles packTitles()
{
    return {QStringLiteral("Pack_Positions"), QStringLiteral("Pack_Titles"), 60};
}

Numbers addDens(widgets::ComboBox& box, std::int16_t adult, const QString& order)
{
    Numbers keys;
    auto dens = database().openRecordset(
        QStringLiteral("Select Den_SID, Den_Number, Den_Type  From  Dens  Where Den_SID not in (   Select Den_SID from "
                       "Leader_Den_Assignments  Where Adult_SID = %1 )  and Active = 'Y' ")
            .arg(adult) +
        order);
    for (; !dens.eof(); dens.moveNext()) {
        box.addItem(denText(dens));
        keys.push_back(dens[u"Den_SID"].toInt16());
    }
    return keys;
}

Numbers addTitles(widgets::ComboBox& box, const Titles& titles, Unranked unranked)
{
    box.lineEdit()->setMaxLength(titles.most);
    Numbers ranks;
    auto rows = database().openRecordset(
        QStringLiteral("Select * from %1 Order by Sort_Order, %2").arg(titles.table, titles.field));
    for (; !rows.eof(); rows.moveNext()) {
        const store::Value rank = rows[u"Sort_Order"];
        box.addItem(rows[titles.field].textOrEmpty());
        ranks.push_back(rank.isNull() && unranked == Unranked::Last ? LowestRank : rank.toInt16());
    }
    return ranks;
}

std::int16_t entry(const Numbers& numbers, int row)
{
    if (row < 0 || row >= static_cast<int>(numbers.size()))
        throw platform::RuntimeError(platform::SubscriptOutOfRange);
    return numbers[static_cast<std::size_t>(row)];
}

} // namespace orlo::leaderLists
