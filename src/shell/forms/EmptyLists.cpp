#include "shell/forms/EmptyLists.h"

#include "shell/forms/Module1.h"
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

// What was chosen doesn't matter: whoever is left in the table isn't in the list.
void sayWhyEmpty(QAbstractItemView& list, const QString& table, const QAbstractButton& add)
{
    if (list.model()->rowCount() > 0)
        return;
    const auto counted = database().openRecordset(QStringLiteral("Select Count(*) As People From ") + table);
    widgets::sayWhenEmpty(list, counted[u"People"].toInt32() > 0 ? nobodyHere() : nothingYet(table.toLower(), add));
}

} // namespace orlo
