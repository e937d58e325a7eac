#include "DbBuild.h"
#include "DbInternal.h"
#include "DictionaryImpl.h"
#include "RxDefine.h"
#include "base/CaseFold.h"

OX_RX_DEFINE_MEMBERS(OxDbDictionary, OxDbObject)

using namespace pavo::db;

long OxDbDictionary::Impl::find(std::wstring_view key) const {
    auto it = byKey.find(pavo::foldCase(key));
    return it == byKey.end() ? -1 : static_cast<long>(it->second);
}

void OxDbDictionary::Impl::reindexFrom(std::size_t position) {
    for (std::size_t i = position; i < entries.size(); ++i)
        byKey[pavo::foldCase(entries[i].key.view())] = i;
}

OxDbObjectId pavo::db::dictionaryAddDirect(OxDbDictionary* dict, const wchar_t* key, OxDbObject* obj) {
    recordChange(dict->cell());
    OxDbObjectId id = dict->database()->impl()->store.attach(obj, dict->objectId());
    dict->impl()->entries.push_back({OxString(key), id.cell()});
    dict->impl()->reindexFrom(dict->impl()->entries.size() - 1);
    dict->database()->impl()->modified = true;
    return id;
}

OxDbDictionary::OxDbDictionary() : m_impl(new Impl) {}
OxDbDictionary::~OxDbDictionary() { delete m_impl; }

OxDbObject* OxDbDictionary::cloneState() const {
    auto* copy = new OxDbDictionary();
    *copy->m_impl = *m_impl;
    return copy;
}

Ox::ErrorStatus OxDbDictionary::getAt(const wchar_t* key, OxDbObjectId& id) const {
    id.setNull();
    if (!key) return Ox::eInvalidInput;
    const long pos = m_impl->find(key);
    if (pos < 0 || m_impl->entries[static_cast<size_t>(pos)].cell->erased) return Ox::eKeyNotFound;
    id = OxDbObjectId(m_impl->entries[static_cast<size_t>(pos)].cell);
    return Ox::eOk;
}

Ox::ErrorStatus OxDbDictionary::nameAt(const OxDbObjectId& id, OxString& key) const {
    for (const auto& entry : m_impl->entries) {
        if (entry.cell == id.cell()) {
            key = entry.key;
            return Ox::eOk;
        }
    }
    key.setEmpty();
    return Ox::eKeyNotFound;
}

bool OxDbDictionary::has(const wchar_t* key) const {
    OxDbObjectId id;
    return getAt(key, id) == Ox::eOk;
}

bool OxDbDictionary::has(const OxDbObjectId& id) const {
    if (id.isNull() || id.isErased()) return false;
    for (const auto& entry : m_impl->entries)
        if (entry.cell == id.cell()) return true;
    return false;
}

int OxDbDictionary::numEntries() const {
    int n = 0;
    for (const auto& entry : m_impl->entries)
        n += entry.cell->erased ? 0 : 1;
    return n;
}

Ox::ErrorStatus OxDbDictionary::setAt(const wchar_t* key, OxDbObject* object, OxDbObjectId& id) {
    id.setNull();
    OxDbDatabase* db = database();
    Ox::ErrorStatus es = Ox::eOk;
    if (!key || !*key)
        es = Ox::eInvalidInput;
    else if (!object)
        es = Ox::eNullObjectPointer;
    else if (!db)
        es = Ox::eNoDatabase;
    else if (object->isDatabaseResident() && object->database() != db)
        es = Ox::eWrongDatabase;
    else if (!writeCheck())
        es = Ox::eNotOpenForWrite;
    if (es != Ox::eOk) {
        if (db) db->impl()->store.pendingCell = nullptr;
        return es;
    }
    if (object->isDatabaseResident()) {
        id = object->objectId();
        id.cell()->owner = objectId();
    } else {
        id = makeResidentForWrite(db, object, objectId());
    }
    const long pos = m_impl->find(key);
    if (pos >= 0) {
        Impl::Entry& entry = m_impl->entries[static_cast<size_t>(pos)];
        if (entry.cell != id.cell()) setErasedDirect(OxDbObjectId(entry.cell), true); // the replaced object
        m_impl->byKey.erase(pavo::foldCase(entry.key.view()));
        entry = {OxString(key), id.cell()};
        m_impl->reindexFrom(static_cast<size_t>(pos));
    } else {
        m_impl->entries.push_back({OxString(key), id.cell()});
        m_impl->reindexFrom(m_impl->entries.size() - 1);
    }
    return Ox::eOk;
}

Ox::ErrorStatus OxDbDictionary::remove(const wchar_t* key) {
    OxDbObjectId id;
    return remove(key, id);
}

Ox::ErrorStatus OxDbDictionary::remove(const wchar_t* key, OxDbObjectId& id) {
    id.setNull();
    if (!key) return Ox::eInvalidInput;
    const long pos = m_impl->find(key);
    if (pos < 0) return Ox::eKeyNotFound;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    const auto at = m_impl->entries.begin() + pos;
    id = OxDbObjectId(at->cell);
    m_impl->byKey.erase(pavo::foldCase(at->key.view()));
    m_impl->entries.erase(at);
    m_impl->reindexFrom(static_cast<size_t>(pos));
    return Ox::eOk;
}

Ox::ErrorStatus OxDbDictionary::setName(const wchar_t* oldKey, const wchar_t* newKey) {
    if (!oldKey || !newKey || !*newKey) return Ox::eInvalidInput;
    const long pos = m_impl->find(oldKey);
    if (pos < 0) return Ox::eKeyNotFound;
    const long other = m_impl->find(newKey);
    if (other >= 0 && other != pos) return Ox::eDuplicateKey;
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    Impl::Entry& entry = m_impl->entries[static_cast<size_t>(pos)];
    m_impl->byKey.erase(pavo::foldCase(entry.key.view()));
    entry.key = newKey;
    m_impl->byKey[pavo::foldCase(entry.key.view())] = static_cast<size_t>(pos);
    return Ox::eOk;
}

OxDbDictionaryIterator* OxDbDictionary::newIterator() const { return new OxDbDictionaryIterator(m_impl); }

// ------------------------------------------------------------ iterator

namespace {
const OxDbDictionary::Impl& dictOf(const void* p) { return *static_cast<const OxDbDictionary::Impl*>(p); }
} // namespace

OxDbDictionaryIterator::OxDbDictionaryIterator(const void* dictionary) : m_dict(dictionary) { skip(); }
OxDbDictionaryIterator::~OxDbDictionaryIterator() = default;

bool OxDbDictionaryIterator::done() const { return m_pos >= static_cast<long>(dictOf(m_dict).entries.size()); }

void OxDbDictionaryIterator::skip() {
    while (!done() && dictOf(m_dict).entries[static_cast<size_t>(m_pos)].cell->erased)
        ++m_pos;
}

bool OxDbDictionaryIterator::next() {
    if (done()) return false;
    ++m_pos;
    skip();
    return !done();
}

const wchar_t* OxDbDictionaryIterator::name() const {
    return done() ? L"" : dictOf(m_dict).entries[static_cast<size_t>(m_pos)].key.kwszPtr();
}

OxDbObjectId OxDbDictionaryIterator::objectId() const {
    return done() ? OxDbObjectId() : OxDbObjectId(dictOf(m_dict).entries[static_cast<size_t>(m_pos)].cell);
}
