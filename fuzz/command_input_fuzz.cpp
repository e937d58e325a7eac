// Arbitrary answers at every prompt of a session on the sample drawing: no
// crash, no hang, no sanitizer report, and no command may leave anything
// open or unreleased.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string_view>

#include <dlfcn.h>

#include "FuzzSession.h"
#include "editor/Input.h"

// The module stays mapped for the whole run: libFuzzer keeps the coverage
// counters of every instrumented library it has seen.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    dlopen(PAVO_FUZZ_MODULE_DIR "/VxLayerCmds.pvx", RTLD_NOW | RTLD_NODELETE);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::ostringstream out;
    pavo::app::Session session(pavofuzz::fuzzSessionOptions(PAVO_FUZZ_RESOURCE_DIR, PAVO_FUZZ_MODULE_DIR),
                               pavo::editor::makeLinesInput(pavofuzz::answerLines(
                                   std::string_view(reinterpret_cast<const char*>(data), size), 200)),
                               out);
    if (!session.loadModules()) std::abort();
    // Fuzzed names would otherwise be files read and written.
    pavofuzz::removeFileCommands(session);
    if (!session.openSample()) std::abort();
    if (session.run() == pavo::app::kExitInternalError) std::abort();
    return 0;
}
