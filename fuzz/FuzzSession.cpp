#include "FuzzSession.h"

#include <cmath>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "editor/Input.h"
#include "files/DrawingFile.h"

namespace pavofuzz {

namespace {

using json = nlohmann::json;

// `object`'s member `key`, or null (also when `object` is no object).
const json& member(const json& object, const char* key) {
    static const json none;
    if (!object.is_object()) return none;
    const auto it = object.find(key);
    return it != object.end() ? *it : none;
}

std::string textOf(const json& object, const char* key) {
    const json& value = member(object, key);
    return value.is_string() ? value.get<std::string>() : std::string();
}

// The points an object can be picked at, as typed: "x,y".
std::string pointText(double x, double y) {
    std::ostringstream out;
    out.precision(17);
    out << x << ',' << y;
    return out.str();
}

double numberAt(const json& array, std::size_t i) {
    return array.is_array() && array.size() > i && array[i].is_number() ? array[i].get<double>() : 0.0;
}

double numberOf(const json& object, const char* key) {
    const json& value = member(object, key);
    return value.is_number() ? value.get<double>() : 0.0;
}

// A point on the object's outline (where a pick finds it), or nothing.
std::string pickPoint(const json& entity) {
    const std::string type = textOf(entity, "t");
    const json& p = member(entity, "p");
    const json& s = member(entity, "s");
    const json& v = member(entity, "v");
    if (type == "line") return pointText(numberAt(s, 0), numberAt(s, 1));
    if (type == "polyline" && v.is_array() && !v.empty()) return pointText(numberAt(v[0], 0), numberAt(v[0], 1));
    if (type == "circle") return pointText(numberAt(p, 0) + numberOf(entity, "r"), numberAt(p, 1));
    if (type == "arc") {
        const double r = numberOf(entity, "r"), a = numberOf(entity, "sa");
        return pointText(numberAt(p, 0) + r * std::cos(a), numberAt(p, 1) + r * std::sin(a));
    }
    if (type == "viewport") return pointText(numberAt(p, 0) + numberOf(entity, "w") / 2, numberAt(p, 1));
    if (p.is_array()) return pointText(numberAt(p, 0), numberAt(p, 1));
    return {};
}

const json& listOf(const json& object, const char* key) {
    static const json empty = json::array();
    const json& value = member(object, key);
    return value.is_array() ? value : empty;
}

const json* blockWithHandle(const json& drawing, const std::string& handle) {
    for (const json& block : listOf(drawing, "blocks"))
        if (textOf(block, "h") == handle) return &block;
    return nullptr;
}

// Picks at up to `most` objects of `block`, each followed by LIST of what
// the pick selected.
void pickAndList(const json* block, std::size_t most, std::vector<std::string>& answers) {
    if (!block) return;
    std::size_t n = 0;
    for (const json& entity : listOf(*block, "entities")) {
        if (n++ == most) break;
        const std::string at = pickPoint(entity);
        if (at.empty()) continue;
        answers.insert(answers.end(), {at, "LIST", "^C", "LIST", at, ""});
    }
}

// The first viewport of a sheet that is not the sheet itself: where it is
// picked, or nothing.
std::string viewportPick(const json* sheet) {
    if (!sheet) return {};
    for (const json& entity : listOf(*sheet, "entities"))
        if (textOf(entity, "t") == "viewport" && numberOf(entity, "n") != 1) return pickPoint(entity);
    return {};
}

void drawSomething(std::vector<std::string>& answers) {
    answers.insert(answers.end(), {"LINE", "0,0", "10,10", "", "CIRCLE", "5,5", "2"});
}

} // namespace

std::vector<std::string> answerLines(std::string_view data, std::size_t most) {
    std::vector<std::string> lines;
    while (lines.size() < most) {
        const std::size_t end = data.find('\n');
        lines.emplace_back(data.substr(0, end));
        if (end == std::string_view::npos) break;
        data.remove_prefix(end + 1);
    }
    return lines;
}

pavo::app::SessionOptions fuzzSessionOptions(const std::string& resourceDir, const std::string& moduleDir) {
    pavo::app::SessionOptions options;
    options.resourcePath = {resourceDir};
    options.modulePath = {moduleDir};
    options.supportPath = {resourceDir + "/support"};
    options.noDialogs = true;
    return options;
}

void removeFileCommands(pavo::app::Session& session) {
    // PLOT and EXPORT write pictures (and would load Qt, which fuzz builds leave out).
    for (const wchar_t* name : {L"OPEN", L"NEW", L"SAVE", L"SAVEAS", L"QUIT", L"LAYERSTATE", L"PLOT", L"EXPORT"})
        session.commands().removeCommand(name);
}

DrawingInput splitDrawingInput(std::string_view data) {
    const std::size_t mark = data.find(kAnswersMark);
    if (mark == std::string_view::npos) return {data, {}};
    return {data.substr(0, mark), data.substr(mark + kAnswersMark.size())};
}

std::vector<std::string> exerciseAnswers(std::string_view drawingText) {
    const json drawing = json::parse(drawingText, nullptr, false);
    if (!drawing.is_object()) return {};
    std::vector<std::string> answers;
    const json& layouts = listOf(drawing, "layouts");
    // Model space first (where the drawing opens when TILEMODE is 1).
    answers.insert(answers.end(), {"TILEMODE", "1"});
    for (const json& layout : layouts)
        if (textOf(layout, "name") == "Model") pickAndList(blockWithHandle(drawing, textOf(layout, "block")), 6, answers);
    answers.insert(answers.end(), {"LIST", "ALL", "", "-LAYER", "?", "*", "Freeze", "*", "Thaw", "*", "LOck", "*",
                                   "Unlock", "*", "Color", "3", "*", "OFF", "*", "Yes", "ON", "*", ""});
    for (const json& block : listOf(drawing, "blocks")) {
        const std::string name = textOf(block, "name");
        if (!name.empty() && name[0] != '*') answers.insert(answers.end(), {"INSERT", name, "1,1", "", "", "", "", "", ""});
    }
    for (const json& layout : layouts) {
        const std::string name = textOf(layout, "name");
        if (name.empty() || name == "Model") continue;
        answers.insert(answers.end(), {"LAYOUT", "Set", name, "PSPACE"});
        const json* sheet = blockWithHandle(drawing, textOf(layout, "block"));
        pickAndList(sheet, 6, answers);
        answers.insert(answers.end(), {"LIST", "ALL", "", "VPLAYER", "Freeze", "*", "All", "Color", "5", "*", "All",
                                       "Reset", "*", "All", "", "MSPACE"});
        pickAndList(sheet, 3, answers);
        answers.insert(answers.end(), {"VPLAYER", "Freeze", "0", "", "List", viewportPick(sheet), "", "LIST", "ALL", ""});
        drawSomething(answers);
    }
    // Last, what changes every object: the next drawing starts afresh.
    answers.insert(answers.end(), {"TILEMODE", "1"});
    drawSomething(answers);
    answers.insert(answers.end(), {"CHPROP", "ALL", "", "Color", "1", "", "SETBYLAYER", "ALL", "", "Yes", "Yes"});
    return answers;
}

int runDrawingSession(std::string_view data, const pavo::app::SessionOptions& options, std::ostream& transcript) {
    const DrawingInput input = splitDrawingInput(data);
    pavo::files::LoadError error;
    std::unique_ptr<OxDbDatabase> db = pavo::files::readDrawing(input.drawing, "fuzz", error);
    if (!db) return -1;
    std::vector<std::string> answers = exerciseAnswers(input.drawing);
    if (!input.answers.empty())
        for (std::string& line : answerLines(input.answers, 200))
            answers.push_back(std::move(line));
    pavo::app::Session session(options, pavo::editor::makeLinesInput(std::move(answers)), transcript);
    if (!session.loadModules()) return pavo::app::kExitModuleNotLoaded;
    removeFileCommands(session);
    session.useDrawing(std::move(db));
    return session.run();
}

} // namespace pavofuzz
