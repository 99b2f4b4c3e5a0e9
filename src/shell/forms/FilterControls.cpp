#include "shell/forms/FilterControls.h"

#include "widgets/ComboBox.h"
#include "widgets/OptionButton.h"

#include <QScopedValueRollback>

namespace orlo
{

namespace
{
const QString AllDens = QStringLiteral("<All>");
} // namespace

FilterControls::FilterControls(const Controls& controls) : m_controls(controls)
{
    m_controls.den.setText(AllDens);
}

PeopleFilter FilterControls::filter(const std::function<QString(const QString& den)>& denCriterion) const
{
    using View = PeopleFilter::View;
    View view = View::All;
    if (m_controls.active.isChecked())
        view = View::Active;
    else if (m_controls.inactive.isChecked())
        view = View::Inactive;
    return {.view = view,
            .denCriterion = namesDen() ? denCriterion(m_controls.den.text()) : QString(),
            .lastNameFirst = lastNameFirst()};
}

bool FilterControls::lastNameFirst() const
{
    return m_controls.lastNameFirst.isChecked();
}

bool FilterControls::namesDen() const
{
    const QString den = m_controls.den.text();
    return !den.isEmpty() && den != AllDens;
}

void FilterControls::setDens(const QStringList& dens)
{
    if (m_settingDens)
        return;
    const QScopedValueRollback setting(m_settingDens, true);
    widgets::ComboBox& list = m_controls.den;
    const QString kept = list.text();
    list.removeAll();
    for (const QString& den : dens)
        list.addItem(den);
    list.addItem(AllDens);
    if (kept.isEmpty())
        list.setListIndex(0);
    else
        list.setText(kept);
}

} // namespace orlo
