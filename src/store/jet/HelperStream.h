#pragma once

#include "platform/RuntimeError.h"
#include "store/jet/Stream.h"

#include <QByteArray>
#include <QProcess>
#include <QString>

#include <cstring>

namespace orlo::store::jet
{

/// The failure of a file that can't be taken over: 3049 with the reason.
[[nodiscard]] platform::RuntimeError damaged(const QString& reason);

/// What the helper writes about a file. Nothing that it writes is trusted: whatever breaks off, is too long or comes
/// too late raises 3049, and the helper ends with the object. One that this system can't run raises 3343.
class HelperStream
{
public:
    HelperStream(const QString& helper, const QString& file);
    ~HelperStream();
    HelperStream(const HelperStream&) = delete;
    HelperStream& operator=(const HelperStream&) = delete;

    /// The next number, of as many bytes as its type has.
    template <class Number>
    [[nodiscard]] Number number()
    {
        Number value;
        std::memcpy(&value, take(sizeof value), sizeof value);
        return value;
    }
    /// The next text.
    [[nodiscard]] QString text();
    /// Waits for the helper's end. Raises 3049 unless it ended well and with nothing more to say.
    void finish();

private:
    /// The next bytes, which stay good until the next call.
    const char* take(qsizetype size);
    [[noreturn]] void raiseFailure();

    QProcess m_process;
    QByteArray m_block;
    QByteArray m_errorOutput; ///< the end of what it wrote to the standard error
    qsizetype m_position = 0;
    qint64 m_timeLeft; ///< milliseconds that may still be spent waiting
    qint64 m_left;     ///< bytes that may still come
};

} // namespace orlo::store::jet
