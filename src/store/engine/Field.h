#pragma once

#include <QString>

#include <memory>

namespace orlo::store
{

class Value;

/// Field types with their catalogue codes.
enum class FieldType : int { Boolean = 1, Integer = 3, Long = 4, Double = 7, Date = 8, Text = 10, Memo = 12 };

/// A field of a table or a record set; record sets leave required and allowZeroLength unset.
struct Field {
    QString name;
    FieldType type = FieldType::Text;
    int size = 0; ///< maximum characters of a Text field, 0 for no limit
    bool allowZeroLength = false;
    bool autoIncrement = false; ///< a counter that the engine numbers
    bool required = false;
    std::shared_ptr<const Value> defaultValue = {}; ///< null for Null
};

} // namespace orlo::store
