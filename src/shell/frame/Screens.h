#pragma once

#include <QString>

#include <vector>

namespace orlo
{

namespace widgets
{
class Form;
}

/// Whether backup and restore unload the screen before they close the database.
enum class Unloads { No, Yes };

/// How a screen opens: beside others, or blocking the whole program until it closes.
enum class Opens { Beside, Waiting };

/// A screen's menu command; none for a screen that only other screens open.
struct ScreenCommand {
    const char* menu = "";
    int place = 0; ///< position among the menu's screens; submenus come after them
    const char* name = "";
    const char* text = ""; ///< with its access key
};

/// A screen of the program.
struct ListedScreen {
    QString form; ///< the form's name
    Unloads unloads;
    ScreenCommand command;
    const char* picture; ///< the name of its picture in the tour
    void (*open)();
    void (*unload)(); ///< loads the form first if necessary
    widgets::Form& (*get)();
    widgets::Form* (*loaded)(); ///< null if it isn't loaded
};

/// All screens except the main window and the splash. Those that backup and restore unload are in the order of
/// unloading.
[[nodiscard]] const std::vector<ListedScreen>& screens();

/// The screen with this form's name; the process ends if there is none.
[[nodiscard]] const ListedScreen& screenOf(const QString& form);

} // namespace orlo
