// Layer name lists: splitting at commas, matching items against the layer
// table, and checking names for new layers.
#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "LayerNameList.h"
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

using vxlayer::LayerNameList;

class LayerMatcher {
public:
    LayerMatcher(OxDbLayerTable* table, const LayerNameList& list) : m_table(table), m_list(list) {}

    // Appends the layers `item` names, in the order of their names; false
    // when the table cannot be walked.
    bool match(const LayerNameList::Item& item, OxArray<OxDbObjectId>& ids) {
        m_found.clear();
        if (item.wholeName) {
            lookUp(item.text);
        } else if (!walk(item)) {
            return false;
        }
        if (m_found.empty()) {
            oxutPrintf(oxmdOxResourceString(10070, kNoMatchMessage), item.text);
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
        if (!vxlayer::isConstraintsLayer(layer->name().view())) m_found.push_back(id);
        layer->close();
    }

    // In the order of the names that the table keeps, so that matching every
    // layer sorts nothing.
    bool walk(const LayerNameList::Item& item) {
        OxDbSymbolTableIterator* it = nullptr;
        if (m_table->newIteratorInNameOrder(it) != Ox::eOk || !it) return false;
        for (; !it->done(); it->step()) {
            OxDbObjectId id;
            if (it->getRecordId(id) != Ox::eOk) continue;
            OxDbLayerTableRecord* layer = nullptr;
            if (oxdbOpenObject(layer, id, OxDb::kForRead) != Ox::eOk) continue;
            const OxString& name = layer->name();
            if (m_list.selects(item, name)) m_found.push_back(id);
            layer->close();
        }
        delete it;
        return true;
    }

    OxDbLayerTable* m_table;
    const LayerNameList& m_list;
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

    const LayerNameList names(list.view(), exactMatch);
    if (names.namesNothing()) oxutPrintf(oxmdOxResourceString(10070, kNoMatchMessage), list);
    LayerMatcher matcher(table, names);
    for (const LayerNameList::Item& item : names.items()) {
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

    for (vxlayer::NameListItems items(list.view()); !items.done();) {
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
