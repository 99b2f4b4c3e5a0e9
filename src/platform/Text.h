#pragma once

#include <QString>

#include <string_view>

namespace orlo::platform
{

/// Compares two texts as the engine does everywhere: without regard to case, beyond ASCII too, accented letters beside
/// their plain ones. Texts that only their accents tell apart aren't equal.
[[nodiscard]] int compareText(QStringView a, QStringView b);
/// A key to sort many texts by: keys compare by code unit as compareText() compares their texts. Only texts that are
/// the same once their case is folded share one.
[[nodiscard]] QString sortKey(QStringView text);
/// True for two names of one field, table or index, whatever their case.
[[nodiscard]] bool sameName(QStringView a, QStringView b);
/// True if the text matches the pattern of Like: '*', '?', '#' (a digit), '[a-z]', '[!a-z]', without regard to case.
[[nodiscard]] bool matchesLike(QStringView text, QStringView pattern);
/// compareText() for UTF-8, as the file holds texts. Bytes that are no UTF-8 compare by their own value.
[[nodiscard]] int compareUtf8(std::string_view a, std::string_view b);
/// matchesLike() for UTF-8.
[[nodiscard]] bool matchesLikeUtf8(std::string_view text, std::string_view pattern);

} // namespace orlo::platform
