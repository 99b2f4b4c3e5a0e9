#pragma once

class QObject;

namespace orlo::widgets
{

/// An event loop that runs inside a handler, for a question, a dialog or a form that is waited for, and lasts as long
/// as the object. What is closed meanwhile stays in memory until the handlers that may still use it have returned.
class NestedLoop
{
public:
    NestedLoop();
    ~NestedLoop();
    NestedLoop(const NestedLoop&) = delete;
    NestedLoop& operator=(const NestedLoop&) = delete;

    /// How many run now, one inside the other.
    [[nodiscard]] static int depth();
    /// Deletes the object once no more than so many run.
    static void deleteAtDepth(QObject& object, int depth);
};

} // namespace orlo::widgets
