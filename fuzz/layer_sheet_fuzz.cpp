// The layer manager's working copy of the layers on the sample drawing,
// driven by arbitrary lines as the dialog's script lines and editors give
// them: "@filter", "@sort", "@select", "@set COLUMN VALUE", "@new",
// "@delete", "@current", "@apply". No crash, no sanitizer report, nothing
// left open, and Apply only ever writes layers the drawing accepts.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string_view>

#include "FuzzSession.h"
#include "OxDbDatabase.h"
#include "editor/Input.h"
#include "layerhelper/LayerNameList.h"
#include "layermanager/LayerSheet.h"

namespace {

using layermanager::LayerColumn;
using layermanager::LayerSheet;
using layermanager::RowList;

std::wstring wide(std::string_view text) { return OxString::fromUtf8(text).str(); }

// The word before the first blank, and what follows it.
std::pair<std::string_view, std::string_view> split(std::string_view line) {
    const std::size_t blank = line.find(' ');
    if (blank == std::string_view::npos) return {line, {}};
    return {line.substr(0, blank), line.substr(blank + 1)};
}

void run(LayerSheet& sheet, std::string_view line, RowList& selected) {
    const auto [verb, rest] = split(line);
    if (verb == "@filter") {
        sheet.setFilter(wide(rest));
        selected.clear();
    } else if (verb == "@sort") {
        const auto column = static_cast<LayerColumn>(rest.empty() ? 0 : static_cast<unsigned char>(rest[0]) % 13);
        sheet.sortBy(column, rest.size() < 2 || rest[1] != 'd');
    } else if (verb == "@select") {
        const vxlayer::LayerNameList names(wide(rest), false);
        selected.clear();
        for (std::uint32_t r : sheet.shown())
            if (names.selects(sheet.row(r).name)) selected.push_back(r);
    } else if (verb == "@set") {
        const auto [heading, value] = split(rest);
        const auto column = layermanager::settableColumn(wide(heading));
        if (column) sheet.setValue(selected, *column, wide(value));
    } else if (verb == "@new") {
        selected = {sheet.newLayer()};
    } else if (verb == "@delete") {
        sheet.deleteRows(selected);
        std::erase_if(selected, [&](std::uint32_t r) { return sheet.row(r).deleted; });
    } else if (verb == "@current") {
        if (!selected.empty()) sheet.makeCurrent(selected.front());
    } else if (verb == "@apply") {
        sheet.apply();
        selected.clear();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::ostringstream out;
    pavo::app::Session session(pavofuzz::fuzzSessionOptions(PAVO_FUZZ_RESOURCE_DIR, PAVO_FUZZ_MODULE_DIR),
                               pavo::editor::makeLinesInput({}), out);
    if (!session.openSample()) std::abort();
    LayerSheet sheet(session.database());
    RowList selected;
    for (const std::string& line :
         pavofuzz::answerLines(std::string_view(reinterpret_cast<const char*>(data), size), 100))
        run(sheet, line, selected);
    sheet.apply();
    // What was applied reads back as it was written.
    LayerSheet again(session.database());
    if (again.layerCount() != sheet.layerCount()) std::abort();
    return 0;
}
