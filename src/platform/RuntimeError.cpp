#include "platform/RuntimeError.h"

#include <QHash>

namespace orlo::platform
{

namespace
{
std::optional<RuntimeError>& pendingState()
{
    static std::optional<RuntimeError> state;
    return state;
}
} // namespace

RuntimeError::RuntimeError(int number, QString source, QString description)
    : m_number(number), m_source(source.isEmpty() ? QStringLiteral("ORLO") : std::move(source)),
      m_description(description.isEmpty() ? standardDescription(number) : std::move(description)),
      m_what(QStringLiteral("%1: %2").arg(m_number).arg(m_description).toUtf8())
{
}

QString standardDescription(int number)
{
    static const QHash<int, QString> texts{
        {InvalidProcedureCall, QStringLiteral("Invalid procedure call or argument")},
        {Overflow, QStringLiteral("Overflow")},
        {SubscriptOutOfRange, QStringLiteral("Subscript out of range")},
        {DivisionByZero, QStringLiteral("Division by zero")},
        {TypeMismatch, QStringLiteral("Type mismatch")},
        {FileNotFound, QStringLiteral("File not found")},
        {DiskFull, QStringLiteral("Disk full")},
        {DeviceUnavailable, QStringLiteral("Device unavailable")},
        {PermissionDenied, QStringLiteral("Permission denied")},
        {DiskNotReady, QStringLiteral("Disk not ready")},
        {PathFileAccess, QStringLiteral("Path/File access error")},
        {PathNotFound, QStringLiteral("Path not found")},
        {ObjectNotSet, QStringLiteral("Object variable or With block variable not set")},
        {InvalidUseOfNull, QStringLiteral("Invalid use of Null")},
        {ObjectAlreadyExists, QStringLiteral("The object already exists.")},
        {QueryAlreadyExists, QStringLiteral("The query already exists.")},
        {UpdateWithoutEdit, QStringLiteral("Update without AddNew or Edit.")},
        {NoCurrentRecord, QStringLiteral("No current record.")},
        {DuplicateKey, QStringLiteral("The change was not made because it would create duplicate values in the index "
                                      "or primary key.")},
        {DatabaseNotFound, QStringLiteral("Couldn't find the database file.")},
        {ReadOnlySet, QStringLiteral("Can't update. The record set is read-only.")},
        {ResourceExceeded, QStringLiteral("System resource exceeded.")},
        {DatabaseDamaged, QStringLiteral("Can't open the database. The file may be damaged.")},
        {CannotLockFile, QStringLiteral("Couldn't lock the file.")},
        {NullInPrimaryKey, QStringLiteral("An index or primary key can't contain a Null value.")},
        {UnknownName, QStringLiteral("The statement names a field that doesn't exist.")},
        {SyntaxError, QStringLiteral("Syntax error in the statement.")},
        {UnknownTable, QStringLiteral("The table or query can't be found.")},
        {FieldTooSmall, QStringLiteral("The field is too small to accept the amount of data you attempted to add.")},
        {FieldNotUpdatable, QStringLiteral("The field can't be updated.")},
        {RecordDeleted, QStringLiteral("The record is deleted.")},
        {ChangedByAnother, QStringLiteral("Another program has changed the record since it was read.")},
        {FieldNotFound, QStringLiteral("Item not found in this collection.")},
        {PrimaryKeyExists, QStringLiteral("The table already has a primary key.")},
        {NullInRequiredField, QStringLiteral("A required field can't contain a Null value.")},
        {ZeroLengthNotAllowed, QStringLiteral("The field can't be a zero-length text.")},
        {UnrecognisedFormat, QStringLiteral("Unrecognised database format. It isn't a pack's file, or its very "
                                            "beginning is damaged.")},
        {ObjectInvalid, QStringLiteral("Object invalid or no longer set.")},
        {WrongDataType, QStringLiteral("Data type conversion error.")},
    };
    return texts.value(number, QStringLiteral("Application-defined or object-defined error"));
}

namespace pendingError
{
void set(const RuntimeError& error)
{
    pendingState() = error;
}
void clear()
{
    pendingState().reset();
}
const std::optional<RuntimeError>& get()
{
    return pendingState();
}
int number()
{
    return pendingState() ? pendingState()->number() : 0;
}
} // namespace pendingError

} // namespace orlo::platform
