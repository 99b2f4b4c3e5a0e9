#pragma once

#include "reporting/Document.h"

#include <memory>

class QWidget;

namespace orlo::reporting
{

/// Asks how to print a document, whose current page counts from 0, and prints it. What goes wrong is told.
void printByDialog(QWidget& window, std::shared_ptr<const Document> document, int currentPage);

/// Asks for a file to save a report of that title to, with the suffix; empty for none. The dialog asks before an
/// existing file is replaced.
[[nodiscard]] QString askSaveFile(QWidget& window, const QString& caption, const QString& filter, const QString& title,
                                  const QString& suffix);

/// Tells what went wrong, in a message box of the window.
void warnOf(QWidget& window, const QString& text);

} // namespace orlo::reporting
