#pragma once

#include <QString>

class QAbstractButton;
class QAbstractItemView;

namespace orlo
{

struct PeopleFilter;

/// What an empty list or grid says that a button fills: "No awards yet. Press Add."
[[nodiscard]] QString nothingYet(const QString& things, const QAbstractButton& button);
/// What a list says that a choice has left empty.
[[nodiscard]] QString nobodyHere();

/// Has the list of a people's table ("Scouts") say why it is empty, the set having been opened through the filter: the
/// table has nobody, whom the button adds, or the filter leaves nobody. Raises as Database::openRecordset().
void sayWhyEmpty(QAbstractItemView& list, const QString& table, const PeopleFilter& filter, const QAbstractButton& add);

} // namespace orlo
