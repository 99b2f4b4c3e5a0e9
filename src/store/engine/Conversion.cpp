#include "store/engine/Conversion.h"

#include "platform/RuntimeError.h"

namespace orlo::store
{

using platform::RuntimeError;

namespace
{

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

Value converted(const Value& value, const FieldInfo& field)
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
        return numberIn(value);
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

FieldInfo declaredField(QByteArrayView declaration)
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
    FieldInfo field;
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
