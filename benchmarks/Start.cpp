#include "PackFile.h"
#include "Subjects.h"
#include "Table.h"

#include <QFile>

#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace orlo::bench
{

namespace
{

double run(const char* program, const QByteArray& folder)
{
    return waited([&] {
        QByteArray name(program);
        QByteArray argument(folder);
        char* const arguments[] = {name.data(), argument.data(), nullptr};
        pid_t child = 0;
        int status = 0;
        if (posix_spawn(&child, program, nullptr, nullptr, arguments, environ) != 0 ||
            waitpid(child, &status, 0) != child || status != 0)
            qFatal("%s failed", program);
    });
}

} // namespace

void startProgram(Table& table)
{
    const PackFile file("");
    const QByteArray folder = QFile::encodeName(file.folder());
    table.compare({"process start to splash painted", "an empty Qt window", 1.3,
                   [&] { return run(ORLO_BUILD_DIR "/benchmarks/splash_window", folder); },
                   [&] { return run(ORLO_BUILD_DIR "/benchmarks/empty_window", folder); }, 25});
}

} // namespace orlo::bench
