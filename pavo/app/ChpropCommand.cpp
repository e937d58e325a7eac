// CHPROP: changes the colour, layer, linetype, lineweight, transparency,
// plot style and material of selected objects.
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "EntityProperties.h"
#include "HostCommandSets.h"
#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "PavoAcquireInput.h"
#include "SelectedObjects.h"
#include "db/LineWeights.h"
#include "editor/ColorText.h"
#include "editor/NumberText.h"
#include "oxed.h"

namespace pavo::app {
namespace {

constexpr const wchar_t* kProperties =
    L"Color LAyer LType LWeight TRansparency PStyle Material _Color LAyer LType LWeight TRansparency PStyle Material";

class Chprop {
public:
    explicit Chprop(std::vector<OxDbObjectId> ids) : m_ids(std::move(ids)), m_db(*m_ids.front().database()) {}
    int run();

private:
    using Change = std::function<void(OxDbEntity&)>;
    // Applies `change` to every object; those on locked layers are counted
    // and reported.
    void apply(const Change& change);
    // Asks `prompt`; Enter keeps the objects as they are (nullopt).
    std::optional<std::wstring> ask(const wchar_t* prompt, const wchar_t* keywords);
    // Asks `prompt` until `changeFor` makes a change of an answer, and
    // applies it; an answer it cannot use is refused with `refusal` and
    // asked again. Enter or Escape changes nothing.
    void askAndApply(const wchar_t* prompt, const wchar_t* keywords,
                     const std::function<std::optional<Change>(const std::wstring&)>& changeFor,
                     const std::function<std::wstring(const std::wstring&)>& refusal);
    void color();
    void layer();
    void linetype();
    void lineweight();
    void transparency();
    void plotStyle();
    void material();

