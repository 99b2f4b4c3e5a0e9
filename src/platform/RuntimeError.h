#pragma once

#include <QString>

#include <exception>
#include <optional>

namespace orlo::platform
{

/// The numbers of the failures that the program raises or checks for.
enum ErrorNumber : int {
    InvalidProcedureCall = 5,
    Overflow = 6,
    SubscriptOutOfRange = 9,
    DivisionByZero = 11,
    TypeMismatch = 13,
    FileNotFound = 53,
    DiskFull = 61,
    DeviceUnavailable = 68,
    PermissionDenied = 70,
    DiskNotReady = 71,
    PathFileAccess = 75,
    PathNotFound = 76,
    ObjectNotSet = 91,
    InvalidUseOfNull = 94,
    ObjectAlreadyExists = 3010,
    QueryAlreadyExists = 3012,
    UpdateWithoutEdit = 3020,
    NoCurrentRecord = 3021,
    DuplicateKey = 3022,
    DatabaseNotFound = 3024,
    ReadOnlySet = 3027,
    ResourceExceeded = 3035,
    DatabaseDamaged = 3049,
    CannotLockFile = 3050,
    NullInPrimaryKey = 3058,
    UnknownName = 3061,
    SyntaxError = 3075,
    UnknownTable = 3078,
    FieldTooSmall = 3163,
    FieldNotUpdatable = 3164,
    RecordDeleted = 3167,
    ChangedByAnother = 3197,
    FieldNotFound = 3265,
    PrimaryKeyExists = 3283,
    NullInRequiredField = 3314,
    ZeroLengthNotAllowed = 3315,
    UnrecognisedFormat = 3343,
    ObjectInvalid = 3420,
    WrongDataType = 3421,
};

/// A failure of the program or of a service: a number, its source and a description. If one leaves an event handler,
/// the process ends with a report.
class RuntimeError : public std::exception
{
public:
    /// An empty description is replaced by the number's standard text.
    explicit RuntimeError(int number, QString source = QString(), QString description = QString());

    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] const QString& source() const { return m_source; }
    [[nodiscard]] const QString& description() const { return m_description; }
    [[nodiscard]] const char* what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_source;
    QString m_description;
    QByteArray m_what;
};

/// The standard text of a failure number; a general one if the number has none.
[[nodiscard]] QString standardDescription(int number);

/// The failure that a routine caught and checks for at its end. At most one is pending.
namespace pendingError
{
void set(const RuntimeError& error);
void clear();
[[nodiscard]] const std::optional<RuntimeError>& get();
/// The pending failure's number; 0 if none is pending.
[[nodiscard]] int number();
} // namespace pendingError

} // namespace orlo::platform
