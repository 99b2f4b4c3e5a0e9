#include "Headings.h"

#include "store/engine/TableDef.h"
#include "store/engine/Value.h"

#include <QStringList>

using namespace orlo;
using store::TableDef;

namespace
{

struct Caption {
    QStringView tables; // table names, with a blank on each side
    QStringView text;   // as returned by bare()
    QStringView field;
};

constexpr QStringView OfPeople = u" Scouts Adults ";
constexpr QStringView OfScouts = u" Scouts ";
constexpr QStringView OfAdults = u" Adults ";
constexpr QStringView OfDens = u" Dens ";
constexpr QStringView OfAwards = u" Insignias ";
constexpr QStringView OfGiven = u" Assigned_Awards_Scouts Assigned_Awards_Adults ";

// The windows' captions; those of the scouts' other pages begin with the page's name, misspelt as there or corrected.
constexpr Caption Captions[] = {
    {OfPeople, u"first", u"First_Name"},
    {OfPeople, u"last", u"Last_Name"},
    {OfPeople, u"m", u"MI"},
    {OfPeople, u"dateofbirth", u"Birth_Date"},
    {OfPeople, u"zip", u"Zip_Code"},
    {OfAdults, u"homephone", u"Phone"},
    {OfScouts, u"emailaddress", u"Scouts_Email"},
    {OfScouts, u"grade", u"Grade_In_School"},
    {OfScouts, u"wasscoutatiger", u"Tigar"},
    {OfScouts, u"den", u"Assigned_Den_SID"},
    {OfScouts, u"primaryparentguardian", u"Parent_Name1"},
    {OfScouts, u"primaryparentguardianname", u"Parent_Name1"},
    {OfScouts, u"primaryparentguardianhomephone", u"Parent1_Home_Phone"},
    {OfScouts, u"primaryparentguardianworkphone", u"Parent1_Work_Phone"},
    {OfScouts, u"primaryparentguardianemailaddress", u"Parent1_Email"},
    {OfScouts, u"includeincorrespondence", u"Parent1_Correspondance"},
    {OfScouts, u"2ndparentgauardian", u"Parent_Name2"},
    {OfScouts, u"2ndparentgauardianname", u"Parent_Name2"},
    {OfScouts, u"2ndparentgauardianhomephone", u"Parent2_Home_Phone"},
    {OfScouts, u"2ndparentgauardianworkphone", u"Parent2_Work_Phone"},
    {OfScouts, u"2ndparentgauardianemailaddress", u"Parent2_Email"},
    {OfScouts, u"alternateaddress", u"Alt_Parent_Address"},
    {OfScouts, u"alternatecity", u"Alt_Parent_City"},
    {OfScouts, u"alternatestate", u"Alt_Parent_State"},
    {OfScouts, u"alternatezip", u"Alt_Parent_Zip"},
    {OfDens, u"number", u"Den_Number"},
    {OfDens, u"name", u"Den_Name"},
    {OfDens, u"type", u"Den_Type"},
    {OfAwards, u"nameofaward", u"Insignia_Name"},
    {OfGiven, u"scout", u"Scout_SID"},
    {OfGiven, u"adult", u"Adult_SID"},
    {OfGiven, u"award", u"Insignia_SID"},
    {OfGiven, u"qty", u"Quantity"},
    {OfGiven, u"assigned", u"Date_Assigned"},
    {u" Leader_Den_Assignments ", u"adult", u"Adult_SID"},
    {u" Leader_Den_Assignments ", u"den", u"Den_SID"},
    {u" Leader_Den_Assignments ", u"position", u"Den_Title"},
    {u" Leader_Pack_Assn ", u"adult", u"Leader_SID"},
    {u" Leader_Pack_Assn ", u"position", u"Position_Title"},
    {u" Den_Titles ", u"title", u"Den_Title"},
    {u" Pack_Positions ", u"title", u"Pack_Titles"},
    {u" Den_Titles Pack_Positions ", u"sortrank", u"Sort_Order"},
    {u" PackInfo ", u"pack", u"Pack Number"},
    {u" PackInfo ", u"charterorganization", u"Name"},
};

QString bare(QStringView text)
{
    QString letters;
    for (const QChar letter : text)
        if (letter.isLetterOrNumber())
            letters += letter.toLower();
    return letters.replace(QLatin1String("2ndparentguardian"), QLatin1String("2ndparentgauardian"));
}

} // namespace

Heading headingOf(const TableDef& table, QStringView text)
{
    const QString wanted = bare(text);
    for (const store::Field& field : table.fields())
        if (bare(field.name) == wanted)
            return {&field, false};
    const QString name = QStringLiteral(" %1 ").arg(table.name());
    for (const Caption& caption : Captions)
        if (caption.text == wanted && caption.tables.contains(name, Qt::CaseInsensitive))
            if (const store::Field* field = table.findField(caption.field))
                return {field, true};
    return {};
}

QString fieldNames(const TableDef& table)
{
    QStringList names;
    for (const store::Field& field : table.fields())
        names += field.name;
    return names.join(QStringLiteral(", "));
}
