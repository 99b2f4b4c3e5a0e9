#pragma once

#include "shell/forms/PeopleFilter.h"

#include <QStringList>

#include <functional>

namespace orlo::widgets
{
class ComboBox;
class OptionButton;
} // namespace orlo::widgets

namespace orlo
{

/// The controls of a people form that say whom its list shows: view, den and order. The den's list ends in "<All>".
class FilterControls
{
public:
    struct Controls {
        widgets::OptionButton& active;
        widgets::OptionButton& inactive;
        widgets::OptionButton& lastNameFirst;
        widgets::ComboBox& den;
    };
    explicit FilterControls(const Controls& controls);

    /// What is set; the criterion is asked for where a den is named, by its text.
    [[nodiscard]] PeopleFilter filter(const std::function<QString(const QString& den)>& denCriterion) const;
    [[nodiscard]] bool lastNameFirst() const;
    /// True if the den's text is neither empty nor "<All>".
    [[nodiscard]] bool namesDen() const;
    /// Fills the den's list and gives it its text back. That counts as a change, whose handlers may want to fill the list
    /// again; such a call does nothing.
    void setDens(const QStringList& dens);

private:
    Controls m_controls;
    bool m_settingDens = false;
};

} // namespace orlo
