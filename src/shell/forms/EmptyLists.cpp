#include "shell/forms/EmptyLists.h"

#include "platform/RuntimeError.h"
#include "shell/forms/Module1.h"
#include "store/engine/Database.h"
#include "store/engine/Value.h"
#include "widgets/EmptyText.h"

#include <QAbstractButton>
#include <QAbstractItemView>

namespace orlo
{

void sayNothingYet(QAbstractItemView& list, const QString& things, QAbstractButton& button)
{
    widgets::sayWhenEmpty(list, QStringLiteral("No %1 yet.").arg(things), &button);
}

QString nobodyHere()
{
    return QStringLiteral("Nobody here with this choice.");
}

// What was chosen doesn't matter: whoever is left in the table isn't in the list.
void sayWhyEmpty(QAbstractItemView& list, const QString& table, QAbstractButton& add)
{
    if (list.model()->rowCount() > 0)
        return;
    try {
        const auto counted = database().openRecordset(QStringLiteral("Select Count(*) As People From ") + table);
        if (counted[u"People"].toInt32() > 0)
            widgets::sayWhenEmpty(list, nobodyHere());
        else
            sayNothingYet(list, table.toLower(), add);
    } catch (const platform::RuntimeError&) { // a hint isn't worth the program's end
        widgets::sayWhenEmpty(list, QString());
    }
}

} // namespace orlo
