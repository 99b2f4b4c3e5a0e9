#pragma once

#include <QString>

#include <string_view>

namespace orlo::store
{

/// compareText() for UTF-8, as the file holds texts. Bytes that are no UTF-8 compare by their own value.
[[nodiscard]] int compareUtf8(std::string_view a, std::string_view b);
/// matchesLike() for UTF-8.
[[nodiscard]] bool matchesLikeUtf8(std::string_view text, std::string_view pattern);

} // namespace orlo::store
