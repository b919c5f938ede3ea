#include "tests/support/DocumentContract.h"

#include "tests/support/MemoryDocument.h"

namespace velmora::test {

namespace {

class MemorySource : public DocumentSource {
public:
    std::shared_ptr<Document> Show(const PageSketch& page) override
    {
        if (present_) present_->End();
        present_ = std::make_shared<MemoryDocument>(page);
        return present_;
    }

private:
    std::shared_ptr<MemoryDocument> present_;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(InMemory, DocumentContract, testing::Values(MakeDocumentSource([]() {
                             return std::unique_ptr<DocumentSource>(std::make_unique<MemorySource>());
                         })));

}  // namespace velmora::test
