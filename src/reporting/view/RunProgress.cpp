#include "reporting/view/RunProgress.h"

#include "platform/Application.h"
#include "widgets/NestedLoop.h"

#include <QCoreApplication>
#include <QProgressDialog>

#include <algorithm>

namespace orlo::reporting
{

namespace
{

int showAfter = 400; // milliseconds
int underWay = 0;
constexpr int UpdateEvery = 50; // milliseconds

} // namespace

RunProgress::RunProgress(QString label) : m_label(std::move(label)), m_busy(std::make_unique<widgets::BusyPointer>())
{
    ++underWay;
    m_sinceStart.start();
}

RunProgress::~RunProgress()
{
    --underWay;
}

bool RunProgress::isUnderWay()
{
    return underWay > 0;
}

void setProgressDelay(int milliseconds)
{
    showAfter = milliseconds;
}

bool RunProgress::operator()(int done, int total)
{
    if (!m_dialog) {
        if (m_sinceStart.elapsed() < showAfter)
            return true;
        m_busy.reset();
        m_dialog = std::make_unique<QProgressDialog>(m_label, QStringLiteral("Cancel"), 0, total);
        m_dialog->setObjectName(QStringLiteral("reportProgress"));
        m_dialog->setWindowTitle(platform::title());
        m_dialog->setWindowModality(Qt::ApplicationModal);
        m_dialog->setAutoClose(false);
        m_dialog->setAutoReset(false);
        m_dialog->setMinimumDuration(0);
        m_dialog->setMinimumWidth(360);
        m_dialog->show();
    } else if (m_sinceUpdate.elapsed() < UpdateEvery) {
        return !m_dialog->wasCanceled();
    }
    m_sinceUpdate.start();
    const widgets::NestedLoop loop; // setValue() handles events, too
    m_dialog->setMaximum(std::max(total, 1));
    m_dialog->setValue(std::max(m_dialog->value(), std::min(done, total))); // subreports are read after the main report
    QCoreApplication::processEvents();
    return !m_dialog->wasCanceled();
}

} // namespace orlo::reporting
