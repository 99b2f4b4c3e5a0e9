#pragma once

#include <QString>

#include <vector>

namespace orlo
{

namespace widgets
{
class Form;
}

/// Whether backup and restore unload a screen before they close the database.
enum class Unloads { No, Yes };

/// How a screen opens: beside the others, or holding the input of the whole program until it closes.
enum class Opens { Beside, Waiting };

/// The menu command of a screen; none for one that other screens open.
struct ScreenCommand {
    const char* menu = "";
    int place = 0; ///< among the screens of that menu; a submenu stands below them
    const char* name = "";
    const char* text = ""; ///< with the access letter
};

/// A screen of the program.
struct ListedScreen {
    QString form; ///< its name
    Unloads unloads;
    ScreenCommand command;
    const char* picture; ///< the name of its picture in the tour
    void (*open)();
    void (*unload)(); ///< loads the form first where it isn't loaded
    widgets::Form& (*get)();
};

/// All screens but the frame and its splash. Those that backup and restore unload stand in the order of their
/// unloading.
[[nodiscard]] const std::vector<ListedScreen>& screens();

/// The screen of a form's name; the process ends without one.
[[nodiscard]] const ListedScreen& screenOf(const QString& form);

} // namespace orlo
