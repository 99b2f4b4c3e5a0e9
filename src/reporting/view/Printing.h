#pragma once

#include "reporting/Renderer.h"

#include <functional>
#include <memory>

class QPrinter;

namespace orlo::reporting
{

using PrinterFactory = std::function<std::unique_ptr<QPrinter>()>;

/// The printer that a run goes to: the system's default printer; null where there is none.
[[nodiscard]] std::unique_ptr<QPrinter> defaultPrinter();
/// Replaces the source of defaultPrinter(), for tests and pictures; an empty function gives the system's back.
void setPrinterFactory(PrinterFactory factory);

/// Sets paper and margins as the document wants them, so that a page's points are the paper's.
void preparePrinter(QPrinter& printer, const Document& document);

/// Prints on the paper that the printer is set to: a page that is too large for it is made smaller, a smaller one
/// stands in its middle. The pages are those from to to, counted from 1, a last page of 0 meaning no upper limit, as
/// often as the printer is set to. False if progress cancelled the job. Raises 68 where the printer can't be reached,
/// 75 where the file that it prints into can't be written.
bool printDocument(QPrinter& printer, const Document& document, int from = 1, int to = 0,
                   const Progress& progress = {});

} // namespace orlo::reporting
