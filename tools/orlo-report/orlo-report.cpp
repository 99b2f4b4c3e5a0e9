// Runs report files without the program: writes their pages as PDF files and their rows as CSV files, counts the sheets
// and prints warnings.

#include "common/CommandLine.h"
#include "platform/RuntimeError.h"
#include "platform/System.h"
#include "reporting/Export.h"
#include "store/engine/Database.h"
#include "store/schema/Schema.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>

#include <cstdio>

using namespace orlo;

namespace
{

// Output folders; an empty one writes nothing.
struct Folders {
    QString pdf;
    QString csv;
};

// Runs one report and writes it under its own name into the folders; returns the number of its sheets.
int runReport(store::Database& database, const QString& file, const QString& selection, const Folders& folders)
{
    reporting::RunRequest request;
    request.reportFile = file;
    request.databases = {{0, QStringLiteral("pack")}, {1, QStringLiteral("pack")}};
    request.selectionFormula = selection;
    const reporting::Document document =
        *reporting::render(request, [&](const QString&) -> store::Database& { return database; });
    for (const QString& warning : document.warnings)
        std::fprintf(stderr, "%s\n", qUtf8Printable(warning));
    const QString name = QFileInfo(file).completeBaseName();
    if (!folders.pdf.isEmpty())
        reporting::writePdf(document, QDir(folders.pdf).filePath(name + QStringLiteral(".pdf")));
    if (!folders.csv.isEmpty())
        reporting::writeCsv(document, QDir(folders.csv).filePath(name + QStringLiteral(".csv")));
    std::printf("%4d %s\n", int(document.pages.size()), qUtf8Printable(name));
    return int(document.pages.size());
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", platform::screenlessPlatform());
    const QGuiApplication application(argc, argv);
    CommandLine line(QStringLiteral("orlo-report"),
                     QStringLiteral("Runs report files on a pack's database and counts their sheets."));
    const QCommandLineOption pdf(QStringLiteral("pdf"), QStringLiteral("Write the pages as PDF files into <folder>."),
                                 QStringLiteral("folder"));
    const QCommandLineOption csv(QStringLiteral("csv"), QStringLiteral("Write the rows as CSV files into <folder>."),
                                 QStringLiteral("folder"));
    const QCommandLineOption select(QStringLiteral("select"),
                                    QStringLiteral("Print only the rows that <formula> holds for."),
                                    QStringLiteral("formula"));
    line.parser().addOptions({pdf, csv, select});
    line.parser().addPositionalArgument(QStringLiteral("database"), QStringLiteral("The pack's database."));
    line.parser().addPositionalArgument(QStringLiteral("report"), QStringLiteral("A report file."),
                                        QStringLiteral("report..."));
    if (const auto status = line.read(application.arguments()))
        return *status;
    const QStringList arguments = line.parser().positionalArguments();
    if (arguments.isEmpty())
        return line.refuse(QStringLiteral("the database is missing"));
    if (arguments.size() < 2)
        return line.refuse(QStringLiteral("the report is missing"));
    try {
        store::Database database = store::DBEngine::openDatabase(arguments.front(), store::schema::versions());
        int sheets = 0;
        for (const QString& file : arguments.mid(1))
            sheets += runReport(database, file, line.parser().value(select),
                                {line.parser().value(pdf), line.parser().value(csv)});
        std::printf("%4d in all\n", sheets);
        return line.ended(0);
    } catch (const platform::RuntimeError& error) {
        line.complain(error.description());
    }
    return line.ended(CommandLine::Failed);
}
