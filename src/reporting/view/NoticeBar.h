#pragma once

#include <QWidget>

class QLabel;
class QToolButton;

namespace orlo::reporting
{

/// The line below the pages that reports where a file was saved or what is wrong in a report file.
class NoticeBar : public QWidget
{
    Q_OBJECT

public:
    /// Hidden until there is something to show.
    NoticeBar();

    /// Shows a text until the next one or until it is closed; an empty text hides the bar. The path of a file or folder
    /// adds the button "Open".
    void tell(const QString& text, const QString& opens = QString());

private:
    void open();

    QLabel* m_text;
    QToolButton* m_open;
    QString m_path;
};

} // namespace orlo::reporting
