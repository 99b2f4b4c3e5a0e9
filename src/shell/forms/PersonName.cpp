#include "shell/forms/PersonName.h"

#include "store/engine/Recordset.h"
#include "store/engine/Value.h"

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
    return trimmed(person, u"First_Name") + middlePart(trimmed(person, u"MI")) + trimmed(person, u"Last_Name");
}

QString lastFirstMiddle(const store::Recordset& person)
{
    return trimmed(person, u"Last_Name") + QStringLiteral(", ") + trimmed(person, u"First_Name") + u' ' +
           trimmed(person, u"MI");
}

QString middlePart(const QString& initial)
{
    return QStringView(initial).trimmed().isEmpty() ? QStringLiteral(" ") : u' ' + initial + QStringLiteral(". ");
}

QString listRow(const QString& first, const QString& middle, const QString& last, bool lastNameFirst)
{
    return lastNameFirst ? rightTrimmed(last) + QStringLiteral(", ") + rightTrimmed(first + middle)
                         : rightTrimmed(first + middle + last);
}

QString newListRow(const QString& first, const QString& initial, const QString& last)
{
    return QStringLiteral("<New>") + leftTrimmed(last) + QStringLiteral(", ") + leftTrimmed(first) + u' ' + initial;
}

QString rightTrimmed(QString text)
{
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

QString leftTrimmed(QString text)
{
    while (text.startsWith(u' '))
        text.remove(0, 1);
    return text;
}

} // namespace orlo
