// Arbitrary answers at every prompt of a session on the sample drawing: no
// crash, no hang, no sanitizer report, and no command may leave anything
// open or unreleased.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include <dlfcn.h>

#include "app/Session.h"
#include "editor/Input.h"

// The module stays mapped for the whole run: libFuzzer keeps the coverage
// counters of every instrumented library it has seen.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    dlopen(PAVO_FUZZ_MODULE_DIR "/VxLayerCmds.pvx", RTLD_NOW | RTLD_NODELETE);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> lines;
    std::string current;
    for (std::size_t i = 0; i < size && lines.size() < 200; ++i) {
        if (data[i] == '\n') {
            lines.push_back(current);
            current.clear();
        } else {
            current += static_cast<char>(data[i]);
        }
    }
    lines.push_back(current);
    // Saving or opening files from fuzzed names would touch the disk.
    for (std::string& l : lines)
        if (l.find("SAVE") != std::string::npos || l.find("OPEN") != std::string::npos) l = "";

    std::ostringstream out;
    pavo::app::SessionOptions options;
    options.resourcePath = {PAVO_FUZZ_RESOURCE_DIR};
    options.modulePath = {PAVO_FUZZ_MODULE_DIR};
    options.noDialogs = true;
    pavo::app::Session session(options, pavo::editor::makeLinesInput(std::move(lines)), out);
    if (!session.loadModules()) std::abort();
    if (!session.openSample()) std::abort();
    if (session.run() == pavo::app::kExitInternalError) std::abort();
    return 0;
}
