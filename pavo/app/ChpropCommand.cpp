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
    // Applies `change` to every object; those on locked layers are counted
    // and reported.
    void apply(const std::function<void(OxDbEntity&)>& change);
    // Asks `prompt`; Enter keeps the objects as they are (nullopt).
    std::optional<std::wstring> ask(const wchar_t* prompt, const wchar_t* keywords);
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

void Chprop::apply(const std::function<void(OxDbEntity&)>& change) {
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

void Chprop::linetype() {
    for (;;) {
        const std::optional<std::wstring> name =
            ask(L"\nEnter new linetype name or [ByLayer/ByBlock] <keep>: ", L"ByLayer ByBlock _ByLayer ByBlock");
        if (!name) return;
        std::optional<OxDbObjectId> id;
        if (*name == L"ByLayer") id = m_db.byLayerLinetype();
        else if (*name == L"ByBlock") id = m_db.byBlockLinetype();
        else id = linetypeNamed(m_db, OxString(*name));
        if (id) return apply([&](OxDbEntity& e) { e.setLinetype(*id); });
        oxutPrintf(L"\nLinetype \"%ls\" is neither in the drawing nor in its linetype file.", *name);
    }
}

void Chprop::lineweight() {
    for (;;) {
        const std::optional<std::wstring> answer = ask(L"\nEnter new lineweight in millimetres or [ByLayer/ByBlock/Default] <keep>: ",
                                                       L"ByLayer ByBlock Default _ByLayer ByBlock Default");
        if (!answer) return;
        std::optional<OxDb::LineWeight> weight;
        if (*answer == L"ByLayer") weight = OxDb::kLnWtByLayer;
        else if (*answer == L"ByBlock") weight = OxDb::kLnWtByBlock;
        else if (*answer == L"Default") weight = OxDb::kLnWtByLwDefault;
        else if (const std::optional<double> mm = editor::parseReal(*answer))
            weight = db::standardLineWeightOfMillimetres(*mm);
        if (weight) return apply([&](OxDbEntity& e) { e.setLineWeight(*weight); });
        oxutPrintf(L"\nInvalid lineweight: give a standard one such as 0.25 or 0.50 (millimetres), ByLayer, ByBlock or "
                   L"Default.");
    }
}

void Chprop::transparency() {
    for (;;) {
        const std::optional<std::wstring> answer =
            ask(L"\nEnter transparency value (0-90) or [ByLayer/ByBlock] <keep>: ", L"ByLayer ByBlock _ByLayer ByBlock");
        if (!answer) return;
        if (const std::optional<OxCmTransparency> t = editor::parseTransparencyText(*answer))
            return apply([&](OxDbEntity& e) { e.setTransparency(*t); });
        oxutPrintf(L"\nRequires ByLayer, ByBlock or a transparency from 0 to 90.");
    }
}

void Chprop::plotStyle() {
    if (m_db.pstylemode() != 0) {
        oxutPrintf(L"\nThe drawing uses colour-dependent plot styles: objects take their plot style from their colour.");
        return;
    }
    for (;;) {
        const std::optional<std::wstring> name =
            ask(L"\nEnter plot style name or [ByLayer/ByBlock] <keep>: ", L"ByLayer ByBlock _ByLayer ByBlock");
        if (!name) return;
        bool known = true;
        apply([&](OxDbEntity& e) { known = setPlotStyleByName(m_db, e, OxString(*name)) && known; });
        if (known) return;
        oxutPrintf(L"\nPlot style \"%ls\" is not in the drawing.", *name);
    }
}

void Chprop::material() {
    for (;;) {
        const std::optional<std::wstring> name = ask(L"\nEnter material name or [ByLayer/ByBlock/Global] <keep>: ",
                                                     L"ByLayer ByBlock Global _ByLayer ByBlock Global");
        if (!name) return;
        if (const std::optional<OxDbObjectId> id = materialNamed(m_db, OxString(*name)))
            return apply([&](OxDbEntity& e) { e.setMaterial(*id); });
        oxutPrintf(L"\nMaterial \"%ls\" is not in the drawing.", *name);
    }
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
