#pragma once

#include <QString>

class QAbstractButton;
class QAbstractItemView;

namespace orlo
{

struct PeopleFilter;

/// What an empty list or grid says that a button fills: "No awards yet. Press Add."
[[nodiscard]] QString nothingYet(const QString& things, const QAbstractButton& button);
/// What a list says that a filter leaves empty.
[[nodiscard]] QString nobodyHere();

/// Sets the text for an empty list of people from a table ("Scouts") that was opened through a filter: either nobody
/// exists yet, and the button adds somebody, or the filter excludes everybody. Raises as Database::openRecordset().
void sayWhyEmpty(QAbstractItemView& list, const QString& table, const PeopleFilter& filter, const QAbstractButton& add);

} // namespace orlo
