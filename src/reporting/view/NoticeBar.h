#pragma once

#include <QWidget>

class QLabel;
class QToolButton;

namespace orlo::reporting
{

/// The line under the pages that tells something without being asked: where a file went, what is wrong in a report
/// file.
class NoticeBar : public QWidget
{
    Q_OBJECT

public:
    /// Hidden until it has something to tell.
    NoticeBar();

    /// Shows a text until another one comes or it is closed; an empty one hides the line. A file or folder's path gives
    /// the button "Open".
    void tell(const QString& text, const QString& opens = QString());

private:
    void open();

    QLabel* m_text;
    QToolButton* m_open;
    QString m_path;
};

} // namespace orlo::reporting
