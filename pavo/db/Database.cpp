#include <mutex>
#include <unordered_set>

#include "DbInternal.h"
#include "DefaultDrawing.h"
#include "DictionaryImpl.h"
#include "LinetypeFileHook.h"
#include "OxDbDictionary.h"
#include "OxDbLayerStateManager.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "PaperSpace.h"

using namespace pavo::db;

namespace pavo::db {

// Live databases, so that an entity name handed back by a caller can be
// checked before it is trusted.
std::unordered_set<const OxDbDatabase*>& liveDatabases() {
    static std::unordered_set<const OxDbDatabase*> live;
    return live;
}

std::mutex& liveDatabasesMutex() {
    static std::mutex m;
    return m;
}

} // namespace pavo::db

OxDbDatabase::OxDbDatabase(bool buildDefaultDrawing) : m_impl(std::make_unique<Impl>(this)) {
    {
        std::lock_guard lock(liveDatabasesMutex());
        liveDatabases().insert(this);
    }
    if (buildDefaultDrawing) {
        buildDefaults(this);
        m_impl->modified = false;
    }
}

OxDbDatabase::~OxDbDatabase() {
    {
        std::lock_guard lock(liveDatabasesMutex());
        liveDatabases().erase(this);
    }
    if (OxDbHostApplicationServices* services = oxdbHostApplicationServices();
        services && services->workingDatabase() == this)
        services->setWorkingDatabase(nullptr);
}

namespace {

template <class T> Ox::ErrorStatus openAs(T*& obj, const OxDbObjectId& id, OxDb::OpenMode mode) {
    if (id.isNull()) {
        obj = nullptr;
        return Ox::eNullObjectId;
    }
    return oxdbOpenObject(obj, id, mode);
}

} // namespace

Ox::ErrorStatus OxDbDatabase::getSymbolTable(OxDbLayerTable*& table, OxDb::OpenMode mode) {
    return openAs(table, m_impl->layerTable, mode);
}
Ox::ErrorStatus OxDbDatabase::getSymbolTable(OxDbLinetypeTable*& table, OxDb::OpenMode mode) {
    return openAs(table, m_impl->linetypeTable, mode);
}
Ox::ErrorStatus OxDbDatabase::getSymbolTable(OxDbBlockTable*& table, OxDb::OpenMode mode) {
    return openAs(table, m_impl->blockTable, mode);
}

OxDbObjectId OxDbDatabase::layerTableId() const { return m_impl->layerTable; }
OxDbObjectId OxDbDatabase::linetypeTableId() const { return m_impl->linetypeTable; }
OxDbObjectId OxDbDatabase::blockTableId() const { return m_impl->blockTable; }
OxDbObjectId OxDbDatabase::namedObjectsDictionaryId() const { return m_impl->namedObjects; }
OxDbObjectId OxDbDatabase::layoutDictionaryId() const { return m_impl->layoutDictionary; }
OxDbObjectId OxDbDatabase::plotSettingsDictionaryId() const { return m_impl->plotSettingsDictionary; }
OxDbObjectId OxDbDatabase::materialDictionaryId() const { return m_impl->materialDictionary; }

namespace {

// A dictionary under the named-objects dictionary, made when asked.
OxDbObjectId namedDictionary(OxDbDatabase* db, OxDbObjectId& slot, const wchar_t* key, bool create) {
    if (!slot.isNull() || !create) return slot;
    auto* named = OxDbDictionary::cast(objectOf(db->namedObjectsDictionaryId()));
    if (!named) return slot;
    if (named->getAt(key, slot) != Ox::eOk) slot = dictionaryAddDirect(named, key, new OxDbDictionary());
    return slot;
}

} // namespace

OxDbObjectId OxDbDatabase::getPlotStyleNameDictionaryId(bool createIfNotFound) {
    return namedDictionary(this, m_impl->plotStyleNameDictionary, kPlotStyleNamesKey, createIfNotFound);
}

OxDbObjectId OxDbDatabase::layerStatesDictionaryId(bool createIfNotFound) {
    return namedDictionary(this, m_impl->layerStatesDictionary, kLayerStatesKey, createIfNotFound);
}

