// Runtime classes: isA(), desc(), cast() and the system registry.
#pragma once

#include "PavoExport.h"

class OxRxClass;

// Declares the runtime-class members of a class derived from OxRxObject.
#define OX_RX_DECLARE_MEMBERS(CLASS)                                   \
public:                                                                \
    static OxRxClass* desc();                                          \
    OxRxClass* isA() const override;                                   \
    static CLASS* cast(const OxRxObject* obj) {                        \
        return obj && obj->isKindOf(desc()) ? (CLASS*)(obj) : nullptr; \
    }

class PAVO_HOST_API OxRxObject {
public:
    virtual ~OxRxObject();
    static OxRxClass* desc();
    virtual OxRxClass* isA() const;
    bool isKindOf(const OxRxClass* cls) const;
};

class PAVO_HOST_API OxRxClass : public OxRxObject {
public:
    OxRxClass(const wchar_t* name, OxRxClass* parent);
    const wchar_t* name() const { return m_name; }
    OxRxClass* myParent() const { return m_parent; }
    bool isDerivedFrom(const OxRxClass* other) const;
    static bool isDerivedFrom(const OxRxClass* cls, const OxRxClass* base) {
        return cls && cls->isDerivedFrom(base);
    }
    // The registered class of that name, or null.
    static OxRxClass* find(const wchar_t* name);

private:
    const wchar_t* m_name;
    OxRxClass* m_parent;
};

// A dictionary of named service objects.
class PAVO_HOST_API OxRxDictionary : public OxRxObject {
public:
    virtual OxRxObject* lookupEntry(const wchar_t* key) const = 0;
    virtual OxRxObject* at(const wchar_t* key) const { return lookupEntry(key); }
    // Registers `obj` under `key` (not owned); returns the previous entry.
    virtual OxRxObject* atPut(const wchar_t* key, OxRxObject* obj) = 0;
    virtual OxRxObject* remove(const wchar_t* key) = 0;
};

PAVO_HOST_API OxRxDictionary* oxrxSysRegistry();

// The loader service, registered under "DynamicLinker".
class PAVO_HOST_API OxRxDynamicLinker : public OxRxObject {
    OX_RX_DECLARE_MEMBERS(OxRxDynamicLinker)
public:
    // Loads a module by file name; true when it is loaded afterwards.
    virtual bool loadModule(const wchar_t* fileName, bool printIt, bool asCmd = false) = 0;
    virtual bool unloadModule(const wchar_t* fileName, bool asCmd = false) = 0;
    virtual void* moduleHandle(const wchar_t* fileName) const = 0;
};
