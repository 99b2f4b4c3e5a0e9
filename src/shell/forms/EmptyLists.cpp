#include "shell/forms/EmptyLists.h"

#include "shell/forms/Module1.h"
#include "shell/forms/PeopleFilter.h"
#include "widgets/EmptyText.h"

#include <QAbstractButton>
#include <QAbstractItemView>

namespace orlo
{

QString nothingYet(const QString& things, const QAbstractButton& button)
{
    return QStringLiteral("No %1 yet. Press %2.").arg(things, button.text().remove(u'&'));
}

QString nobodyHere()
{
    return QStringLiteral("Nobody here with this choice.");
}

// The text is set even if the list has rows: the last one of a filter may be deleted while the table has others.
void sayWhyEmpty(QAbstractItemView& list, const QString& table, const PeopleFilter& filter, const QAbstractButton& add)
{
    bool isChoice = !filter.BuildViewCriteria(QString()).isEmpty();
    if (isChoice && list.model()->rowCount() == 0)
        isChoice =
            database().openRecordset(QStringLiteral("Select Count(*) As People From ") + table)[u"People"].toInt32() >
            0;
    widgets::sayWhenEmpty(list, isChoice ? nobodyHere() : nothingYet(table.toLower(), add));
}

} // namespace orlo
