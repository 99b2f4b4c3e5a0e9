#pragma once

#include "reporting/Renderer.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <map>

namespace orlo::reporting
{

class PreviewWindow;
class ReportMessage;

/// Where a run's pages go.
enum Destination : int { ToPreview = 0, ToPrinter = 1 };

/// How a preview window opens.
enum PreviewState : int { PreviewNormal = 0, PreviewMinimised = 1, PreviewMaximised = 2 };

/// The report engine for a form: set properties, then run(). Settings keep their values from run to run.
///
/// Failures are shown in a window of the engine's own, with file, line and column; the form only gets a number. The
/// settings are Qt properties, so that other programs can read them.
class ReportControl : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString ReportFile READ reportFile WRITE setReportFile)
    Q_PROPERTY(QString SubreportToChange READ subreportToChange WRITE setSubreportToChange)
    Q_PROPERTY(QString SelectionFormula READ selectionFormula WRITE setSelectionFormula)
    Q_PROPERTY(QString ReportTitle READ reportTitle WRITE setReportTitle)
    Q_PROPERTY(QString WindowTitle READ windowTitle WRITE setWindowTitle)
    Q_PROPERTY(int Destination READ destination WRITE setDestination)
    Q_PROPERTY(bool WindowOption READ windowOption WRITE setWindowOption)
    Q_PROPERTY(int WindowState READ windowState WRITE setWindowState)
    Q_PROPERTY(int FirstPage READ firstPage WRITE setFirstPage)
    Q_PROPERTY(int LastPage READ lastPage WRITE setLastPage)

public:
    /// Returned by run() if the user cancelled it or closed its preview before the end.
    static constexpr int UserInterrupt = 18;

    /// The name becomes the objectName.
    ReportControl(const QString& name, QObject* parent);
    ~ReportControl() override;

    /// The report file's path. Changing it clears the subreports' slots.
    void setReportFile(const QString& path);
    [[nodiscard]] const QString& reportFile() const { return m_request.reportFile; }

    /// Sets the database file of a table slot, of the subreport named since the last run or of the main report; an
    /// empty path clears the slot.
    Q_INVOKABLE void setDatabaseFile(int slot, const QString& path);
    /// A slot of the main report or of a subreport; empty if not set.
    Q_INVOKABLE [[nodiscard]] QString databaseFile(int slot, const QString& subreport = QString()) const;

    /// Directs setDatabaseFile() to a subreport until the next run; an empty name means the main report.
    void setSubreportToChange(const QString& name);
    [[nodiscard]] const QString& subreportToChange() const { return m_subreport; }

    void setSelectionFormula(const QString& formula) { m_request.selectionFormula = formula; }
    [[nodiscard]] const QString& selectionFormula() const { return m_request.selectionFormula; }

    void setReportTitle(const QString& title) { m_request.reportTitle = title; }
    [[nodiscard]] const QString& reportTitle() const { return m_request.reportTitle; }

    /// The preview's caption; the report's own title if empty.
    void setWindowTitle(const QString& title) { m_windowTitle = title; }
    [[nodiscard]] const QString& windowTitle() const { return m_windowTitle; }

    void setDestination(int destination) { m_destination = destination; }
    [[nodiscard]] int destination() const { return m_destination; }

    /// Whether the preview opens with its side bar.
    void setWindowOption(bool option) { m_windowOption = option; }
    [[nodiscard]] bool windowOption() const { return m_windowOption; }

    /// A PreviewState.
    void setWindowState(int state) { m_windowState = state; }
    [[nodiscard]] int windowState() const { return m_windowState; }

    void setFirstPage(int page) { m_request.firstPage = page; }
    [[nodiscard]] int firstPage() const { return m_request.firstPage; }

    /// 0 means no upper limit.
    void setLastPage(int page) { m_request.lastPage = page; }
    [[nodiscard]] int lastPage() const { return m_request.lastPage; }

    /// Runs the report. Returns 0, or the number of a failure that the user has seen; never throws. Returns 5 and does
    /// nothing while another run of this object is in progress.
    Q_INVOKABLE int run();

    /// The last run's preview while it is open.
    [[nodiscard]] PreviewWindow* preview() const;

private:
    int execute();
    PreviewWindow* show(Document&& document);
    void tell(const QString& text);

    RunRequest m_request;
    QString m_subreport;
    bool m_subreportPointed = false; // a subreport was named since the last run
    QString m_windowTitle;
    int m_destination = ToPreview;
    bool m_windowOption = false;
    int m_windowState = PreviewNormal;
    bool m_running = false;
    QPointer<PreviewWindow> m_preview;
    QPointer<ReportMessage> m_message;
};

/// Says who knows the program's open database: for a path of the operating system it yields the database open on that
/// file, or null; a run then opens the file for itself.
void setDatabaseProvider(std::function<store::Database*(const QString& path)> provider);

} // namespace orlo::reporting
