#include "shell/forms/PersonName.h"

namespace orlo
{

namespace
{

QString trimmed(const store::Recordset& person, QStringView field)
{
    return person[field].textOrEmpty().trimmed();
}

} // namespace

QString firstMiddleLast(const store::Recordset& person)
{
    const QString initial = trimmed(person, u"MI");
    const QString middle = initial.isEmpty() ? QStringLiteral(" ") : u' ' + initial + QStringLiteral(". ");
    return trimmed(person, u"First_Name") + middle + trimmed(person, u"Last_Name");
}

QString lastFirstMiddle(const store::Recordset& person)
{
    return trimmed(person, u"Last_Name") + QStringLiteral(", ") + trimmed(person, u"First_Name") + u' ' +
           trimmed(person, u"MI");
}

} // namespace orlo
