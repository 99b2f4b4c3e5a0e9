#pragma once

#include "shell/frame/Screens.h"
#include "support/Controls.h"
#include "support/TestApp.h"
#include "widgets/Form.h"

#include <QMap>
#include <QPointer>

namespace orlo::test
{

/// Shows a form, without waiting for its end.
QWidget& showForm(const QString& name);

/// What a test's own words do with what follows them.
using Words = QMap<QString, std::function<void(const QStringList&)>>;

/// An open record form, driven by mouse and keys.
struct RecordScreen {
    QWidget& form;
    mutable QList<std::shared_ptr<Told>> told; ///< what the boxes answered by run() said
    mutable QString log;                       ///< how the last dialog driven by run() ended

    explicit RecordScreen(const QString& name);
    explicit RecordScreen(QWidget& shown) : form(shown) {}
    template <class W = QWidget>
    W& get(const char* name) const
    {
        return control<W>(form, name);
    }
    void click(const char* button) const { press(form, button); }
    void type(const QString& box, const QString& text) const;
    /// Does what the words say: F, P, N and L step, n, s, d, c and x press New, Save, Delete, Cancel and Close, E,
    /// Enter and Tab are keys, "yes", "no" and "ok" answer the next box, "preset" by Enter, "Name=text" types into
    /// txtName, "@0" clicks a row of the list, "den:Bear_Den_2" sets the den filter, "cmdFind>steps" works the dialog
    /// that a word opens. Any other word goes to the form's own actions or, if there are none, is one for work() or a
    /// control to click.
    void run(const QString& script, const std::function<void(const QString&)>& other = {}) const;
    /// Does one thing as hands do it, if the word is one: "key:Ctrl+C", "held:Return" (a key that repeats) and
    /// "type:text" go to the focus, "press:cmdX", "ctrl:", "shift:", "twice:" and "right:" (double clicks) and "wheel:"
    /// to a control or a grid's cell, "fgX,0,1"; "tip:" logs what shows there, "wide:fgX,1,90" drags a heading;
    /// "box:Ctrl+Y,N" sends keys to the next box until it is answered; "close" presses its close box. From "paint" or
    /// "colours:dark" on, the pictures tell what is painted, too.
    bool byHand(const QString& word) const;
    /// Does words that a test adds to these, "word=a,b" with tildes for blanks, and words of run(). A failure is told
    /// by its number.
    void play(const Words& added, const QString& steps, QStringList& seen) const;
    /// Does the steps of a case, its lines "> words", and returns each one with what was heard meanwhile, what the
    /// boxes said and what it changed of the look before.
    QStringList walk(const Words& added, const QStringList& lines, QStringList& heard, QStringList before,
                     const std::function<QStringList()>& look) const;
    void openDialog(const QString& opener, const QStringList& steps,
                    const std::function<void(const QString&)>& other) const;
    /// Does what the steps say in a dialog: "Last:X" sets txtLast, "tabX:1" turns to a page, "fgX:0" goes to a grid's
    /// row and "fgX!0" double-clicks it, "cmbDen:0" picks a row and "cmbDen=X" sets a text,
    /// "cmbDen^" opens the list and closes it, "lstScouts:0" clicks a row with Ctrl, Tab and E are keys, "yes" answers
    /// the next box, other words are clicks; underscores stand for blanks. A dialog that the steps leave open is
    /// cancelled. The log says whether they did, and for the state before the last step that it saw, whether it could
    /// be saved or find, and its boxes and lists.
    void work(const QPointer<QWidget>& dialog, const QStringList& steps) const;
    /// Does such a step if it sets or picks something; false if it is another.
    static bool set(QWidget& window, const QString& step);
    /// Puts a different value into every control that the file names, a line "txtCity City Bern" for each, saves, steps
    /// to the next record and back, and returns each control that doesn't show its value then, and each field that
    /// doesn't hold it, or the fourth word. "- Field" is one without a control of its own; a field of the schema that
    /// isn't named is returned, too.
    [[nodiscard]] QString lostFields(const QString& file, const QString& record) const;
    /// What the answered boxes said, one "Title: text" per line.
    [[nodiscard]] QString said() const;
    /// What every record form shows, by the columns of the tests' tables: the label, and which buttons for stepping and
    /// changing are live, "Next Last New Delete".
    [[nodiscard]] QMap<QString, QString> shown() const;
};

} // namespace orlo::test
