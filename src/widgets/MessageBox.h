#pragma once

#include <QStringList>

namespace orlo::widgets
{

/// Shows a message with an OK button and waits. An empty title means the program's title.
void message(const QString& text, const QString& title = QString());
/// The same with a warning sign.
void warn(const QString& text, const QString& title);

/// The button that Enter presses.
enum class Preset { Yes, No };
/// What Escape and the close box do: No, or nothing if No would lose something, too.
enum class OnEscape { IsNo, DoesNothing };

/// Asks with Yes and No; true for Yes.
[[nodiscard]] bool ask(const QString& text, const QString& title, Preset preset = Preset::Yes,
                       OnEscape onEscape = OnEscape::IsNo);

/// Joins the lines of a message.
[[nodiscard]] QString lines(const QStringList& texts);

/// The busy cursor for the whole program, while the object lives.
class BusyPointer
{
public:
    BusyPointer();
    ~BusyPointer();
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;
};

} // namespace orlo::widgets
