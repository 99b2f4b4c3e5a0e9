#pragma once

#include <QMetaType>

#include <functional>

class QWidget;

namespace orlo::test
{

using Open = std::function<void()>;

/// Makes a column "open" and a row for every window of the program, named by its form.
void addWindows();
/// The small pack, so that the windows have something to show, and the frame up.
void prepareForWindows();
/// Opens this row's window, passes every page of it to the function, and closes it; false if it didn't come up.
bool openAndLook(const Open& open, const std::function<void(QWidget&)>& look);

} // namespace orlo::test
