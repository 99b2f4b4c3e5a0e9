#pragma once

#include <QStringList>

namespace orlo::widgets
{

/// Shows a message with an OK button and waits for it. An empty title becomes the program's title.
void message(const QString& text, const QString& title = QString());
/// The same with an exclamation sign.
void warn(const QString& text, const QString& title);

/// The button of a question that Enter presses.
enum class Preset { Yes, No };
/// What Escape and the close box of a question do: they mean No, or nothing where No would lose something, too.
enum class OnEscape { IsNo, DoesNothing };

/// Asks with Yes and No; true for Yes.
[[nodiscard]] bool ask(const QString& text, const QString& title, Preset preset = Preset::Yes,
                       OnEscape onEscape = OnEscape::IsNo);

/// The lines of a message as one text.
[[nodiscard]] QString lines(const QStringList& texts);

/// The busy mouse pointer of the whole program, for as long as the object lives.
class BusyPointer
{
public:
    BusyPointer();
    ~BusyPointer();
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;
};

} // namespace orlo::widgets
