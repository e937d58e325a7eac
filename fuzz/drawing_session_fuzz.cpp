// Drawings changed where they are most likely to break a command that runs
// after they load (handles, block references, viewports, layers; see
// DrawingMutator.h), then picks and commands on what loaded: LIST, CHPROP,
// SETBYLAYER, the layer options, INSERT, VPLAYER in each layout, and the
// input's own answers. No crash, no hang, no sanitizer report, no internal
// error; a drawing the reader refuses is simply passed over.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>
#include <string_view>

#include <dlfcn.h>

#include "DrawingMutator.h"
#include "FuzzSession.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    dlopen(PAVO_FUZZ_MODULE_DIR "/VxLayerCmds.pvx", RTLD_NOW | RTLD_NODELETE);
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed) {
    std::mt19937_64 random(seed);
    const std::string changed =
        pavofuzz::mutateDrawingInput(std::string_view(reinterpret_cast<const char*>(data), size), random, LLVMFuzzerMutate);
    // Not a drawing (or grown too large): the bytes are changed as bytes.
    if (changed.empty() || changed.size() > maxSize) return LLVMFuzzerMutate(data, size, maxSize);
    std::memcpy(data, changed.data(), changed.size());
    return changed.size();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const pavo::app::SessionOptions options =
        pavofuzz::fuzzSessionOptions(PAVO_FUZZ_RESOURCE_DIR, PAVO_FUZZ_MODULE_DIR);
    std::ostringstream transcript;
    const int status =
        pavofuzz::runDrawingSession(std::string_view(reinterpret_cast<const char*>(data), size), options, transcript);
    if (status == pavo::app::kExitInternalError || status == pavo::app::kExitModuleNotLoaded) std::abort();
    return 0;
}