Ox::ErrorStatus OxDbDatabase::getNamedObjectsDictionary(OxDbDictionary*& dict, OxDb::OpenMode mode) {
    return openAs(dict, m_impl->namedObjects, mode);
}
Ox::ErrorStatus OxDbDatabase::getLayoutDictionary(OxDbDictionary*& dict, OxDb::OpenMode mode) {
    return openAs(dict, m_impl->layoutDictionary, mode);
}
Ox::ErrorStatus OxDbDatabase::getPlotSettingsDictionary(OxDbDictionary*& dict, OxDb::OpenMode mode) {
    return openAs(dict, m_impl->plotSettingsDictionary, mode);
}
Ox::ErrorStatus OxDbDatabase::getPlotStyleNameDictionary(OxDbDictionary*& dict, OxDb::OpenMode mode) {
    return openAs(dict, getPlotStyleNameDictionaryId(true), mode);
}

OxDbObjectId OxDbDatabase::layerZero() const { return m_impl->layerZero; }
OxDbObjectId OxDbDatabase::byLayerLinetype() const { return m_impl->byLayerLinetype; }
OxDbObjectId OxDbDatabase::byBlockLinetype() const { return m_impl->byBlockLinetype; }
OxDbObjectId OxDbDatabase::continuousLinetype() const { return m_impl->continuousLinetype; }
OxDbObjectId OxDbDatabase::byLayerMaterial() const { return m_impl->byLayerMaterial; }
OxDbObjectId OxDbDatabase::byBlockMaterial() const { return m_impl->byBlockMaterial; }
OxDbObjectId OxDbDatabase::globalMaterial() const { return m_impl->globalMaterial; }
OxDbObjectId OxDbDatabase::modelSpaceId() const { return m_impl->modelSpace; }

OxDbObjectId OxDbDatabase::currentSpaceId() const {
    if (m_impl->tilemode || cvport() > 1) return m_impl->modelSpace;
    OxDbHostApplicationServices* services = oxdbHostApplicationServices();
    OxDbLayoutManager* layouts = services ? services->layoutManager() : nullptr;
    return layouts ? layouts->getActiveLayoutBTRId(this) : m_impl->modelSpace;
}

OxDbObjectId OxDbDatabase::clayer() const { return m_impl->clayer; }

Ox::ErrorStatus OxDbDatabase::setClayer(const OxDbObjectId& layerId) {
    if (layerId.isNull()) return Ox::eInvalidLayer;
    if (layerId.database() != this) return Ox::eWrongDatabase;
    const auto* layer = OxDbLayerTableRecord::cast(objectOf(layerId));
    if (!layer) return Ox::eInvalidLayer;
    if (layerId.isErased()) return Ox::eWasErased;
    if (layer->isFrozen()) return Ox::eLayerFrozen;
    m_impl->clayer = layerId;
    m_impl->modified = true;
    ++m_impl->clayerSets;
    return Ox::eOk;
}

OxDbObjectId OxDbDatabase::celtype() const { return m_impl->celtype; }

Ox::ErrorStatus OxDbDatabase::setCeltype(const OxDbObjectId& linetypeId) {
    if (linetypeId.isNull()) return Ox::eNullObjectId;
    if (!OxDbLinetypeTableRecord::cast(objectOf(linetypeId))) return Ox::eNotThatKindOfClass;
    if (linetypeId.isErased()) return Ox::eWasErased;
    m_impl->celtype = linetypeId;
    m_impl->modified = true;
    return Ox::eOk;
}

OxCmColor OxDbDatabase::cecolor() const { return m_impl->cecolor; }

Ox::ErrorStatus OxDbDatabase::setCecolor(const OxCmColor& color) {
    m_impl->cecolor = color;
    m_impl->modified = true;
    return Ox::eOk;
}

OxDb::LineWeight OxDbDatabase::celweight() const { return m_impl->celweight; }

Ox::ErrorStatus OxDbDatabase::setCelweight(OxDb::LineWeight weight) {
    m_impl->celweight = weight;
    m_impl->modified = true;
    return Ox::eOk;
}

OxCmTransparency OxDbDatabase::cetransparency() const { return m_impl->cetransparency; }

Ox::ErrorStatus OxDbDatabase::setCetransparency(const OxCmTransparency& transparency) {
    if (transparency.method() == OxCmTransparency::kErrorValue) return Ox::eInvalidInput;
    m_impl->cetransparency = transparency;
    m_impl->modified = true;
    return Ox::eOk;
}

OxString OxDbDatabase::cepstyle() const { return m_impl->cepstyle; }

