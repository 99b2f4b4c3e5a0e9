#pragma once

#include <QCommandLineParser>

#include <optional>

/// The parts of a command line that all tools share: help, version, and errors in the arguments.
class CommandLine
{
public:
    static constexpr int Failed = 1;
    static constexpr int BadUsage = 2;

    /// The tool's name, and the text above the options in its help.
    CommandLine(QString name, const QString& description);

    /// For adding options and arguments.
    [[nodiscard]] QCommandLineParser& parser() { return m_parser; }
    /// Parses the arguments; returns an exit status if they ask for help or the version, or are wrong.
    [[nodiscard]] std::optional<int> read(const QStringList& arguments);
    /// An option's value, if given.
    [[nodiscard]] std::optional<QString> given(const QCommandLineOption& option) const;
    /// Prints what is wrong, and the help; returns the exit status.
    [[nodiscard]] int refuse(const QString& problem) const;
    /// Prints each line of the text to standard error, after the tool's name.
    void complain(const QString& text) const;
    /// The final exit status: a failure if the standard output couldn't be written.
    [[nodiscard]] int ended(int status) const;

private:
    QString m_name;
    QCommandLineParser m_parser;
    QCommandLineOption m_help;
    QCommandLineOption m_version;
};
