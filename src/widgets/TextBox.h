#pragma once

#include <QString>

class QHelpEvent;
class QLineEdit;
class QWidget;

namespace orlo::widgets
{

/// Puts a text into a box as the program does when it shows a record: the text's beginning shows, and nothing that was
/// typed before can be brought back into it. Of a text beyond the box's limit the tool tip shows the whole.
void fillBox(QLineEdit& box, const QString& text);

/// Whether the box shows only the beginning of the text that it was filled with, and nobody has touched it since.
[[nodiscard]] bool showsBeginning(const QLineEdit& box);

/// A text that fits on one line: line breaks and tabs within it are blanks, those around it and other characters that
/// nobody can see go, and so does half a character.
[[nodiscard]] QString oneLine(const QString& text);

/// Makes a box take every text that comes in by hand, typed, pasted or dropped, as one line.
void keepOneLine(QLineEdit& box);

/// Shows the whole text of a box, or of a list's row, under the pointer where it is cut off; false where there is
/// nothing to show.
bool showCutText(QWidget& widget, const QHelpEvent& event);

} // namespace orlo::widgets
