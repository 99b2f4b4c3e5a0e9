#pragma once

#include <QPoint>
#include <QString>

#include <functional>
#include <optional>

namespace orlo::test
{

/// Runs a script against the program with the X server's mouse and keyboard while the program's event loop runs.
/// Returns an empty text, or the word that failed and why. Whatever was left open is closed.
///
/// A script is a row of words. Each word waits until its control is visible and the program has received and handled
/// the events. After each, the focus must be on something visible. In texts an underscore stands for a blank.
///
///     mnuScouts       opens a menu command through the menus  cmdSave        clicks a control; 2:name twice
///     lbScouts[1]     clicks a row of a list or of a box's open list, a cell [2,1] of a grid, a row's header [2,-1]
///     tab:Note        clicks a page's tab                     yes no ok      clicks that button of the message box
///     up:name         turns the wheel over a control; down:name
///     close           closes the active window by its frame
///     Tab Alt+s F4    presses keys, by their X names          Escape~        holds a key until it has come ten times
///     Alt+c,n/80      strikes keys 80 ms apart, and clicks named controls, without waiting for the program
///     'text           types the text                          @name          asserts that the control has the focus
///     ?text           asserts that a box's text begins so;    !              that no box and no menu is open
///     name=text       asserts what a control shows: a button "live" or "grey", a check box or option "on" or "off", a
///                     list or grid its current row, tabs the title of the current one, anything else its text
[[nodiscard]] QString runHands(const QString& script);

/// Maximises the frame; false if it doesn't become active.
[[nodiscard]] bool showFrame();
/// Copies the layouts and the report files into the application's folder.
void copyFiles();

/// Runs the work in a thread of its own while the program's event loop runs. Returns an empty text, or the failure's
/// text. Whatever was left open is closed.
[[nodiscard]] QString atTheScreen(const std::function<void()>& work);
/// Where on the screen to click for a script's word; nothing as long as that isn't visible.
[[nodiscard]] std::optional<QPoint> placeOf(const QString& word);
/// Waits until a window of the program has the keyboard focus; raises std::runtime_error if none gets it.
void awaitKeys();

} // namespace orlo::test
