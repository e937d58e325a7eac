// Layer name lists: splitting at commas, matching items against the layer
// table, and checking names for new layers.
#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "LayerNameRules.h"
#include "OxDbDatabase.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "PavoLayerHelper.h"
#include "WorkingDatabase.h"
#include "oxed.h"
#include "oxmd.h"
#include "oxut.h"

namespace {

constexpr const wchar_t* kNoMatchMessage = L"\nNo layers found matching pattern %ls. ";
constexpr std::wstring_view kConstraintsLayer = L"*pavo_constraints";

// Splits a name list into items without copying what is left of it, so
// that a list of any length is split in one pass. A comma at the very start
// of what is left does not split: the whole rest is then one item (so "A,,B"
// gives "A" and ",B").
class ItemSplitter {
public:
    explicit ItemSplitter(std::wstring_view list) : m_rest(list) {}
    bool done() const { return m_rest.empty(); }

    // The next item, trimmed of white space.
    OxString next() {
        const std::size_t comma = m_rest.find(L',');
        std::wstring_view item = m_rest;
        if (comma == 0 || comma == std::wstring_view::npos) {
            m_rest = {};
        } else {
            item = m_rest.substr(0, comma);
            m_rest.remove_prefix(comma + 1);
        }
        OxString trimmed{item};
        trimmed.trimLeft().trimRight();
        return trimmed;
    }

private:
    std::wstring_view m_rest;
};

bool isConstraintsLayer(std::wstring_view name) {
    if (name.size() != kConstraintsLayer.size()) return false;
    for (size_t i = 0; i < name.size(); ++i) {
        const wchar_t ch = name[i];
        const wchar_t lower = ch >= L'A' && ch <= L'Z' ? static_cast<wchar_t>(ch - L'A' + L'a') : ch;
        if (lower != kConstraintsLayer[i]) return false;
    }
    return true;
}

// An item without wildcard syntax names at most one layer, which the table's
// name index finds without a walk.
bool isPlainName(const OxString& item) { return item.findOneOf(L"#@.*?~[]`,", 0) < 0; }

class LayerMatcher {
public:
    LayerMatcher(OxDbLayerTable* table, bool exactMode, bool bracketRule)
        : m_table(table), m_exactMode(exactMode), m_bracketRule(bracketRule) {}

    // Appends the layers `item` names, in the order of their names; false
    // when the table cannot be walked.
    bool match(const OxString& item, OxArray<OxDbObjectId>& ids) {
        m_found.clear();
        if (m_exactMode || isPlainName(item)) {
            lookUp(item);
        } else if (!walk(item)) {
            return false;
        }
        if (m_found.empty()) {
            oxutPrintf(oxmdOxResourceString(10070, kNoMatchMessage), item);
            return true;
        }
        for (const OxDbObjectId& id : m_found)
            ids.append(id);
        return true;
    }

private:
    // Equal names ignoring case: the name index answers directly.
    void lookUp(const OxString& item) {
        OxDbObjectId id;
        if (m_table->getIdAt(item, id, false) != Ox::eOk) return;
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForRead) != Ox::eOk) return;
        if (!isConstraintsLayer(layer->name().view())) m_found.push_back(id);
        layer->close();
    }

    // In the order of the names that the table keeps, so that matching every
    // layer sorts nothing.
    bool walk(const OxString& item) {
        OxDbSymbolTableIterator* it = nullptr;
        if (m_table->newIteratorInNameOrder(it) != Ox::eOk || !it) return false;
        const bool matchesAll = item == L"*";
        for (; !it->done(); it->step()) {
            OxDbObjectId id;
            if (it->getRecordId(id) != Ox::eOk) continue;
            OxDbLayerTableRecord* layer = nullptr;
            if (oxdbOpenObject(layer, id, OxDb::kForRead) != Ox::eOk) continue;
            const OxString& name = layer->name();
            if (!isConstraintsLayer(name.view())) {
                const bool hit = matchesAll || oxutWcMatchEx(name.kwszPtr(), item.kwszPtr(), true) ||
                                 (m_bracketRule && name.compareNoCase(item) == 0);
                if (hit) m_found.push_back(id);
            }
            layer->close();
        }
        delete it;
        return true;
    }

    OxDbLayerTable* m_table;
    bool m_exactMode;
    bool m_bracketRule;
    std::vector<OxDbObjectId> m_found;
};

} // namespace

