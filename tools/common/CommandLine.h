#pragma once

#include <QCommandLineParser>

#include <optional>

/// What every tool's command line has: help, the program's version, and a word on what makes no sense.
class CommandLine
{
public:
    static constexpr int Failed = 1;
    static constexpr int BadUsage = 2;

    /// A tool's name and what stands above its options in the help.
    CommandLine(QString name, const QString& description);

    /// For options and arguments.
    [[nodiscard]] QCommandLineParser& parser() { return m_parser; }
    /// Reads the arguments: the exit status where they ask for the help or the version, or make no sense.
    [[nodiscard]] std::optional<int> read(const QStringList& arguments);
    /// What an option was given, if it was.
    [[nodiscard]] std::optional<QString> given(const QCommandLineOption& option) const;
    /// One line that says what makes no sense, and the help.
    [[nodiscard]] int refuse(const QString& problem) const;
    /// A line for each of the text to standard error, with the tool's name before it.
    void complain(const QString& text) const;
    /// The exit status once all is said: what couldn't be written to the standard output is a failure.
    [[nodiscard]] int ended(int status) const;

private:
    QString m_name;
    QCommandLineParser m_parser;
    QCommandLineOption m_help;
    QCommandLineOption m_version;
};
