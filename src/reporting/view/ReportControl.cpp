#include "reporting/view/ReportControl.h"

#include "platform/Application.h"
#include "platform/FileSystem.h"
#include "platform/Logging.h"
#include "platform/RuntimeError.h"
#include "reporting/ReportError.h"
#include "reporting/view/LiveReport.h"
#include "reporting/view/PreviewWindow.h"
#include "reporting/view/Printing.h"
#include "reporting/view/ReportMessage.h"
#include "reporting/view/RunProgress.h"
#include "reporting/view/SharedDocument.h"
#include "store/opening/OpenFile.h"
#include "widgets/NestedLoop.h"

#include <QApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QPrinter>
#include <QStringList>

namespace orlo::reporting
{

namespace
{

std::function<store::Database*(const QString& path)> databaseProvider;

// The databases of a run: the program's own if it has the file open, others opened here and closed at the end.
class RunDatabases
{
public:
    store::Database& operator()(const QString& path)
    {
        const QString native = platform::nativePath(path);
        if (store::Database* open = databaseProvider ? databaseProvider(native) : nullptr; open && open->isOpen())
            return *open;
        auto found = m_opened.find(native);
        if (found == m_opened.end())
            found = m_opened.emplace(native, store::openFile(native)).first;
        return found->second;
    }

private:
    std::map<QString, store::Database> m_opened;
};

// The preview of a run in progress. It is destroyed with the run unless that completes; closing it ends the run.
class BegunPreview
{
public:
    BegunPreview() = default;
    ~BegunPreview() { delete m_window.data(); }
    BegunPreview(const BegunPreview&) = delete;
    BegunPreview& operator=(const BegunPreview&) = delete;

