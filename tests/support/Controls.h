#pragma once

#include "support/Main.h"

#include <QMessageBox>
#include <QTimer>

#include <memory>

namespace orlo::widgets
{
class ListBox;
}

namespace orlo::test
{

/// What the next message box says, once it has been answered.
struct Told {
    QString text;
    QString title;
    bool shown = false;
    QString kind; ///< its sign and its buttons, the preset one with a star: "Question, *Yes No"; "alone" over nothing
    QStringList before = {}; ///< what lookBehind() saw

    /// All of it in one line.
    [[nodiscard]] QString line() const
    {
        return shown ? kind + ": " + title + ": " + QString(text).remove('\r').replace('\n', "\\n") : "not asked";
    }
};

/// Looks at the screen behind a box that is about to be answered; none looks if it is empty.
inline std::function<QStringList()> lookBehind;

/// Handles the next modal window as soon as it is shown, by a function that returns false for a window it doesn't wait
/// for.
std::shared_ptr<Told> takeNext(const std::function<bool(QWidget&, Told&)>& take);
/// Answers the next message box with the button, or by Enter if there is none, and records its text.
std::shared_ptr<Told> answerNext(QMessageBox::StandardButton button = QMessageBox::Ok);
/// While it lives and is started before each step, ends what waits ten seconds for an answer, and tells of it.
struct Unanswered : QTimer {
    explicit Unanswered(QStringList& seen);
};
/// Dismisses the next failure report and records type, number, source, description and text, one per line.
std::shared_ptr<Told> dismissReport();

/// A form's control by its name; the test fails without it.
template <class W>
W& control(const QObject& form, const char* name)
{
    W* found = form.findChild<W*>(QString::fromLatin1(name));
    if (!found)
        fail(QStringLiteral("no control ") + QString::fromLatin1(name));
    return *found;
}

/// The visible window of this name; null without one.
QWidget* topLevel(const QString& name);
/// Clicks a control of a window.
void press(const QObject& window, const QString& name);
/// Clicks a row of a list.
void clickRow(widgets::ListBox& list, int row, Qt::KeyboardModifier modifier = Qt::NoModifier);

/// The rows of a list or combo box.
template <class List>
QString textsOf(const List& list)
{
    QStringList texts;
    for (int row = 0; row < list.count(); ++row)
        texts += list.model()->index(row, 0).data().toString();
    return texts.join("; ");
}

} // namespace orlo::test
