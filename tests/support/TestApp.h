#pragma once

#include <QTemporaryDir>

#include <functional>

namespace orlo::test
{

/// A temporary application folder with a fresh database, opened as the program's.
class AppFolder
{
public:
    AppFolder();
    ~AppFolder();
    AppFolder(const AppFolder&) = delete;
    AppFolder& operator=(const AppFolder&) = delete;

    [[nodiscard]] QString path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};

/// True if an action runs statements that contain a text, and all of them under the busy cursor.
bool alwaysBusy(const QString& statement, const std::function<void()>& action);
/// A count from the open database.
int count(const QString& table, const QString& where = QString());
/// A query's rows: cells separated by slashes, rows by ", ".
QString rows(const QString& select);
/// Runs a statement on the open database.
void execute(const QString& sql);
/// Runs SQL on the open file as another program would; the row fails if it fails.
void fill(const QString& sql);
/// Copies the grids' layouts into the application's folder, as an installation does.
void copyLayouts();
/// Runs the current test function and row again in a separate process on the same file, where the action is expected to
/// fail. Returns the number of the failure with which that process ends, or its output if it ends differently.
QString failureInChild(const QString& sql, const std::function<void()>& action);

} // namespace orlo::test