    std::vector<OxDbObjectId> m_ids;
    OxDbDatabase& m_db;
    bool m_cancelled = false;
};

int Chprop::run() {
    for (;;) {
        oxedInitGet(0, kProperties);
        OxString keyword;
        const int status =
            oxedGetKword(L"\nEnter property to change [Color/LAyer/LType/LWeight/TRansparency/PStyle/Material]: ", keyword);
        if (status == STATUS_NONE) return STATUS_NORMAL;
        if (status != STATUS_NORMAL) return status;
        if (keyword == L"Color") color();
        else if (keyword == L"LAyer") layer();
        else if (keyword == L"LType") linetype();
        else if (keyword == L"LWeight") lineweight();
        else if (keyword == L"TRansparency") transparency();
        else if (keyword == L"PStyle") plotStyle();
        else if (keyword == L"Material") material();
        if (m_cancelled) return STATUS_CANCEL;
    }
}

void Chprop::apply(const Change& change) {
    int locked = 0;
    for (const OxDbObjectId& id : m_ids) {
        OxDbEntity* entity = nullptr;
        const Ox::ErrorStatus es = oxdbOpenObject(entity, id, OxDb::kForWrite);
        if (es == Ox::eOnLockedLayer) ++locked;
        if (es != Ox::eOk) continue;
        change(*entity);
        entity->close();
    }
    if (locked > 0) oxutPrintf(L"\n%d object(s) on a locked layer were not changed.", locked);
}

std::optional<std::wstring> Chprop::ask(const wchar_t* prompt, const wchar_t* keywords) {
    oxedInitGet(OX_INP_ARBITRARY, keywords);
    OxString answer;
    const int status = oxedGetKword(prompt, answer);
    if (status == STATUS_CANCEL) m_cancelled = true;
    if (status != STATUS_NORMAL || answer.isEmpty()) return std::nullopt;
    return answer.str();
}

void Chprop::color() {
    PavoAcquireInput input;
    input.prompt(L"\nNew color [Truecolor/COlorbook] <ByLayer>: ");
    OxCmColor color;
    const int status = input.getColor(color, PavoAcquireInput::kAllowByBlock | PavoAcquireInput::kAllowByLayer);
    if (status == STATUS_CANCEL) m_cancelled = true;
    if (status == STATUS_NORMAL) apply([&](OxDbEntity& e) { e.setColor(color); });
}

void Chprop::layer() {
    for (;;) {
        OxString name;
        const int status = oxedGetString(1, L"\nEnter new layer name: ", name);
        if (status == STATUS_CANCEL) m_cancelled = true;
        name.trim();
        if (status != STATUS_NORMAL || name.isEmpty()) return;
        OxDbLayerTable* table = nullptr;
        OxDbObjectId id;
        if (m_db.getLayerTable(table, OxDb::kForRead) == Ox::eOk) {
            table->getIdAt(name.kwszPtr(), id);
            table->close();
        }
        if (!id.isNull()) return apply([&](OxDbEntity& e) { e.setLayer(id); });
        oxutPrintf(L"\nCannot find layer \"%ls\".", name);
    }
}

void Chprop::askAndApply(const wchar_t* prompt, const wchar_t* keywords,
                         const std::function<std::optional<Change>(const std::wstring&)>& changeFor,
                         const std::function<std::wstring(const std::wstring&)>& refusal) {
    for (;;) {
        const std::optional<std::wstring> answer = ask(prompt, keywords);
        if (!answer) return;
        if (const std::optional<Change> change = changeFor(*answer)) return apply(*change);
        oxutPrintf(L"\n%ls", refusal(*answer));
    }
}

void Chprop::linetype() {
    askAndApply(
        L"\nEnter new linetype name or [ByLayer/ByBlock] <keep>: ", L"ByLayer ByBlock _ByLayer ByBlock",
        [&](const std::wstring& name) -> std::optional<Change> {
            std::optional<OxDbObjectId> id;
            if (name == L"ByLayer") id = m_db.byLayerLinetype();
            else if (name == L"ByBlock") id = m_db.byBlockLinetype();
            else id = linetypeNamed(m_db, OxString(name));
            if (!id) return std::nullopt;
            return [id = *id](OxDbEntity& e) { e.setLinetype(id); };
        },
        [](const std::wstring& name) {
            return L"Linetype \"" + name + L"\" is neither in the drawing nor in its linetype file.";
        });
}

void Chprop::lineweight() {
    askAndApply(
        L"\nEnter new lineweight in millimetres or [ByLayer/ByBlock/Default] <keep>: ",
        L"ByLayer ByBlock Default _ByLayer ByBlock Default",
        [](const std::wstring& answer) -> std::optional<Change> {
            std::optional<OxDb::LineWeight> weight;
            if (answer == L"ByLayer") weight = OxDb::kLnWtByLayer;
            else if (answer == L"ByBlock") weight = OxDb::kLnWtByBlock;
            else if (answer == L"Default") weight = OxDb::kLnWtByLwDefault;
            else if (const std::optional<double> mm = editor::parseReal(answer))
                weight = db::standardLineWeightOfMillimetres(*mm);
            if (!weight) return std::nullopt;
            return [weight = *weight](OxDbEntity& e) { e.setLineWeight(weight); };
        },
        [](const std::wstring&) {
            return std::wstring(L"Invalid lineweight: give a standard one such as 0.25 or 0.50 (millimetres), "
                                L"ByLayer, ByBlock or Default.");
        });
}

void Chprop::transparency() {
    askAndApply(
        L"\nEnter transparency value (0-90) or [ByLayer/ByBlock] <keep>: ", L"ByLayer ByBlock _ByLayer ByBlock",
        [](const std::wstring& answer) -> std::optional<Change> {
            const std::optional<OxCmTransparency> t = editor::parseTransparencyText(answer);
            if (!t) return std::nullopt;
            return [t = *t](OxDbEntity& e) { e.setTransparency(t); };
        },
        [](const std::wstring&) { return std::wstring(L"Requires ByLayer, ByBlock or a transparency from 0 to 90."); });
}

void Chprop::plotStyle() {
    if (m_db.pstylemode() != 0) {
        oxutPrintf(L"\nThe drawing uses colour-dependent plot styles: objects take their plot style from their colour.");
        return;
    }
    askAndApply(
        L"\nEnter plot style name or [ByLayer/ByBlock] <keep>: ", L"ByLayer ByBlock _ByLayer ByBlock",
        [&](const std::wstring& name) -> std::optional<Change> {
            // Checked once, before any object is opened.
            if (!isPlotStyleName(m_db, OxString(name))) return std::nullopt;
            return [this, name = OxString(name)](OxDbEntity& e) { setPlotStyleByName(m_db, e, name); };
        },
        [](const std::wstring& name) { return L"Plot style \"" + name + L"\" is not in the drawing."; });
}

void Chprop::material() {
    askAndApply(
        L"\nEnter material name or [ByLayer/ByBlock/Global] <keep>: ", L"ByLayer ByBlock Global _ByLayer ByBlock Global",
        [&](const std::wstring& name) -> std::optional<Change> {
            const std::optional<OxDbObjectId> id = materialNamed(m_db, OxString(name));
            if (!id) return std::nullopt;
            return [id = *id](OxDbEntity& e) { e.setMaterial(id); };
        },
        [](const std::wstring& name) { return L"Material \"" + name + L"\" is not in the drawing."; });
}

int chprop() {
    std::vector<OxDbObjectId> ids = objectsToWorkOn();
    if (ids.empty() || !ids.front().database()) return STATUS_NONE;
    return Chprop(std::move(ids)).run();
}

} // namespace

void registerPropertyCommands(const AddHostCommand& add) {
    add(L"CHPROP", L"changes the colour, layer, linetype, lineweight and more of selected objects", [] { return chprop(); });
}

} // namespace pavo::app