int PavoLayerHelper::getMatchedLayerList(const OxString& list, OxArray<OxDbObjectId>& ids, bool exactMatch) {
    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db) return STATUS_ERROR;
    ids.setLogicalLength(0);
    if (list.isEmpty()) return STATUS_ERROR;
    OxDbLayerTable* table = nullptr;
    if (db->getSymbolTable(table, OxDb::kForRead) != Ox::eOk || !table) return STATUS_ERROR;

    std::wstring_view rest = list.view();
    bool exactMode = exactMatch;
    if (rest.front() == L'=') {
        exactMode = true;
        rest.remove_prefix(std::min(rest.find_first_not_of(L'='), rest.size()));
        if (rest.empty()) oxutPrintf(oxmdOxResourceString(10070, kNoMatchMessage), list);
    }
    const bool bracketRule = rest.find_first_of(L"[]") != std::wstring_view::npos;

    LayerMatcher matcher(table, exactMode, bracketRule);
    for (ItemSplitter items(rest); !items.done();) {
        const OxString item = items.next();
        if (!matcher.match(item, ids)) {
            table->close();
            return STATUS_ERROR;
        }
    }
    table->close();
    return STATUS_NORMAL;
}

int PavoLayerHelper::getMatchedLTypeList(const OxString& pattern, OxArray<OxDbObjectId>& ids) {
    OxDbDatabase* db = vxlayer::workingDatabase();
    if (!db) return STATUS_ERROR;
    ids.setLogicalLength(0);
    if (pattern.isEmpty()) return STATUS_ERROR;
    OxDbLinetypeTable* table = nullptr;
    if (db->getSymbolTable(table, OxDb::kForRead) != Ox::eOk || !table) return STATUS_ERROR;
    OxDbSymbolTableIterator* it = nullptr;
    const bool haveIterator = table->newIterator(it) == Ox::eOk && it;
    table->close();
    if (!haveIterator) return STATUS_NORMAL;

    for (; !it->done(); it->step()) {
        OxDbObjectId id;
        if (it->getRecordId(id) != Ox::eOk) continue;
        OxDbLinetypeTableRecord* linetype = nullptr;
        if (oxdbOpenObject(linetype, id, OxDb::kForRead) != Ox::eOk) continue;
        const OxString name = linetype->name();
        linetype->close();
        if (name.compareNoCase(L"BYLAYER") == 0 || name.compareNoCase(L"BYBLOCK") == 0) continue;
        if (oxutWcMatchEx(name.kwszPtr(), pattern.kwszPtr(), true)) ids.append(id);
    }
    delete it;
    return STATUS_NORMAL;
}

int PavoLayerHelper::getValidNewLayerList(const OxString& list, OxArray<OxString>& names, bool allowExisting) {
    OxDbDatabase* db = vxlayer::workingDatabase();
    names.setLogicalLength(0);
    if (!db || list.isEmpty()) return STATUS_ERROR;
    OxDbLayerTable* table = nullptr;
    if (db->getSymbolTable(table, OxDb::kForRead) != Ox::eOk || !table) return STATUS_ERROR;

    for (ItemSplitter items(list.view()); !items.done();) {
        const OxString item = items.next();
        // A name already too long is reported without asking the host.
        const int extnames = vxlayer::readExtnames();
        if (vxlayer::exceedsNameLength(item, extnames) || vxlayer::symbolNameRefused(item)) {
            oxutPrintf(oxmdOxResourceString(10071, L"\n\"%ls\" is an invalid layer name."), item);
            continue;
        }
        OxDbObjectId existing;
        if (allowExisting || table->getIdAt(item, existing, false) != Ox::eOk)
            names.append(item);
        else
            oxutPrintf(oxmdOxResourceString(10072, L"\nLayer %ls already exists."), item);
    }
    table->close();
    return STATUS_NORMAL;
}