    void begin(PreviewWindow* window)
    {
        m_window = window;
        m_begun = true;
    }
    [[nodiscard]] bool isOpen() const { return m_window && m_window->isVisible(); }
    [[nodiscard]] bool wasClosed() const { return m_begun && !isOpen(); }
    PreviewWindow* release() { return std::exchange(m_window, nullptr).data(); }

private:
    QPointer<PreviewWindow> m_window;
    bool m_begun = false;
};

// Runs another report on the databases of a run; slots it doesn't set use the main database.
void runOther(const RunRequest& request, const QString& file)
{
    const auto databaseOf = [&](int slot) {
        const auto found = request.databases.find(slot);
        return found == request.databases.end() ? QString() : found->second;
    };
    ReportControl control(QString(), nullptr);
    control.setReportFile(file);
    for (const int slot : {0, 1})
        control.setDatabaseFile(slot, databaseOf(slot).isEmpty() ? databaseOf(0) : databaseOf(slot));
    control.setWindowOption(true);
    control.setWindowState(PreviewMaximised);
    control.run(); // its windows stay
}

// A caption that no other open preview has, so that two previews of one report can be told apart.
QString freeCaption(const QString& wanted)
{
    QStringList taken;
    for (const QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == QStringLiteral("previewWindow") && window->isVisible())
            taken << window->windowTitle();
    QString caption = wanted;
    for (int number = 2; taken.contains(caption); ++number)
        caption = QStringLiteral("%1 (%2)").arg(wanted).arg(number);
    return caption;
}

} // namespace

ReportControl::ReportControl(const QString& name, QObject* parent) : QObject(parent)
{
    setObjectName(name);
}

ReportControl::~ReportControl() = default;

void ReportControl::setReportFile(const QString& path)
{
    if (path.compare(m_request.reportFile, Qt::CaseInsensitive) != 0)
        m_request.subreports.clear();
    m_request.reportFile = path;
}

void ReportControl::setDatabaseFile(int slot, const QString& path)
{
    const bool ofSubreport = m_subreportPointed && !m_subreport.isEmpty();
    Slots& databases = ofSubreport ? m_request.subreports[m_subreport.toCaseFolded()] : m_request.databases;
    databases[slot] = path;
}

QString ReportControl::databaseFile(int slot, const QString& subreport) const
{
    const Slots* databases = &m_request.databases;
    if (!subreport.isEmpty()) {
        const auto found = m_request.subreports.find(subreport.toCaseFolded());
        if (found == m_request.subreports.end())
            return {};
        databases = &found->second;
    }
    const auto found = databases->find(slot);
    return found == databases->end() ? QString() : found->second;
}

void ReportControl::setSubreportToChange(const QString& name)
{
    m_subreport = name;
    m_subreportPointed = true;
}

int ReportControl::run()
{
    const platform::TimeLog time(platform::reportLog(), m_request.reportFile);
    if (m_running)
        return platform::InvalidProcedureCall;
    m_running = true;
    // Each run starts over at slot 0 of the main report, whichever subreport the last one set.
    m_subreportPointed = false;

    const QPointer<ReportControl> self(this);
    const RunRequest request = m_request;
    int number = 0;
    QString trouble;
    try {
        number = execute();
    } catch (const ReportError& error) {
        number = error.number();
        trouble = messageOf(error, request.reportFile);
    } catch (const platform::RuntimeError& error) {
        number = error.number();
        trouble = messageOf(ReportError(number, error.description()), request.reportFile);
    } catch (const std::exception& error) {
        number = platform::InvalidProcedureCall;
        trouble = QString::fromLocal8Bit(error.what());
    }
    if (self) {
        m_running = false;
        if (!trouble.isEmpty())
            tell(trouble);
    }
    return number;
}

int ReportControl::execute()
{
    const QPointer<ReportControl> self(this);
    if (m_message)
        m_message->close();

    const RunRequest request = m_request;
    const qint64 began = QDateTime::currentMSecsSinceEpoch();
    RunDatabases databases;
    std::optional<Document> document;
    BegunPreview begun;
    {
        RunProgress progress(QStringLiteral("Preparing the report…"));
        const auto goOn = [&](int done, int total) {
            if (begun.isOpen()) { // let its page be painted while the program's windows are blocked
                const widgets::NestedLoop loop;
                QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            }
            return !begun.wasClosed() && progress(done, total);
        };
        const auto showFirst = [&](Document&& first) {
            if (self)
                begun.begin(show(std::move(first)));
        };
        document = render(request, std::ref(databases), goOn, m_destination == ToPreview ? showFirst : FirstPage());
    }
    if (!document || begun.wasClosed())
        return UserInterrupt;
    if (!self)
        return 0;
    if (m_destination == ToPreview) {
        PreviewWindow* window = begun.release();
        if (window)
            window->setDocument(sharedDocument(std::move(*document)));
        else
            window = show(std::move(*document));
        window->offerReports(platform::nativePath(request.reportFile),
                             [request](const QString& file) { runOther(request, file); });
        new LiveReport(*window, began, [request] {
            RunDatabases opened;
            RunProgress progress(QStringLiteral("Preparing the report…"));
            return render(request, std::ref(opened), std::ref(progress));
        });
        return 0;
    }
    const std::unique_ptr<QPrinter> printer = defaultPrinter();
    if (!printer)
        throw ReportError(platform::DeviceUnavailable,
                          QStringLiteral("The report can't be printed: this computer has no default printer. View "
                                         "the report instead; from its window it can be saved as a PDF file."));
    const auto printed = sharedDocument(std::move(*document));
    preparePrinter(*printer, *printed);
    RunProgress progress(QStringLiteral("Printing the report…"));
    return printDocument(*printer, *printed, 1, 0, std::ref(progress)) ? 0 : UserInterrupt;
}

PreviewWindow* ReportControl::preview() const
{
    return m_preview;
}

void setDatabaseProvider(std::function<store::Database*(const QString& path)> provider)
{
    databaseProvider = std::move(provider);
}

PreviewWindow* ReportControl::show(Document&& document)
{
    auto* window = new PreviewWindow(sharedDocument(std::move(document)));
    m_preview = window;
    window->setWindowTitle(freeCaption(m_windowTitle.isEmpty() ? window->windowTitle() : m_windowTitle));
    window->setPageListVisible(m_windowOption);
    switch (m_windowState) {
    case PreviewMaximised:
        window->showMaximized();
        break;
    case PreviewMinimised:
        window->showMinimized();
        return window;
    default:
        window->show();
    }
    window->raise();
    window->activateWindow();
    return window;
}

void ReportControl::tell(const QString& text)
{
    QString title = m_windowTitle.isEmpty() ? QFileInfo(platform::nativePath(m_request.reportFile)).completeBaseName()
                                            : m_windowTitle;
    title = title.isEmpty() ? platform::title() : QStringLiteral("%1 - %2").arg(title, platform::title());
    auto* screen = qobject_cast<QWidget*>(parent());
    m_message = new ReportMessage(title, text, screen ? screen->window() : nullptr);
    m_message->show();
    m_message->raise();
    m_message->activateWindow();
}

} // namespace orlo::reporting
