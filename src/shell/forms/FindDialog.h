#pragma once

#include "widgets/Form.h"

namespace orlo
{

/// Asks which records a form is to walk and hands the answer to it, by its SetFind and SetSelectAll: what the find
/// dialogs have in common.
template <class F>
class FindDialog : public widgets::Form
{
protected:
    FindDialog() : Form(widgets::FormKind::Window) {}

    /// Connects the buttons that every find dialog has.
    void bindControls()
    {
        auto& find = control<QPushButton>("cmdFind");
        auto& cancel = control<QPushButton>("cmdCancel");
        setDefaultButton(&find);
        setCancelButton(&cancel);
        connect(&find, &QPushButton::clicked, this, [this] {
            handOver(form());
            answer([] { form().SetFind(true); });
        });
        connect(&control<QPushButton>("cmdSelectAll"), &QPushButton::clicked, this,
                [this] { answer([] { form().SetSelectAll(true); }); });
        connect(&cancel, &QPushButton::clicked, this, [this] { answer([] { form().SetFind(false); }); });
    }

    /// Gives the form the criteria that were typed.
    virtual void handOver(F& form) = 0;

    /// Closing the window cancels; the answer of the time before doesn't count again.
    void closeEvent(QCloseEvent* event) override
    {
        if (!m_answered)
            form().SetFind(false);
        Form::closeEvent(event);
    }

private:
    [[nodiscard]] static F& form() { return widgets::Instance<F>::get(); }

    template <class Answer>
    void answer(const Answer& tell)
    {
        m_answered = true;
        tell();
        unload();
    }

    bool m_answered = false;
};

} // namespace orlo
