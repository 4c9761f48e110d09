#include "FuzzTarget.h"
#include "Services/Library/LibraryDocument.h"

using namespace tamsy;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto document = LibraryDocument::decode(fuzz::asBytes(data, size));
    if (!document)
        return 0;
    // A document that was read can be written, and reads back as the same.
    const auto written = document->encode();
    fuzz::require(written.has_value());
    const auto again = LibraryDocument::decode(*written);
    fuzz::require(again && again->encode() == written);
    return 0;
}
