#pragma once

#include "platform/DateTime.h"

#include <QString>

#include <cstdint>
#include <variant>

namespace orlo::store
{

using platform::DateTime;

/// A field's value. Conversions work as assignment to a variable of the type does.
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
    Value(const void*) = delete; // pointers would convert to bool

    [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(m_data); }
    [[nodiscard]] bool isText() const { return std::holds_alternative<QString>(m_data); }
    [[nodiscard]] bool isDate() const { return std::holds_alternative<DateTime>(m_data); }
    [[nodiscard]] bool isBool() const { return std::holds_alternative<bool>(m_data); }
    [[nodiscard]] bool isNumber() const
    {
        return std::holds_alternative<qint64>(m_data) || std::holds_alternative<double>(m_data);
    }
    /// True for Null and "".
    [[nodiscard]] bool isEmpty() const;

    /// Dates in short form, yes/no as "True" or "False". Raises 94 for Null.
    [[nodiscard]] QString toText() const;
    /// "" for Null.
    [[nodiscard]] QString textOrEmpty() const { return isNull() ? QString() : toText(); }
    /// Raise 94 for Null, 13 for what doesn't read as a number, 6 outside the range.
    [[nodiscard]] std::int16_t toInt16() const;
    [[nodiscard]] std::int32_t toInt32() const;
    [[nodiscard]] double toDouble() const;
    /// Whether it isn't 0. Raises 94 for Null, 13 for what doesn't read as a number.
    [[nodiscard]] bool toBool() const;
    /// Raises 94 for Null, 13 for what doesn't read as a date.
    [[nodiscard]] DateTime toDate() const;

    /// Equal in kind and content; Null equals Null. Texts compare by code unit, unlike platform::compareText().
    friend bool operator==(const Value&, const Value&) = default;

    using Data = std::variant<std::monostate, bool, qint64, double, QString, DateTime>;
    [[nodiscard]] const Data& data() const { return m_data; }

private:
    Data m_data;
};

} // namespace orlo::store
