#include "reporting/view/SharedDocument.h"

#include "platform/Memory.h"

namespace orlo::reporting
{

namespace
{
constexpr std::size_t LargePages = 50; // some 6 MB
}

std::shared_ptr<const Document> sharedDocument(Document&& document)
{
    return {new Document(std::move(document)), [](const Document* last) {
                const bool large = last->pages.size() > LargePages;
                delete last;
                if (large)
                    platform::returnFreedMemory();
            }};
}

} // namespace orlo::reporting