Ox::ErrorStatus OxDbDatabase::setCepstyle(const wchar_t* name) {
    OxString style(name ? name : L"");
    style.trim();
    if (style.compareNoCase(L"ByLayer") == 0) {
        style = L"ByLayer";
    } else if (style.compareNoCase(L"ByBlock") == 0) {
        style = L"ByBlock";
    } else {
        OxDbDictionary* styles = nullptr;
        if (getPlotStyleNameDictionary(styles, OxDb::kForRead) != Ox::eOk) return Ox::eKeyNotFound;
        OxDbObjectId id;
        const bool found = styles->getAt(style.kwszPtr(), id) == Ox::eOk;
        if (found) styles->nameAt(id, style); // the stored spelling
        styles->close();
        if (!found) return Ox::eKeyNotFound;
    }
    m_impl->cepstyle = style;
    m_impl->modified = true;
    return Ox::eOk;
}

bool OxDbDatabase::tilemode() const { return m_impl->tilemode; }

// A layout keeps the viewport the user worked in, so going back to it
// returns there.
Ox::ErrorStatus OxDbDatabase::setTilemode(bool modelSpace) {
    m_impl->tilemode = modelSpace;
    m_impl->modified = true;
    return Ox::eOk;
}

namespace {
Ox::ErrorStatus setInRange(int& slot, int value, int lo, int hi, bool& modified) {
    if (value < lo || value > hi) return Ox::eOutOfRange;
    slot = value;
    modified = true;
    return Ox::eOk;
}
} // namespace

int OxDbDatabase::pstylemode() const { return m_impl->pstylemode; }
Ox::ErrorStatus OxDbDatabase::setPstylemode(int mode) {
    return setInRange(m_impl->pstylemode, mode, 0, 1, m_impl->modified);
}
int OxDbDatabase::measurement() const { return m_impl->measurement; }
Ox::ErrorStatus OxDbDatabase::setMeasurement(int value) {
    return setInRange(m_impl->measurement, value, 0, 1, m_impl->modified);
}
int OxDbDatabase::extnames() const { return m_impl->extnames; }
Ox::ErrorStatus OxDbDatabase::setExtnames(int value) {
    return setInRange(m_impl->extnames, value, 0, 1, m_impl->modified);
}
double OxDbDatabase::ltscale() const { return m_impl->ltscale; }

Ox::ErrorStatus OxDbDatabase::setLtscale(double value) {
    if (!(value > 0)) return Ox::eOutOfRange;
    m_impl->ltscale = value;
    m_impl->modified = true;
    return Ox::eOk;
}

int OxDbDatabase::insunits() const { return m_impl->insunits; }
Ox::ErrorStatus OxDbDatabase::setInsunits(int value) {
    return setInRange(m_impl->insunits, value, 0, 24, m_impl->modified);
}
// Model space has one viewport (normally number 2); in a layout CVPORT is
// the number of the layout's active viewport.
int OxDbDatabase::cvport() const {
    return m_impl->tilemode ? m_impl->cvport : pavo::db::currentViewportNumber(this);
}

Ox::ErrorStatus OxDbDatabase::setCvport(int number) {
    if (number < 1 || number > 32767) return Ox::eOutOfRange;
    if (m_impl->tilemode) return number == m_impl->cvport ? Ox::eOk : Ox::eKeyNotFound;
    return pavo::db::makeViewportCurrent(this, number);
}
std::uint64_t OxDbDatabase::handseed() const { return m_impl->store.nextHandle; }

OxDbLayerStateManager* OxDbDatabase::getLayerStateManager() {
    if (!m_impl->layerStates) m_impl->layerStates = std::make_unique<OxDbLayerStateManager>(this);
    return m_impl->layerStates.get();
}

PavoUndoController* OxDbDatabase::undoController() {
    if (!m_impl->undo) m_impl->undo = std::make_unique<PavoUndoController>();
    return m_impl->undo.get();
}

const OxString& OxDbDatabase::fileName() const { return m_impl->fileName; }
void OxDbDatabase::setFileName(const wchar_t* name) { m_impl->fileName = name; }
bool OxDbDatabase::isModified() const { return m_impl->modified; }
void OxDbDatabase::setModified(bool modified) { m_impl->modified = modified; }

namespace {
pavo::db::LinetypeFileLoader& linetypeFileLoader() {
    static pavo::db::LinetypeFileLoader loader = nullptr;
    return loader;
}
} // namespace

void pavo::db::setLinetypeFileLoader(LinetypeFileLoader loader) { linetypeFileLoader() = loader; }

Ox::ErrorStatus OxDbDatabase::loadLineTypeFile(const wchar_t* pattern, const wchar_t* fileName) {
    if (!pattern || !*pattern || !fileName || !*fileName) return Ox::eInvalidInput;
    LinetypeFileLoader loader = linetypeFileLoader();
    return loader ? loader(this, pattern, fileName) : Ox::eFileNotFound;
}
