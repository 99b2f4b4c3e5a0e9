#pragma once

#include <QStringList>

class QWidget;

namespace orlo::test
{

enum class What { Everything, Changing };
inline bool isPainted = false; ///< pictures tell what is painted, too, until they are compared

/// What a form shows, a line for each control, "cmdSave: "&Save", default, off". Lists and grids give their rows, the
/// chosen ones marked with a star; the line "focus" names the control that has it. What is the same for the form's
/// whole life, such as a box's limit, can be left out.
QStringList pictureOf(const QWidget& form, What what = What::Changing);
/// What a later picture shows otherwise: its new lines, after "name: -" for those of which nothing is left to tell.
[[nodiscard]] QStringList changesOf(const QStringList& before, const QStringList& now);
/// Fails with all lines, to copy them from, if they aren't the wanted ones.
void comparePicture(const QStringList& seen, const QString& wanted);
/// The controls that Tab comes to, in its order, disabled ones included; eight to a line.
QStringList tabOrderOf(const QWidget& form);
/// The sizes of the visible controls, and the columns and heights of lists and grids: what a window's layout decides.
QStringList shapeOf(const QWidget& form);
/// Where the visible controls are in the form, and their sizes; left out of a comparison where the letters are others.
QStringList placesOf(const QWidget& form);
/// What is painted of the visible controls, apart from those in them: the ground's colour, other colours that fill
/// lines or areas, and the ink's, the farthest from the ground; each with its box in the control and its number of
/// pixels. Compared with Qt 6.4 and DejaVu only.
QStringList paintOf(const QWidget& form);
/// Gives the program a desktop's colours, "light", "dark" or "stark", until pictures are compared.
void showColours(const QString& scheme);
/// How the controls work whatever they hold, as far as that isn't usual.
QStringList traitsOf(const QWidget& form);

} // namespace orlo::test
