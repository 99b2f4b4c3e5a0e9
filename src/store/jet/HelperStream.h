#pragma once

#include "platform/RuntimeError.h"
#include "store/jet/Stream.h"

#include <QByteArray>
#include <QProcess>
#include <QString>

#include <cstring>

namespace orlo::store::jet
{

/// Failure 3049 of a file that can't be taken over, with the reason.
[[nodiscard]] platform::RuntimeError damaged(const QString& reason);

/// The helper's output for a file. It isn't trusted: truncated, oversized or late output raises 3049, and the helper
/// ends with the object. Raises 3343 if the helper can't be run on this system.
class HelperStream
{
public:
    HelperStream(const QString& helper, const QString& file);
    ~HelperStream();
    HelperStream(const HelperStream&) = delete;
    HelperStream& operator=(const HelperStream&) = delete;

    /// The next number; its size is the type's.
    template <class Number>
    [[nodiscard]] Number number()
    {
        Number value;
        std::memcpy(&value, take(sizeof value), sizeof value);
        return value;
    }
    /// The next text.
    [[nodiscard]] QString text();
    /// Waits for the helper to end. Raises 3049 unless it succeeded without further output.
    void finish();

private:
    /// The next bytes, valid until the next call.
    const char* take(qsizetype size);
    [[noreturn]] void raiseFailure();

    QProcess m_process;
    QByteArray m_block;
    QByteArray m_errorOutput; ///< the end of its standard error output
    qsizetype m_position = 0;
    qint64 m_timeLeft; ///< milliseconds left for waiting
    qint64 m_left;     ///< bytes that may still come
};

} // namespace orlo::store::jet
