#include "scouts/DenLeaderBox.h"

#include "store/engine/Value.h"
#include "widgets/CheckBox.h"
#include "widgets/MessageBox.h"

#include <QFocusEvent>

namespace orlo
{

DenLeaderBox::DenLeaderBox(widgets::CheckBox* box, Owner owner) : QObject(box), m_box(box), m_owner(std::move(owner))
{
    box->installEventFilter(this);
    connect(box, &widgets::CheckBox::changed, this, &DenLeaderBox::click);
}

void DenLeaderBox::show(const store::Value& link)
{
    m_linked = link.isNull() ? std::int16_t{1} : link.toInt16();
    m_box->setChecked(!link.isNull());
}

store::Value DenLeaderBox::value() const
{
    return m_box->isChecked() ? store::Value(int{m_linked}) : store::Value();
}

bool DenLeaderBox::eventFilter(QObject* watched, QEvent* event)
{
    // Activating the window or closing a menu doesn't count as moving the focus.
    if (event->type() == QEvent::FocusIn)
        switch (static_cast<QFocusEvent*>(event)->reason()) {
        case Qt::ActiveWindowFocusReason:
        case Qt::PopupFocusReason:
        case Qt::MenuBarFocusReason:
            break;
        default:
            m_armed = true;
        }
    return QObject::eventFilter(watched, event);
}

void DenLeaderBox::click()
{
    m_owner.enableSave(true);
    if (m_armed) {
        if (m_box->isChecked())
            pick();
        else
            m_linked = 0;
    }
    m_armed = false;
}

// Clearing the box runs click() again within this one, which clears the link and disarms the box. So save is disabled
// after it, since it enables it, and the picked adult is delivered last, since it would be cleared.
void DenLeaderBox::pick()
{
    if (!m_owner.hasDen()) {
        widgets::message(QStringLiteral("This Scout record needs to be assinged to a den. \n"
                                        "Please assign the Scout to a Den and then retry."),
                         QStringLiteral("Assignement Error"));
        m_box->setChecked(false);
        return;
    }
    if (m_owner.pick())
        m_box->setChecked(true);
    else {
        m_box->setChecked(false);
        m_owner.enableSave(false);
    }
    m_owner.deliver();
}

} // namespace orlo
