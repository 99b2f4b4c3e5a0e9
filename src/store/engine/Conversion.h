#pragma once

#include "store/engine/Database.h"

namespace orlo::store
{

/// Converts as assignment to the field does; Null stays Null. Raises 3421, 6 or 3163.
[[nodiscard]] Value converted(const Value& value, const FieldInfo& field);
/// The field that a declared column type stands for: its type and size.
[[nodiscard]] FieldInfo declaredField(QByteArrayView declaration);
/// The declared column type of a field.
[[nodiscard]] QByteArray declaration(const Field& field);

} // namespace orlo::store
