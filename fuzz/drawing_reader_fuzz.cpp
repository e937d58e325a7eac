// The drawing reader on arbitrary bytes: it must refuse or load, never crash,
// hang or trip a sanitizer; what it loads must save and load again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "files/DrawingFile.h"
#include "pavo_host.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pavo::files::LoadError error;
    auto db = pavo::files::readDrawing(std::string_view(reinterpret_cast<const char*>(data), size), "fuzz", error);
    if (!db) return 0;
    const std::string saved = pavo::files::writeDrawing(*db);
    auto again = pavo::files::readDrawing(saved, "fuzz-saved", error);
    if (!again || pavo::files::writeDrawing(*again) != saved) std::abort(); // a loaded drawing must round-trip
    return 0;
}
