#pragma once

#include "platform/DateTime.h"

#include <QString>

#include <cstdint>
#include <variant>

namespace orlo::store
{

using platform::DateTime;

/// What a field holds: Null, a yes/no, a whole number, a number, a text or a date. Reading converts as assignment to a
/// variable of that type does; Null converts to nothing but text comparison.
class Value
{
public:
    Value() = default; // Null
    Value(bool value) : m_data(value) {}
    Value(int value) : m_data(qint64(value)) {}
    Value(qint64 value) : m_data(value) {}
    Value(double value) : m_data(value) {}
    Value(QString value) : m_data(std::move(value)) {}
    Value(const char16_t* value) : m_data(QString::fromUtf16(value)) {}
    Value(DateTime value) : m_data(value) {}
    Value(QDate value) : m_data(DateTime{value}) {}
    Value(const void*) = delete; // no pointer is a yes/no

    [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(m_data); }
    [[nodiscard]] bool isText() const { return std::holds_alternative<QString>(m_data); }
    [[nodiscard]] bool isDate() const { return std::holds_alternative<DateTime>(m_data); }
    [[nodiscard]] bool isBool() const { return std::holds_alternative<bool>(m_data); }
    [[nodiscard]] bool isNumber() const
    {
        return std::holds_alternative<qint64>(m_data) || std::holds_alternative<double>(m_data);
    }
    /// True for Null and for "": the test of "a field that may be empty".
    [[nodiscard]] bool isEmpty() const;

    /// The value as text: dates in the short form, yes/no as "True" or "False". Raises 94 for Null.
    [[nodiscard]] QString toText() const;
    /// As toText(), with "" for Null.
    [[nodiscard]] QString textOrEmpty() const;
    /// Raise 94 for Null, 13 for what doesn't read as a number, 6 outside the range.
    [[nodiscard]] std::int16_t toInt16() const;
    [[nodiscard]] std::int32_t toInt32() const;
    [[nodiscard]] double toDouble() const;
    /// Raises 94 for Null, 13 for what is neither yes/no, number nor "True"/"False".
    [[nodiscard]] bool toBool() const;
    /// Raises 94 for Null, 13 for what doesn't read as a date.
    [[nodiscard]] DateTime toDate() const;

    /// The same kind and content; Null equals Null. Text compares by code unit here; compareText()
    /// has the engine's way.
    friend bool operator==(const Value&, const Value&) = default;

    using Data = std::variant<std::monostate, bool, qint64, double, QString, DateTime>;
    [[nodiscard]] const Data& data() const { return m_data; }

private:
    Data m_data;
};

/// Field types with their catalogue codes.
enum class FieldType : int { Boolean = 1, Integer = 3, Long = 4, Double = 7, Date = 8, Text = 10, Memo = 12 };

/// One column of a record set.
struct FieldInfo {
    QString name;
    FieldType type = FieldType::Text;
    int size = 0;         ///< most characters of a Text field, 0 for none stated
    bool counter = false; ///< numbered by the engine
};

} // namespace orlo::store
