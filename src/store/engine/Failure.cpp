#include "store/engine/Failure.h"

#include "platform/RuntimeError.h"

#include <sqlite3.h>

namespace orlo::store
{

namespace
{

// Checks are named "<field> <rule>".
int checkNumber(const QString& words)
{
    if (words.endsWith(QLatin1String(" zero length")))
        return platform::ZeroLengthNotAllowed;
    if (words.endsWith(QLatin1String(" size")))
        return platform::FieldTooSmall;
    if (words.endsWith(QLatin1String(" range")))
        return platform::Overflow;
    return platform::WrongDataType;
}

// Whether the field at the end of "... failed: <table>.<field>" belongs to the primary key.
bool isKeyField(sqlite3* db, const QString& words)
{
    const QString named = words.section(QStringLiteral("failed: "), 1);
    const QByteArray table = named.section(u'.', 0, -2).toUtf8();
    const QByteArray field = named.section(u'.', -1).toUtf8();
    int key = 0;
    sqlite3_table_column_metadata(db, "main", table.constData(), field.constData(), nullptr, nullptr, nullptr, &key,
                                  nullptr);
    return key != 0;
}

int constraintNumber(sqlite3* db, int code, const QString& words)
{
    switch (code) {
    case SQLITE_CONSTRAINT_CHECK:
        return checkNumber(words);
    case SQLITE_CONSTRAINT_NOTNULL:
        return isKeyField(db, words) ? platform::NullInPrimaryKey : platform::NullInRequiredField;
    case SQLITE_CONSTRAINT_DATATYPE:
        return platform::WrongDataType;
    default:
        return platform::DuplicateKey;
    }
}

// SQLite has a single code for these, so its message tells.
int statementNumber(const QString& words, bool preparing)
{
    if (words.startsWith(QLatin1String("no such column")) || words.contains(QLatin1String("has no column named")))
        return platform::UnknownName;
    if (words.startsWith(QLatin1String("no such table")))
        return platform::UnknownTable;
    if (words.startsWith(QLatin1String("unsupported file format")))
        return platform::UnrecognisedFormat;
    if (!preparing && words.endsWith(QLatin1String(" overflow")))
        return platform::Overflow;
    return platform::SyntaxError;
}

} // namespace

int failureNumber(sqlite3* db, bool preparing)
{
    const int code = sqlite3_extended_errcode(db);
    const QString words = QString::fromUtf8(sqlite3_errmsg(db));
    switch (code & 0xFF) {
    case SQLITE_CONSTRAINT:
        return constraintNumber(db, code, words);
    case SQLITE_MISMATCH:
        return platform::WrongDataType;
    case SQLITE_TOOBIG:
        return platform::FieldTooSmall;
    case SQLITE_INTERRUPT:
    case SQLITE_NOMEM:
        return platform::ResourceExceeded;
    case SQLITE_FULL:
        return platform::DiskFull;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_CANTOPEN:
        return platform::CannotLockFile;
    case SQLITE_PERM:
    case SQLITE_READONLY:
        return platform::ReadOnlySet;
    case SQLITE_CORRUPT:
        return platform::DatabaseDamaged;
    case SQLITE_NOTADB:
        return platform::UnrecognisedFormat;
    case SQLITE_IOERR:
        if (code == SQLITE_IOERR_LOCK || code == SQLITE_IOERR_RDLOCK)
            return platform::CannotLockFile;
        return code == SQLITE_IOERR_SHORT_READ || code == SQLITE_IOERR_READ ? platform::DatabaseDamaged
                                                                            : platform::PathFileAccess;
    default:
        return statementNumber(words, preparing);
    }
}

} // namespace orlo::store
