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

    void bindControls(QPushButton* cmdFind, QPushButton* cmdSelectAll, QPushButton* cmdCancel)
    {
        setDefaultButton(cmdFind);
        setCancelButton(cmdCancel);
        connect(cmdFind, &QPushButton::clicked, this, [this] {
            handOver(form());
            form().SetFind(true);
            unload();
        });
        connect(cmdSelectAll, &QPushButton::clicked, this, [this] {
            form().SetSelectAll(true);
            unload();
        });
        connect(cmdCancel, &QPushButton::clicked, this, [this] {
            form().SetFind(false);
            unload();
        });
    }

    /// Gives the form the criteria that were typed.
    virtual void handOver(F& form) = 0;

private:
    [[nodiscard]] static F& form() { return widgets::Instance<F>::get(); }
};

} // namespace orlo
