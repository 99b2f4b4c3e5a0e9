#pragma once

#include "widgets/Form.h"

namespace orlo
{

/// What a find dialog was answered with, for the form that asked.
class FindRequest
{
public:
    /// The dialog ended with "find", or was cancelled.
    void SetFind(bool find)
    {
        mFindRequested = find;
        mSelectAllRequested = false;
    }
    /// The dialog ended with "select all".
    void SetSelectAll(bool selectAll)
    {
        mSelectAllRequested = selectAll;
        mFindRequested = false;
    }

protected:
    bool mFindRequested = false;      ///< the dialog's last answer was "find"
    bool mSelectAllRequested = false; ///< the dialog's last answer was "select all"
};

/// Asks which records a form is to walk and hands the answer to it, by its SetFind and SetSelectAll: what the find
/// dialogs have in common.
template <class F>
class FindDialog : public widgets::Form
{
protected:
    FindDialog() : Form(widgets::FormKind::Window) {}

    void bindControls(QPushButton* cmdFind, QPushButton* cmdSelectAll, QPushButton* cmdCancel)
    {
        setDefaultButton(cmdFind);
        setCancelButton(cmdCancel);
        connect(cmdFind, &QPushButton::clicked, this, [this] {
            handOver(form());
            answer([] { form().SetFind(true); });
        });
        connect(cmdSelectAll, &QPushButton::clicked, this, [this] { answer([] { form().SetSelectAll(true); }); });
        connect(cmdCancel, &QPushButton::clicked, this, [this] { answer([] { form().SetFind(false); }); });
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
