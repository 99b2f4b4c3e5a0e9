#include "reporting/view/Dialogs.h"

#include "platform/Conversion.h"
#include "platform/RuntimeError.h"
#include "reporting/view/Guarded.h"
#include "reporting/view/Printing.h"
#include "reporting/view/RunProgress.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QRegularExpression>
#include <QStandardPaths>

#include <functional>

namespace orlo::reporting
{

namespace
{

// A file name made from a title, without characters that file systems don't allow.
QString fileNameOf(const QString& title)
{
    static const QRegularExpression forbidden(QStringLiteral(R"([\\/:*?"<>|\x00-\x1f]+)"));
    QString name = title;
    name.replace(forbidden, QStringLiteral("-"));
    name = name.simplified();
    return name.isEmpty() ? QStringLiteral("Report") : name;
}

// The folder that a report was last saved in; at first the user's documents.
QString& saveFolder()
{
    static QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!QFileInfo(folder).isDir())
        folder = QDir::homePath();
    return folder;
}

} // namespace

void printByDialog(QWidget& window, std::shared_ptr<const Document> document, int currentPage)
{
    const int pages = int(document->pages.size());
    std::unique_ptr<QPrinter> printer = defaultPrinter();
    if (!printer)
        printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    preparePrinter(*printer, *document);
    const Guarded<QPrintDialog> dialog(printer.get(), &window);
    dialog->setObjectName(QStringLiteral("printDialog"));
    dialog->setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintPageRange |
                       QAbstractPrintDialog::PrintCurrentPage | QAbstractPrintDialog::PrintCollateCopies |
                       QAbstractPrintDialog::PrintShowPageSize);
    dialog->setMinMax(1, pages);
    dialog->setFromTo(1, pages);
    if (!dialog.isAccepted())
        return;

    int from = 1;
    int to = 0;
    if (printer->printRange() == QPrinter::PageRange) {
        from = printer->fromPage();
        to = printer->toPage();
    } else if (printer->printRange() == QPrinter::CurrentPage) {
        from = to = currentPage + 1;
    }
    const QPointer<QWidget> there(&window);
    try {
        RunProgress progress(QStringLiteral("Printing the report…"));
        printDocument(*printer, *document, from, to, std::ref(progress));
    } catch (const platform::RuntimeError& error) {
        if (there)
            warnOf(window, error.description());
    }
}

QString askSaveFile(QWidget& window, const QString& caption, const QString& filter, const QString& title,
                    const QString& suffix)
{
    const Guarded<QFileDialog> dialog(&window, caption, saveFolder(), filter);
    dialog->setObjectName(QStringLiteral("saveDialog"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(suffix);
    const QString date = platform::today().toString(Qt::ISODate);
    dialog->selectFile(QStringLiteral("%1 %2.%3").arg(fileNameOf(title), date, suffix));
    if (!dialog.isAccepted() || dialog->selectedFiles().isEmpty())
        return {};
    QString path = dialog->selectedFiles().constFirst();
    saveFolder() = QFileInfo(path).absolutePath();
    return path;
}

void warnOf(QWidget& window, const QString& text)
{
    const Guarded<QMessageBox> box(QMessageBox::Warning, window.windowTitle(), text, QMessageBox::Ok, &window);
    box->setTextFormat(Qt::PlainText);
    static_cast<void>(box.isAccepted());
}

} // namespace orlo::reporting
