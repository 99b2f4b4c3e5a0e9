#include "support/System.h"

#include "support/Main.h"

#include <QFile>
#include <QFileInfo>

#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

namespace orlo::test
{

void limitFiles(qint64 most)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{most < 0 ? RLIM_INFINITY : static_cast<rlim_t>(most), RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limit);
}

const char* const OtherJournal = "";

void hide(const QString& /*folder*/)
{
}

Forbidden::Forbidden(const QString& file, What what) : m_file(file)
{
    QFile::setPermissions(QFileInfo(file).path(), QFile::Permissions(what == File ? 0x7777 : 0x5555));
    QFile::setPermissions(file, QFile::Permissions(what == File ? 0x4444 : 0x6666));
    if (getuid() == 0 && setresuid(65534, 65534, 0) != 0) // who may write everywhere
        fail(QStringLiteral("still root"));
}

Forbidden::~Forbidden()
{
    (void)!setresuid(0, 0, 0);
    QFile::setPermissions(QFileInfo(m_file).path(), QFile::Permissions(0x7700));
}

} // namespace orlo::test
