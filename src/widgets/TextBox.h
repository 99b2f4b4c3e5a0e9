#pragma once

#include <QString>

class QHelpEvent;
class QLineEdit;
class QWidget;

namespace orlo::widgets
{

/// Fills a box when a record is shown: the text's start is visible, and undo can't bring back an earlier text. If the
/// text exceeds the box's limit, the tool tip shows all of it.
void fillBox(QLineEdit& box, const QString& text);

/// Whether the box was filled with more than it can hold and nobody has edited it since.
[[nodiscard]] bool showsBeginning(const QLineEdit& box);

/// A text on one line: inner line breaks and tabs become blanks; outer ones, invisible characters and unpaired
/// surrogates are removed.
[[nodiscard]] QString oneLine(const QString& text);

/// Makes a box convert every typed, pasted or dropped text to one line.
void keepOneLine(QLineEdit& box);

/// Shows the whole text of a box, or of a list's row, as a tool tip if it is cut off under the pointer; false if it
/// isn't.
bool showCutText(QWidget& widget, const QHelpEvent& event);

} // namespace orlo::widgets
