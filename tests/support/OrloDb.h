#pragma once

#include <QProcess>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

namespace orlo::test
{

/// The exit status and output of a run of orlo-db or another tool; status -1 if it crashed or hung.
struct OrloDbRun {
    int status;
    QString errors;
    QString said;
};

inline OrloDbRun orloDb(const QStringList& arguments, const QString& tool = QStringLiteral("orlo-db"))
{
    QProcess process;
    const qsizetype to = arguments.indexOf(">"); // a file for its output
    if (to >= 0)
        process.setStandardOutputFile(arguments[to + 1]);
    process.start(QStringLiteral(ORLO_BUILD_DIR "/tools/") + tool, arguments.first(to < 0 ? arguments.size() : to));
    const bool finished = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
    static const QRegularExpression noise("^QStandardPaths: .*\n|\r", QRegularExpression::MultilineOption); // Qt's
    const auto lines = [](const QByteArray& said) { return QString::fromUtf8(said).remove(noise); };
    return {finished ? process.exitCode() : -1, lines(process.readAllStandardError()),
            lines(process.readAllStandardOutput())};
}

} // namespace orlo::test
