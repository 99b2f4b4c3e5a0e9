// Runs report files without the program: writes their pages as PDF files, counts the sheets and tells what looks wrong.

#include "reporting/PdfFile.h"
#include "reporting/ReportError.h"
#include "store/engine/Database.h"
#include "store/schema/Schema.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>

#include <cstdio>

using namespace orlo;

namespace
{

/// Writes one report's pages beside its name in the folder, if one is given; the number of its sheets.
int runReport(store::Database& database, const QString& file, const QString& selection, const QString& folder)
{
    reports::RunRequest request;
    request.reportFile = file;
    request.databases = {{0, QStringLiteral("pack")}, {1, QStringLiteral("pack")}};
    request.selectionFormula = selection;
    const QString name = QFileInfo(file).completeBaseName();
    std::optional<reports::PdfFile> pdf;
    if (!folder.isEmpty())
        pdf.emplace(QDir(folder).filePath(name + QStringLiteral(".pdf")));
    int sheets = 0;
    const auto document = reports::renderPages(
        request, [&](const QString&) -> store::Database& { return database; },
        [&](const reports::Document& head, const reports::Page& page, int count) {
            sheets = count;
            if (pdf)
                pdf->add(head, page);
        });
    for (const QString& warning : document->warnings)
        std::fprintf(stderr, "%s\n", qUtf8Printable(warning));
    if (pdf)
        pdf->commit();
    std::printf("%4d %s\n", sheets, qUtf8Printable(name));
    return sheets;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Runs report files on a pack's database and counts their sheets."));
    const QCommandLineOption pdf(QStringLiteral("pdf"), QStringLiteral("Write the pages as PDF files into <folder>."),
                                 QStringLiteral("folder"));
    const QCommandLineOption select(QStringLiteral("select"),
                                    QStringLiteral("Print only the rows that <formula> holds for."),
                                    QStringLiteral("formula"));
    parser.addOptions({pdf, select});
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("database"), QStringLiteral("The pack's database."));
    parser.addPositionalArgument(QStringLiteral("report"), QStringLiteral("A report file."),
                                 QStringLiteral("report..."));
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() < 2) {
        std::fputs(qPrintable(parser.helpText()), stderr);
        return 2;
    }
    try {
        store::Database database = store::DBEngine::openDatabase(arguments.front(), store::schema::editions());
        int sheets = 0;
        for (const QString& file : arguments.mid(1))
            sheets += runReport(database, file, parser.value(select), parser.value(pdf));
        std::printf("%4d in all\n", sheets);
        return 0;
    } catch (const platform::RuntimeError& error) {
        std::fprintf(stderr, "orlo-report: %s\n", qUtf8Printable(error.description()));
        return 1;
    }
}
