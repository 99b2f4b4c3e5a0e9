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

/// The controls that decide whom a people form lists: view, den and order. The den list ends with "<All>".
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

    /// The current filter; denCriterion is called if a den is named, with its text.
    [[nodiscard]] PeopleFilter filter(const std::function<QString(const QString& den)>& denCriterion) const;
    [[nodiscard]] bool lastNameFirst() const;
    /// True if the den's text is neither empty nor "<All>".
    [[nodiscard]] bool namesDen() const;
    /// Fills the den list and restores its text. That counts as a change, whose handlers may call this again; nested
    /// calls do nothing.
    void setDens(const QStringList& dens);

private:
    Controls m_controls;
    bool m_settingDens = false;
};

} // namespace orlo
