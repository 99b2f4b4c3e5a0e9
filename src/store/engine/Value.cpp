#include "store/engine/Value.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "store/engine/Conversion.h"

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

[[noreturn]] void raiseOfValue(int number)
{
    throw RuntimeError(number, QStringLiteral("Value"));
}

struct ToText {
    QString operator()(std::monostate) const { raiseOfValue(platform::InvalidUseOfNull); }
    QString operator()(bool value) const { return value ? QStringLiteral("True") : QStringLiteral("False"); }
    QString operator()(qint64 value) const { return QString::number(value); }
    QString operator()(double value) const { return platform::numberText(value); }
    QString operator()(const QString& value) const { return value; }
    QString operator()(const DateTime& value) const { return platform::shortDate(value); }
};

struct ToDouble {
    double operator()(std::monostate) const { raiseOfValue(platform::InvalidUseOfNull); }
    double operator()(bool value) const { return value ? -1 : 0; }
    double operator()(qint64 value) const { return static_cast<double>(value); }
    double operator()(double value) const { return value; }
    double operator()(const QString& value) const
    {
        if (const auto number = platform::readNumber(value))
            return *number;
        raiseOfValue(platform::TypeMismatch);
    }
    double operator()(const DateTime& value) const { return serialOf(value); }
};

struct ToDate {
    DateTime operator()(std::monostate) const { raiseOfValue(platform::InvalidUseOfNull); }
    DateTime operator()(bool) const { raiseOfValue(platform::TypeMismatch); }
    DateTime operator()(qint64 value) const { return (*this)(static_cast<double>(value)); }
    DateTime operator()(double value) const
    {
        if (const auto date = dateOfSerial(value))
            return *date;
        raiseOfValue(platform::TypeMismatch);
    }
    DateTime operator()(const QString& value) const { return platform::toDate(value); }
    DateTime operator()(const DateTime& value) const { return value; }
};

} // namespace

bool Value::isEmpty() const
{
    const QString* text = std::get_if<QString>(&m_data);
    return isNull() || (text && text->isEmpty());
}

QString Value::toText() const
{
    return std::visit(ToText{}, m_data);
}

std::int16_t Value::toInt16() const
{
    return platform::toInt16(toDouble());
}

std::int32_t Value::toInt32() const
{
    return platform::toInt32(toDouble());
}

double Value::toDouble() const
{
    return std::visit(ToDouble{}, m_data);
}

bool Value::toBool() const
{
    return toDouble() != 0;
}

DateTime Value::toDate() const
{
    return std::visit(ToDate{}, m_data);
}

} // namespace orlo::store
