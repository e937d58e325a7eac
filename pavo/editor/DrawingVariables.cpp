// System variables kept in the drawing: read from and written to the working
// database, so that they follow the drawing through save and load.
#include "OxDbDatabase.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "PavoAcquireInput.h"
#include "db/LineWeights.h"
#include "editor/ColorText.h"
#include "editor/SystemVariableTable.h"

namespace pavo::editor {
namespace {

using Type = SystemVariables::Type;
using Storage = SystemVariables::Storage;
using Reader = std::function<std::optional<SysVarValue>(OxDbDatabase&)>;
using Writer = std::function<std::wstring(OxDbDatabase&, const SysVarValue&)>;

const std::wstring& text(const SysVarValue& value) { return std::get<std::wstring>(value); }
long long integer(const SysVarValue& value) { return std::get<long long>(value); }

std::wstring refusal(Ox::ErrorStatus es) { return es == Ox::eOk ? std::wstring() : L"The drawing refused the value."; }

template <class Record> std::optional<SysVarValue> recordName(const OxDbObjectId& id) {
    Record* record = nullptr;
    if (id.isNull() || oxdbOpenObject(record, id, OxDb::kForRead) != Ox::eOk) return std::nullopt;
    std::wstring name = record->name().str();
    record->close();
    return name;
}

template <class Table> std::optional<OxDbObjectId> recordNamed(OxDbDatabase& db, const std::wstring& name) {
    Table* table = nullptr;
    if (db.getSymbolTable(table, OxDb::kForRead) != Ox::eOk) return std::nullopt;
    OxDbObjectId id;
    const Ox::ErrorStatus es = table->getIdAt(name.c_str(), id, false);
    table->close();
    if (es != Ox::eOk) return std::nullopt;
    return id;
}

std::optional<SysVarValue> readClayer(OxDbDatabase& db) { return recordName<OxDbLayerTableRecord>(db.clayer()); }

std::wstring writeClayer(OxDbDatabase& db, const SysVarValue& value) {
    const std::optional<OxDbObjectId> id = recordNamed<OxDbLayerTable>(db, text(value));
    if (!id) return L"Layer \"" + text(value) + L"\" not found.";
    const Ox::ErrorStatus es = db.setClayer(*id);
    if (es == Ox::eLayerFrozen) return L"Layer \"" + text(value) + L"\" is frozen and cannot be made current.";
    return refusal(es);
}

std::optional<SysVarValue> readCeltype(OxDbDatabase& db) { return recordName<OxDbLinetypeTableRecord>(db.celtype()); }

std::wstring writeCeltype(OxDbDatabase& db, const SysVarValue& value) {
    const std::optional<OxDbObjectId> id = recordNamed<OxDbLinetypeTable>(db, text(value));
    if (!id) return L"Linetype \"" + text(value) + L"\" is not loaded.";
    return refusal(db.setCeltype(*id));
}

std::optional<SysVarValue> readCecolor(OxDbDatabase& db) { return db.cecolor().colorNameForDisplay().str(); }

std::wstring writeCecolor(OxDbDatabase& db, const SysVarValue& value) {
    const std::optional<OxCmColor> color = parseColorText(
        text(value), PavoAcquireInput::kAllowByLayer | PavoAcquireInput::kAllowByBlock, true);
    if (!color) return L"Requires ByLayer, ByBlock, a colour number (1-255), a colour name or r,g,b.";
    return refusal(db.setCecolor(*color));
}

std::optional<SysVarValue> readCetransparency(OxDbDatabase& db) { return transparencyText(db.cetransparency()); }

std::wstring writeCetransparency(OxDbDatabase& db, const SysVarValue& value) {
    const std::optional<OxCmTransparency> transparency = parseTransparencyText(text(value));
    if (!transparency) return L"Requires ByLayer, ByBlock or a transparency from 0 to 90.";
    return refusal(db.setCetransparency(*transparency));
}

std::optional<SysVarValue> readCepstyle(OxDbDatabase& db) { return db.cepstyle().str(); }

std::wstring writeCepstyle(OxDbDatabase& db, const SysVarValue& value) {
    if (db.setCepstyle(text(value).c_str()) != Ox::eOk)
        return L"Plot style \"" + text(value) + L"\" is not in the drawing; use ByLayer, ByBlock or one of its plot styles.";
    return {};
}

// The standard lineweights and -1 ByLayer, -2 ByBlock, -3 Default.
std::wstring checkCelweight(const SysVarValue& value) {
    if (db::isEntityLineWeight(std::get<long long>(value))) return {};
    return L"Value must be -1 (ByLayer), -2 (ByBlock), -3 (Default) or a standard lineweight in hundredths of a "
           L"millimetre.";
}

OxDbLayoutManager* layoutManager() {
    OxDbHostApplicationServices* services = oxdbHostApplicationServices();
    return services ? services->layoutManager() : nullptr;
}

std::optional<SysVarValue> readCtab(OxDbDatabase& db) {
    OxDbLayoutManager* layouts = layoutManager();
    OxString name;
    if (!layouts || layouts->getActiveLayoutName(name, true, &db) != Ox::eOk) return std::nullopt;
    return name.str();
}

std::wstring writeCtab(OxDbDatabase& db, const SysVarValue& value) {
    OxDbLayoutManager* layouts = layoutManager();
    if (!layouts) return L"Layouts cannot be switched now.";
    if (!layouts->layoutExists(text(value).c_str(), &db)) return L"Layout \"" + text(value) + L"\" not found.";
    return refusal(layouts->setCurrentLayout(text(value).c_str(), &db));
}

// Setting CVPORT switches to that viewport of the current layout.
std::wstring writeCvport(OxDbDatabase& db, const SysVarValue& value) {
    const std::wstring number = std::to_wstring(integer(value));
    switch (db.setCvport(static_cast<int>(integer(value)))) {
    case Ox::eOk:
        return {};
    case Ox::eInvalidInput:
        return L"Viewport " + number + L" is off.";
    default:
        if (db.tilemode()) return L"Model space has only viewport " + std::to_wstring(db.cvport()) + L".";
        return L"There is no viewport " + number + L" in the current layout.";
    }
}

// A header integer read and written through a database getter and setter.
template <class Get, class Set> std::pair<Reader, Writer> header(Get get, Set set) {
    return {[get](OxDbDatabase& db) -> std::optional<SysVarValue> { return static_cast<long long>((db.*get)()); },
            [set](OxDbDatabase& db, const SysVarValue& value) {
                return refusal((db.*set)(static_cast<int>(integer(value))));
            }};
}

SystemVariableRow drawing(std::wstring name, Type type, double minimum, double maximum, SysVarValue defaultValue,
                          std::pair<Reader, Writer> access, std::wstring description,
                          std::function<std::wstring(const SysVarValue&)> check = {}) {
    return {{std::move(name), type, Storage::Drawing, !access.second, minimum, maximum, std::move(description)},
            std::move(defaultValue),
            std::move(check),
            std::move(access.first),
            std::move(access.second)};
}

} // namespace

std::vector<SystemVariableRow> drawingVariableRows() {
    const auto tilemode = std::pair<Reader, Writer>{
        [](OxDbDatabase& db) -> std::optional<SysVarValue> { return db.tilemode() ? 1LL : 0LL; },
        [](OxDbDatabase& db, const SysVarValue& value) { return refusal(db.setTilemode(integer(value) != 0)); }};
    const auto ltscale = std::pair<Reader, Writer>{
        [](OxDbDatabase& db) -> std::optional<SysVarValue> { return db.ltscale(); },
        [](OxDbDatabase& db, const SysVarValue& value) { return refusal(db.setLtscale(std::get<double>(value))); }};
    const auto dwgname = std::pair<Reader, Writer>{
        [](OxDbDatabase& db) -> std::optional<SysVarValue> { return db.fileName().str(); }, Writer()};
    const auto celweight = std::pair<Reader, Writer>{
        [](OxDbDatabase& db) -> std::optional<SysVarValue> { return static_cast<long long>(db.celweight()); },
        [](OxDbDatabase& db, const SysVarValue& value) {
            return refusal(db.setCelweight(static_cast<OxDb::LineWeight>(integer(value))));
        }};
    const auto positive = [](const SysVarValue& value) {
        return std::get<double>(value) > 0 ? std::wstring() : std::wstring(L"Value must be positive.");
    };
    std::vector<SystemVariableRow> rows = {
        drawing(L"CECOLOR", Type::String, 0, 0, L"ByLayer", {readCecolor, writeCecolor}, L"Colour of new objects"),
        drawing(L"CELTYPE", Type::String, 0, 0, L"ByLayer", {readCeltype, writeCeltype}, L"Linetype of new objects"),
        drawing(L"CELWEIGHT", Type::Int16, -3, 211, -1LL,
                celweight,
                L"Lineweight of new objects", checkCelweight),
        drawing(L"CEPSTYLE", Type::String, 0, 0, L"ByLayer", {readCepstyle, writeCepstyle},
                L"Plot style of new objects (named plot styles)"),
        drawing(L"CETRANSPARENCY", Type::String, 0, 0, L"ByLayer", {readCetransparency, writeCetransparency},
                L"Transparency of new objects"),
        drawing(L"CLAYER", Type::String, 0, 0, L"0", {readClayer, writeClayer}, L"The current layer"),
        drawing(L"CTAB", Type::String, 0, 0, L"Model", {readCtab, writeCtab}, L"The current layout"),
        drawing(L"CVPORT", Type::Int16, 1, 32767, 2LL,
                {header(&OxDbDatabase::cvport, &OxDbDatabase::setCvport).first, writeCvport},
                L"The viewport the user works in"),
        drawing(L"DWGNAME", Type::String, 0, 0, L"", dwgname, L"The drawing's file name"),
        drawing(L"EXTNAMES", Type::Int16, 0, 1, 1LL, header(&OxDbDatabase::extnames, &OxDbDatabase::setExtnames),
                L"Long symbol names with any characters"),
        drawing(L"LTSCALE", Type::Real, 0, 0, 1.0, ltscale, L"Global linetype scale", positive),
        drawing(L"MEASUREMENT", Type::Int16, 0, 1, 0LL,
                header(&OxDbDatabase::measurement, &OxDbDatabase::setMeasurement),
                L"Units of the drawing: 0 imperial, 1 metric"),
        drawing(L"PSTYLEMODE", Type::Int16, 0, 1, 1LL, header(&OxDbDatabase::pstylemode, &OxDbDatabase::setPstylemode),
                L"Plot styles: 1 colour-dependent, 0 named"),
        drawing(L"TILEMODE", Type::Int16, 0, 1, 1LL, tilemode, L"1 model space, 0 the current layout"),
    };
    return rows;
}

} // namespace pavo::editor
