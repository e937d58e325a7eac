// Database services: the host application services, symbol utilities,
// entity names, undo and regeneration.
#pragma once

#include "OxDbObject.h"
#include "OxDbObjectId.h"
#include "OxString.h"
#include "PavoExport.h"
#include "PavoUndoController.h"
#include "resbuf.h"

class OxDbDatabase;
class OxDbLayoutManager;

class PAVO_HOST_API OxDbHostApplicationServices {
public:
    virtual ~OxDbHostApplicationServices();
    virtual OxDbDatabase* workingDatabase() const = 0;
    virtual void setWorkingDatabase(OxDbDatabase* db) = 0;
    virtual OxDbLayoutManager* layoutManager() const = 0;
};

PAVO_HOST_API OxDbHostApplicationServices* oxdbHostApplicationServices();

// Symbol names and well-known symbols.
class PAVO_HOST_API OxDbSymbolUtilities {
public:
    class PAVO_HOST_API Services {
    public:
        virtual ~Services();
        // 0 (eOk) when `name` is acceptable as a symbol name; a vertical bar
        // only when `allowVerticalBar`.
        virtual Ox::ErrorStatus checkSymbolName(const wchar_t* name, bool allowVerticalBar) const = 0;
        // The continuous linetype that new layers receive.
        virtual OxDbObjectId getLinetypeIdContinuous(OxDbDatabase* db) const = 0;
        virtual OxDbObjectId getLinetypeIdByLayer(OxDbDatabase* db) const = 0;
        virtual OxDbObjectId getLinetypeIdByBlock(OxDbDatabase* db) const = 0;
    };
    static Services* servicesPtr();
};

PAVO_HOST_API OxDbSymbolUtilities::Services* oxdbGetSymbolSvc();
// Non-zero when `name` is a valid symbol name.
PAVO_HOST_API int IsValidName(wchar_t* name);

// Entity names (ox_name) <-> ids.
PAVO_HOST_API Ox::ErrorStatus oxdbGetObjectId(OxDbObjectId& id, const ox_name ename);
PAVO_HOST_API Ox::ErrorStatus oxdbGetOxDbName(ox_name ename, const OxDbObjectId& id);

// Regeneration requests, recorded so that they can be seen.
PAVO_HOST_API Ox::ErrorStatus oxdbQueueForRegen(const OxDbObjectId* ids, int count);


// Host internals that the module reaches for: a record's implementation.
class PAVO_HOST_API OxDbImpObject {
public:
    virtual ~OxDbImpObject();
    // Layer records.
    virtual void setIsInUseBit(bool inUse);
    // Layouts.
    virtual OxDbObjectId activeViewportId() const;

protected:
    explicit OxDbImpObject(OxDbObject* obj) : m_obj(obj) {}
    OxDbObject* m_obj;
    friend class OxDbSystemInternals;
};

class PAVO_HOST_API OxDbSystemInternals {
public:
    // The implementation object of `obj`; valid while `obj` is open.
    static OxDbImpObject* getImpObject(const OxDbObject* obj);
};

// Host heap for database objects made by modules.
PAVO_HOST_API void* oxHeapAlloc(std::size_t size);
PAVO_HOST_API void oxHeapFree(void* p);
