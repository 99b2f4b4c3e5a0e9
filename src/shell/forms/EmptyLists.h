#pragma once

#include <QString>

class QAbstractButton;
class QAbstractItemView;

namespace orlo
{

/// Lets an empty list or grid that a button fills say so: "No awards yet. Press Add."
void sayNothingYet(QAbstractItemView& list, const QString& things, QAbstractButton& button);
/// What a list says whose choice leaves it empty.
[[nodiscard]] QString nobodyHere();

/// Sets the text of a list of people from a table ("Scouts") that has just become empty: either nobody exists yet, and
/// the button adds somebody, or the table has others. Says nothing if the table can't be read.
void sayWhyEmpty(QAbstractItemView& list, const QString& table, QAbstractButton& add);

} // namespace orlo
