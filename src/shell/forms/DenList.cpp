#include "shell/forms/DenList.h"

#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "widgets/ComboBox.h"

#include <algorithm>

namespace orlo
{

namespace
{

std::vector<ListEntry> readDens(const QString& which)
{
    std::vector<ListEntry> entries;
    auto dens = database().openRecordset(QStringLiteral("Select Den_Number, Den_Type, Den_SID From Dens ") + which +
                                         QStringLiteral(" Order by Den_Number"));
    for (; !dens.eof(); dens.moveNext())
        entries.push_back({denText(dens), dens[u"Den_SID"].toInt16()});
    return entries;
}

} // namespace

QString denText(const store::Recordset& den)
{
    return den[u"Den_Type"].textOrEmpty() + QStringLiteral(" Den ") + den[u"Den_Number"].textOrEmpty();
}

std::vector<ListEntry> allDens()
{
    return readDens(QString());
}

std::vector<ListEntry> activeDens()
{
    return readDens(QStringLiteral("Where Active = 'Y'"));
}

QString denName(std::int16_t denSID)
{
    auto den = database().openRecordset(
        QStringLiteral("Select Den_Number, Den_Type, Den_SID From Dens Where Den_SID = %1").arg(denSID));
    return den.recordCount() > 0 ? denText(den) : QString();
}

bool DenRows::read()
{
    const std::vector<ListEntry> dens = allDens();
    if (dens.empty())
        return false;
    mDenSIDs.clear();
    texts.clear();
    for (const ListEntry& den : dens) {
        mDenSIDs.push_back(den.sid);
        texts.append(den.text);
    }
    return true;
}

std::int16_t DenRows::keyOf(const widgets::ComboBox& list, const QString& denName) const
{
    const int rows = std::min(list.listCount(), static_cast<int>(mDenSIDs.size()));
    for (int row = 0; !denName.isEmpty() && row < rows; ++row)
        if (list.list(row) == denName)
            return mDenSIDs[static_cast<std::size_t>(row)];
    return -1;
}

} // namespace orlo
