#pragma once

#include <QDialog>
#include <QPointer>

namespace orlo::reporting
{

/// A dialog of a window that may be closed while the dialog is up, and then takes it along: so it stands on the heap.
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
    /// Runs the dialog; true where it was accepted and is still there.
    [[nodiscard]] bool isAccepted() const { return m_dialog->exec() == QDialog::Accepted && m_dialog; }

private:
    QPointer<Dialog> m_dialog;
};

} // namespace orlo::reporting
