#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace orlo::test
{

/// The exit status and output of a run of orlo-db; status -1 if it crashed or hung.
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
