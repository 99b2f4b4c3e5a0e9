#pragma once

#include <QPoint>
#include <QString>

#include <functional>
#include <optional>

namespace orlo::test
{

/// Does on the running program what a script says, with the mouse and the keyboard of the X server, while the program's
/// event loop runs; empty, or what went otherwise at which word. Whatever was left open is closed.
///
/// A script is a row of words. A word waits until what it works on can be seen and the program has got the events and
/// done its work. After each the focus must be on something that can be seen. In texts an underscore stands for a
/// blank.
///
///     mnuScouts       opens a menu command by the menus      cmdSave         clicks a control; 2:name twice
///     lbScouts[1]     clicks a row of a list or of a box's open list, a cell [2,1] of a grid, a row of it by its head
///     [2,-1] tab:Note        clicks a page's tab                    yes no ok       clicks that button of the message
///     box up:name         turns the wheel over a control; down:name   close      closes the active window by its frame
///     Tab Alt+s F4    presses keys, as X names them          Escape~         holds a key until it came ten times
///     Alt+c,n/80      strikes keys 80 ms apart, and clicks named controls, without waiting for the program
///     'text           types                                  @name           asks whether the focus is there
///     ?text           asks whether a box says that, from its beginning on;   ! that no box does and no menu is
///                     open
///     name=text       asks what a control shows: a button "live" or "grey", a check box or option "on" or "off", a
///                     list or grid its current row, pages the title of the current one, anything its text
[[nodiscard]] QString runHands(const QString& script);

/// Shows the frame as large as the screen; false if it doesn't become active.
[[nodiscard]] bool showFrame();
/// Copies the layouts and the report files to the application's folder.
void copyFiles();

/// Does the work in a thread of its own while the program's event loop runs; empty, or the text of the failure that it
/// raised. Whatever was left open is closed.
[[nodiscard]] QString atTheScreen(const std::function<void()>& work);
/// Where on the screen to click for a word of a script; nowhere as long as that can't be seen.
[[nodiscard]] std::optional<QPoint> placeOf(const QString& word);
/// Returns when a window of the program takes the keys; raises std::runtime_error if none does.
void awaitKeys();

} // namespace orlo::test
