#include "common/CommandLine.h"

#include "platform/Application.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

using namespace orlo;

CommandLine::CommandLine(QString name, const QString& description)
    : m_name(std::move(name)), m_help(m_parser.addHelpOption()), m_version(m_parser.addVersionOption())
{
    m_parser.setApplicationDescription(description);
}

std::optional<int> CommandLine::read(const QStringList& arguments)
{
    if (!m_parser.parse(arguments))
        return refuse(m_parser.errorText());
    if (m_parser.isSet(m_help) || m_parser.isSet(QStringLiteral("help-all")))
        std::fputs(qUtf8Printable(m_parser.helpText()), stdout);
    else if (m_parser.isSet(m_version))
        std::printf("%s %s\n", qUtf8Printable(m_name), qUtf8Printable(platform::versionText().section(u' ', -1)));
    else
        return std::nullopt;
    return ended(0);
}

std::optional<QString> CommandLine::given(const QCommandLineOption& option) const
{
    return m_parser.isSet(option) ? std::optional(m_parser.value(option)) : std::nullopt;
}

int CommandLine::refuse(const QString& problem) const
{
    complain(problem);
    std::fputs(qUtf8Printable(m_parser.helpText()), stderr);
    return BadUsage;
}

void CommandLine::complain(const QString& text) const
{
    for (const QString& line : text.split(u'\n'))
        std::fprintf(stderr, "%s: %s\n", qUtf8Printable(m_name), qUtf8Printable(line));
}

int CommandLine::ended(int status) const
{
    errno = 0;
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    complain(QStringLiteral("standard output: %1").arg(QString::fromLocal8Bit(std::strerror(errno ? errno : EIO))));
    return status ? status : Failed;
}
