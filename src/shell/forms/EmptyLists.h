#pragma once

#include <QString>

class QAbstractButton;
class QAbstractItemView;

namespace orlo
{

/// What an empty list or grid says that a button fills: "No awards yet. Press Add."
[[nodiscard]] QString nothingYet(const QString& things, const QAbstractButton& button);
/// What a list says whose choice leaves it empty.
[[nodiscard]] QString nobodyHere();

/// Sets the text of a list of people from a table ("Scouts") that has just become empty: either nobody exists yet, and
/// the button adds somebody, or the table has others. Raises as Database::openRecordset().
void sayWhyEmpty(QAbstractItemView& list, const QString& table, const QAbstractButton& add);

} // namespace orlo
