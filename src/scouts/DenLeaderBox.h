#pragma once

#include <QObject>

#include <cstdint>
#include <functional>

namespace orlo::store
{
class Value;
}

namespace orlo::widgets
{
class CheckBox;
}

namespace orlo
{

/// A parent's "Den Leader" box and the adult linked to the parent: checking the box by hand picks one.
///
/// Setting the box in code runs the same handler as the user's click. So the handler acts only while the box is armed:
/// from the time it gets the focus until the end of the next click.
class DenLeaderBox : public QObject
{
    Q_OBJECT

public:
    /// What the box needs from its form.
    struct Owner {
        std::function<void(bool)> enableSave;
        std::function<bool()> hasDen;
        /// Lets the user pick an adult; false for none. The result then goes to deliver.
        std::function<bool()> pick;
        std::function<void()> deliver;
    };

    DenLeaderBox(widgets::CheckBox* box, Owner owner);

    /// Shows a stored link. No link is a 1, which a save writes only if the user checks the box without a pick.
    void show(const store::Value& link);
    /// What a save writes: the link while the box is checked, otherwise Null.
    [[nodiscard]] store::Value value() const;
    /// Links the parent to an adult, 0 for none.
    void link(std::int16_t adult) { m_linked = adult; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void click();
    void pick();

    widgets::CheckBox* m_box;
    std::int16_t m_linked = 0;
    bool m_armed = false; // the next click is the user's
    Owner m_owner;
};

} // namespace orlo
