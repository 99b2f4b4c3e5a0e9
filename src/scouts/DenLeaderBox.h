#pragma once

#include <QObject>

#include <cstdint>
#include <functional>

namespace orlo::widgets
{
class CheckBox;
}

namespace orlo
{

/// A parent's "Den Leader" box: the user's check of it picks the adult whom the parent is linked to.
///
/// Code that sets the box runs the same handler as the user's click. So the handler only acts while the box is armed,
/// from the moment when the focus comes to it until the end of the next click.
class DenLeaderBox : public QObject
{
    Q_OBJECT

public:
    /// What the box needs of its form.
    struct Owner {
        std::function<void(bool)> enableSave;
        std::function<bool()> hasDen;
        /// Lets the user pick an adult; false for none. Whatever came of it then goes to deliver.
        std::function<bool()> pick;
        std::function<void()> deliver;
    };

    /// The box clears the link of its own when the user clears it; `armed` says whether it acts.
    DenLeaderBox(widgets::CheckBox* box, std::int16_t& ownSID, bool& armed, Owner owner);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void click();
    void pick();

    widgets::CheckBox* m_box;
    std::int16_t& m_ownSID;
    bool& m_armed;
    Owner m_owner;
};

} // namespace orlo
