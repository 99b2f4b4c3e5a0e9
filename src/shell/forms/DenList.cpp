#include "shell/forms/DenList.h"

#include "shell/forms/Module1.h"
#include "widgets/ComboBox.h"

namespace orlo
{

namespace
{

std::vector<DenEntry> readDens(const QString& which)
{
    std::vector<DenEntry> entries;
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

std::vector<DenEntry> allDens()
{
    return readDens(QString());
}

std::vector<DenEntry> activeDens()
{
    return readDens(QStringLiteral("Where Active = 'Y'"));
}

std::vector<std::int16_t> listActiveDens(widgets::ComboBox& box)
{
    box.clear();
    std::vector<std::int16_t> keys;
    for (const DenEntry& den : activeDens()) {
        box.addItem(den.text);
        keys.push_back(den.sid);
    }
    return keys;
}

} // namespace orlo
