#pragma once

#include <QDialog>
#include <QPointer>

namespace orlo::reporting
{

/// A dialog on the heap, because its window may be closed and destroy it while it is open.
template <class Dialog>
class Guarded
{
public:
    template <class... Arguments>
    explicit Guarded(Arguments&&... arguments) : m_dialog(new Dialog(std::forward<Arguments>(arguments)...))
    {
    }
    ~Guarded() { delete m_dialog.data(); }
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;

    Dialog* operator->() const { return m_dialog; }
    /// Runs the dialog; true if it was accepted and still exists.
    [[nodiscard]] bool isAccepted() const { return m_dialog->exec() == QDialog::Accepted && m_dialog; }

private:
    QPointer<Dialog> m_dialog;
};

} // namespace orlo::reporting
