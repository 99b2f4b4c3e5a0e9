#pragma once

#include "widgets/OptionButton.h"

#include <array>

namespace orlo
{

/// One of the nine types of awards: its option button and its text in the database.
struct InsigniaType {
    widgets::OptionButton* option;
    QString text;
};

/// The types, in the order in which every routine tests them. The options' captions are the stored texts.
template <class Ui>
[[nodiscard]] std::array<InsigniaType, 9> insigniaTypes(const Ui& ui)
{
    const auto type = [](widgets::OptionButton* option) { return InsigniaType{option, option->text()}; };
    return {type(ui.optSegment), type(ui.optBeltLoop), type(ui.optPin),
            type(ui.optPatch),   type(ui.optTrophy),   type(ui.optLetter),
            type(ui.optMedal),   type(ui.optActBadge), type(ui.optRnkAdvancement)};
}

/// The stored text of the first type that is set, "" for none.
[[nodiscard]] QString chosenType(const std::array<InsigniaType, 9>& types);

} // namespace orlo
