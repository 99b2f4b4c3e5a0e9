#include "store/engine/Conversion.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "store/engine/Value.h"

#include <algorithm>
#include <cmath>

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

constexpr double MillisecondsADay = 86400000.0;
constexpr double FirstSerial = -657434; // 1/1/100
constexpr double LastSerial = 2958465;  // 12/31/9999

qint64 dayZero()
{
    static const qint64 day = QDate(1899, 12, 30).toJulianDay();
    return day;
}

[[noreturn]] void raiseOfField(int number)
{
    throw RuntimeError(number, QStringLiteral("Field"));
}

double numberIn(const Value& value)
{
    if (const QString* text = std::get_if<QString>(&value.data())) {
        const auto read = platform::readNumber(*text);
        return read ? *read : throw RuntimeError(platform::WrongDataType, QStringLiteral("Field"));
    }
    return value.toDouble();
}

bool truth(const Value& value)
{
    if (const QString* text = std::get_if<QString>(&value.data())) {
        for (const auto* word : {"true", "yes"})
            if (text->compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
                return true;
        for (const auto* word : {"false", "no"})
            if (text->compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
                return false;
    }
    return value.isBool() ? value.toBool() : numberIn(value) != 0;
}

DateTime dateIn(const Value& value)
{
    try {
        return value.toDate();
    } catch (const RuntimeError&) {
        raiseOfField(platform::WrongDataType);
    }
}

} // namespace

Value converted(const Value& value, const Field& field)
{
    if (value.isNull())
        return value;
    switch (field.type) {
    case FieldType::Boolean:
        return truth(value);
    case FieldType::Integer:
        return qint64(platform::toInt16(numberIn(value)));
    case FieldType::Long:
        return qint64(platform::toInt32(numberIn(value)));
    case FieldType::Double:
        if (const double number = numberIn(value); std::isfinite(number))
            return number;
        raiseOfField(platform::Overflow);
    case FieldType::Date:
        return dateIn(value);
    case FieldType::Text:
    case FieldType::Memo:
        break;
    }
    QString text = value.toText();
    if (field.type == FieldType::Text && field.size > 0 && text.size() > field.size)
        raiseOfField(platform::FieldTooSmall);
    return text;
}

double serialOf(const DateTime& date)
{
    const auto day = static_cast<double>(date.date.toJulianDay() - dayZero());
    const double time = date.time.msecsSinceStartOfDay() / MillisecondsADay;
    return day < 0 ? day - time : day + time;
}

std::optional<DateTime> dateOfSerial(double number)
{
    const double day = std::trunc(number);
    if (!(day >= FirstSerial && day <= LastSerial))
        return std::nullopt;
    auto seconds = std::llround(std::abs(number - day) * MillisecondsADay / 1000);
    if (day == LastSerial)
        seconds = std::min(seconds, 86399LL);
    return DateTime{QDate::fromJulianDay(dayZero() + static_cast<qint64>(day) + seconds / 86400),
                    QTime::fromMSecsSinceStartOfDay(static_cast<int>(seconds % 86400) * 1000)};
}

Field declaredField(QByteArrayView declaration)
{
    struct Known {
        const char* name;
        FieldType type;
    };
    static constexpr Known Types[] = {
        {"BOOLEAN", FieldType::Boolean}, {"SMALLINT", FieldType::Integer}, {"INTEGER", FieldType::Long},
        {"INT", FieldType::Long},        {"BIGINT", FieldType::Double},    {"DOUBLE", FieldType::Double},
        {"REAL", FieldType::Double},     {"FLOAT", FieldType::Double},     {"NUMERIC", FieldType::Double},
        {"DATE", FieldType::Date},       {"DATETIME", FieldType::Date},    {"LONGTEXT", FieldType::Memo},
    };
    const qsizetype bracket = declaration.indexOf('(');
    const QByteArrayView name = declaration.first(bracket < 0 ? declaration.size() : bracket).trimmed();
    Field field;
    field.type = FieldType::Memo;
    for (const Known& known : Types)
        if (qstrnicmp(name.data(), name.size(), known.name) == 0)
            field.type = known.type;
    if (field.type == FieldType::Memo && bracket > 0) {
        field.type = FieldType::Text;
        field.size = declaration.sliced(bracket + 1).chopped(1).toInt();
    }
    return field;
}

QByteArray declaration(const Field& field)
{
    switch (field.type) {
    case FieldType::Boolean:
        return QByteArrayLiteral("BOOLEAN");
    case FieldType::Integer:
        return field.autoIncrement ? QByteArrayLiteral("INTEGER") : QByteArrayLiteral("SMALLINT");
    case FieldType::Long:
        return field.autoIncrement ? QByteArrayLiteral("INTEGER") : QByteArrayLiteral("INT");
    case FieldType::Double:
        return QByteArrayLiteral("DOUBLE");
    case FieldType::Date:
        return QByteArrayLiteral("DATE");
    case FieldType::Text:
        return "TEXT(" + QByteArray::number(field.size > 0 ? field.size : 255) + ')';
    case FieldType::Memo:
        break;
    }
    return QByteArrayLiteral("LONGTEXT");
}

} // namespace orlo::store
