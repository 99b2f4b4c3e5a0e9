#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace orlo::bench
{

struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
};
using PlainStatement = std::unique_ptr<sqlite3_stmt, Finalize>;

/// A file opened through SQLite's own interface, with the settings and the text comparison that the store engine gives
/// its connection. Any failure ends the program.
class PlainDatabase
{
public:
    explicit PlainDatabase(const QString& path);
    ~PlainDatabase();
    PlainDatabase(const PlainDatabase&) = delete;
    PlainDatabase& operator=(const PlainDatabase&) = delete;

    void run(const QByteArray& sql) const;
    [[nodiscard]] PlainStatement prepare(const QByteArray& sql) const;

private:
    sqlite3* m_db = nullptr;
};

/// Steps to the next row; false after the last one.
[[nodiscard]] bool step(const PlainStatement& statement);
[[nodiscard]] QString textOf(const PlainStatement& statement, int column);

/// A folder with a database of the program's tables and queries, filled by SQL; deleted with the object.
class PackFile
{
public:
    explicit PackFile(const QByteArray& fillingSql);

    /// The application folder, on the same disk as the build.
    [[nodiscard]] QString folder() const { return m_folder.path(); }
    [[nodiscard]] QString path() const;

private:
    QTemporaryDir m_folder;
};

/// The same, opened as the program's database until the end of the scope.
class OpenPack
{
public:
    explicit OpenPack(const PackFile& file);
    ~OpenPack();
    OpenPack(const OpenPack&) = delete;
    OpenPack& operator=(const OpenPack&) = delete;
};

/// SQL that adds active scouts with every field filled, numbered from 1, the first `inDen` of them in den 1, the rest
/// in den 2.
[[nodiscard]] QByteArray scoutsSql(int count, int inDen);
/// SQL that adds the two dens of those scouts.
[[nodiscard]] QByteArray densSql();
/// SQL that adds this many awards.
[[nodiscard]] QByteArray awardsSql(int count);

} // namespace orlo::bench
