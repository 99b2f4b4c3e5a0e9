#pragma once

#include "reporting/Document.h"

#include <memory>

class QWidget;

namespace orlo::reporting
{

/// Shows the print dialog for a document, whose current page counts from 0, and prints it. Shows a message if that
/// fails.
void printByDialog(QWidget& window, std::shared_ptr<const Document> document, int currentPage);

/// Asks where to save a report with this title and suffix; empty if cancelled. The dialog asks before replacing a file.
[[nodiscard]] QString askSaveFile(QWidget& window, const QString& caption, const QString& filter, const QString& title,
                                  const QString& suffix);

/// Shows a failure in a message box of the window.
void warnOf(QWidget& window, const QString& text);

} // namespace orlo::reporting
