// Dictionaries: named entries with case-insensitive keys that keep their
// stored spelling, iterated in insertion order.
#pragma once

#include "OxDbObject.h"
#include "OxString.h"

class PAVO_HOST_API OxDbDictionaryIterator {
public:
    virtual ~OxDbDictionaryIterator();
    bool done() const;
    bool next();
    const wchar_t* name() const;
    OxDbObjectId objectId() const;
    template <class T>
    Ox::ErrorStatus getObject(T*& obj, OxDb::OpenMode mode) const {
        return oxdbOpenObject(obj, objectId(), mode);
    }

    // Host internals.
    explicit OxDbDictionaryIterator(const void* dictionary);

private:
    void skip();
    const void* m_dict;
    long m_pos = 0;
};

class PAVO_HOST_API OxDbDictionary : public OxDbObject {
    OX_RX_DECLARE_MEMBERS(OxDbDictionary)
public:
    OxDbDictionary();
    ~OxDbDictionary() override;
    OxDbObject* cloneState() const override;

    Ox::ErrorStatus getAt(const wchar_t* key, OxDbObjectId& id) const;
    template <class T>
    Ox::ErrorStatus getAt(const wchar_t* key, T*& obj, OxDb::OpenMode mode) const {
        OxDbObjectId id;
        Ox::ErrorStatus es = getAt(key, id);
        if (es != Ox::eOk) {
            obj = nullptr;
            return es;
        }
        return oxdbOpenObject(obj, id, mode);
    }
    // The key of an entry, in its stored spelling.
    Ox::ErrorStatus nameAt(const OxDbObjectId& id, OxString& key) const;
    bool has(const wchar_t* key) const;
    bool has(const OxDbObjectId& id) const;
    int numEntries() const;

    // Adds `object` under `key`. A non-resident object becomes resident and
    // open for write (the caller closes it); `id` is its id. An existing
    // entry of that key is replaced and erased.
    Ox::ErrorStatus setAt(const wchar_t* key, OxDbObject* object, OxDbObjectId& id);
    // Removes the entry (the object is not erased); its id in `id`.
    Ox::ErrorStatus remove(const wchar_t* key);
    Ox::ErrorStatus remove(const wchar_t* key, OxDbObjectId& id);
    Ox::ErrorStatus setName(const wchar_t* oldKey, const wchar_t* newKey);

    OxDbDictionaryIterator* newIterator() const;

    struct Impl;
    Impl* impl() const { return m_impl; }

private:
    Impl* m_impl;
};
