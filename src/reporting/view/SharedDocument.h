#pragma once

#include "reporting/Document.h"

#include <memory>

namespace orlo::reporting
{

/// A document for all who show it. When the last of them lets go of a large one, its memory goes back to the system.
[[nodiscard]] std::shared_ptr<const Document> sharedDocument(Document&& document);

} // namespace orlo::reporting
