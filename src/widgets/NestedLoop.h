#pragma once

class QObject;

namespace orlo::widgets
{

/// An event loop within a handler that waits for a question, a dialog or a form; it lasts as long as the object. What
/// is closed meanwhile stays in memory until the handlers that may still use it have returned.
class NestedLoop
{
public:
    NestedLoop();
    ~NestedLoop();
    NestedLoop(const NestedLoop&) = delete;
    NestedLoop& operator=(const NestedLoop&) = delete;

    /// The number of nested loops running.
    [[nodiscard]] static int depth();
    /// Deletes the object once at most so many loops are running.
    static void deleteAtDepth(QObject& object, int depth);
};

} // namespace orlo::widgets
