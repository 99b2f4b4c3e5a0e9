#pragma once

#include "widgets/Form.h"

namespace orlo
{

/// Base of the find dialogs: asks which records a form should walk, and answers through its SetFind and SetSelectAll.
template <class F>
class FindDialog : public widgets::Form
{
protected:
    FindDialog() : Form(widgets::FormKind::Window) {}

    /// Connects the buttons of every find dialog.
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

    /// Passes the typed criteria to the form.
    virtual void handOver(F& form) = 0;

    /// Closing the window cancels, so that the previous answer doesn't count again.
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
