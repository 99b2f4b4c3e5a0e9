#include "shell/forms/DenList.h"

#include "shell/forms/Module1.h"

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

} // namespace orlo
