#pragma once

#include "reporting/Renderer.h"

#include <functional>
#include <memory>

class QPrinter;

namespace orlo::reporting
{

using PrinterFactory = std::function<std::unique_ptr<QPrinter>()>;

/// The system's default printer; null if there is none.
[[nodiscard]] std::unique_ptr<QPrinter> defaultPrinter();
/// Replaces defaultPrinter(), for tests and pictures; an empty function restores it.
void setPrinterFactory(PrinterFactory factory);

/// Sets the document's paper and margins, so that page points are paper points.
void preparePrinter(QPrinter& printer, const Document& document);

/// Prints on the printer's paper, scaling down pages that are too large and centring smaller ones. Prints pages from to
/// to, counted from 1 (to 0: no upper limit), as often as the printer's settings say. False if progress cancelled it.
/// Raises 68 if the printer can't be reached, 75 if its output file can't be written.
bool printDocument(QPrinter& printer, const Document& document, int from = 1, int to = 0,
                   const Progress& progress = {});

} // namespace orlo::reporting
