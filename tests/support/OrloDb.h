#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace orlo::test
{

/// What a run of orlo-db ended with, -1 for one that crashed or hung, and what it said.
struct OrloDbRun {
    int status;
    QString errors;
    QString said;
};

inline OrloDbRun orloDb(const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral(ORLO_BUILD_DIR "/tools/orlo-db"), arguments);
    const bool finished = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
    const auto lines = [](const QByteArray& said) { return QString::fromUtf8(said).remove(u'\r'); };
    return {finished ? process.exitCode() : -1, lines(process.readAllStandardError()),
            lines(process.readAllStandardOutput())};
}

} // namespace orlo::test
