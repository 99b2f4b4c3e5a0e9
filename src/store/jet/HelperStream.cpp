#include "store/jet/HelperStream.h"

#include "platform/System.h"
#include "store/jet/Takeover.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcessEnvironment>

namespace orlo::store::jet
{

namespace
{

constexpr qint64 Megabyte = 1 << 20;
// The stream's size relative to the file's: a byte makes only a few, a character two, a Null's bit one.
constexpr qint64 MaxGrowth = 16;
constexpr qsizetype MaxReasonLength = 300;
constexpr qsizetype MaxErrorOutput = 1 << 16; // bytes

// The helper limits its own processor time; this limit is for a sleeping one or a busy machine.
qint64 timeLimit(qint64 fileSize)
{
    return 30'000 + fileSize / Megabyte * 2'000;
}

} // namespace

platform::RuntimeError damaged(const QString& reason)
{
    return platform::RuntimeError(
        platform::DatabaseDamaged, QStringLiteral("Database"),
        QStringLiteral("%1 (%2)").arg(platform::standardDescription(platform::DatabaseDamaged), reason));
}

HelperStream::HelperStream(const QString& helper, const QString& file)
    : m_timeLeft(timeLimit(QFileInfo(file).size())), m_left(MaxGrowth * (QFileInfo(file).size() + Megabyte))
{
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"MDBICONV", "MDB_JET3_CHARSET", "MDBOPTS", "MDBPATH"})
        environment.remove(QLatin1String(name));
    m_process.setProcessEnvironment(environment);
    // The library may print endless warnings; the reason comes last.
    QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process, [this] {
        m_errorOutput = (m_errorOutput + m_process.readAllStandardError()).right(MaxErrorOutput);
    });
    m_process.start(helper, {file}, QIODevice::ReadOnly);
}

HelperStream::~HelperStream()
{
    m_process.kill();
    m_process.waitForFinished();
}

const char* HelperStream::take(qsizetype size)
{
    while (m_block.size() - m_position < size) {
        if (size > m_left + m_block.size() - m_position)
            throw damaged(QStringLiteral("The file would grow without end."));
        QElapsedTimer waited;
        waited.start();
        // Waiting fails once the helper has ended, even if that brought its last bytes.
        if (m_process.bytesAvailable() == 0 && !m_process.waitForReadyRead(static_cast<int>(m_timeLeft)) &&
            m_process.bytesAvailable() == 0)
            raiseFailure();
        m_timeLeft = std::max<qint64>(0, m_timeLeft - waited.elapsed());
        m_block.remove(0, m_position);
        m_position = 0;
        const QByteArray come = m_process.readAll();
        m_left -= come.size();
        m_block += come;
    }
    const char* bytes = m_block.constData() + m_position;
    m_position += size;
    return bytes;
}

QString HelperStream::text()
{
    const auto size = number<std::uint32_t>();
    if (size % sizeof(char16_t) != 0)
        throw damaged(QStringLiteral("A text breaks off within a letter."));
    const char* bytes = take(size); // checked before allocating what it claims to need
    QString text(static_cast<qsizetype>(size / sizeof(char16_t)), Qt::Uninitialized);
    std::memcpy(text.data(), bytes, size);
    return text;
}

void HelperStream::finish()
{
    if (m_position == m_block.size())
        m_process.waitForFinished(static_cast<int>(m_timeLeft));
    if (m_position != m_block.size() || m_process.state() != QProcess::NotRunning ||
        m_process.exitStatus() != QProcess::NormalExit || m_process.exitCode() != 0 || m_process.bytesAvailable() != 0)
        raiseFailure();
}

void HelperStream::raiseFailure()
{
    if (m_process.state() == QProcess::Running && !m_process.waitForFinished(100))
        throw damaged(QStringLiteral("Reading it takes too long."));
    if (m_process.error() == QProcess::FailedToStart || platform::lacksLibrary(m_process.exitCode()))
        throw noReader();
    const QByteArrayList lines = m_errorOutput.split('\n');
    for (const QByteArray& line : lines)
        if (line.startsWith("orlo-jet: "))
            throw damaged(QString::fromUtf8(line.mid(10, MaxReasonLength)));
    throw damaged(QStringLiteral("It could not be read to its end."));
}

} // namespace orlo::store::jet
