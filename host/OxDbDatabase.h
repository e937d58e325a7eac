// The drawing database.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "OxCmColor.h"
#include "OxDb.h"
#include "OxDbObject.h"
#include "OxString.h"

class OxDbLayerTable;
class OxDbLinetypeTable;
class OxDbBlockTable;
class OxDbDictionary;
class OxDbLayerStateManager;
class PavoUndoController;

class PAVO_HOST_API OxDbDatabase {
public:
    // An empty database, or one with the defaults of a new drawing: layer
    // "0", linetypes ByBlock, ByLayer and Continuous, model space and one
    // paper-space layout, the plot style name "Normal".
    explicit OxDbDatabase(bool buildDefaultDrawing = true);
    ~OxDbDatabase();
    OxDbDatabase(const OxDbDatabase&) = delete;
    OxDbDatabase& operator=(const OxDbDatabase&) = delete;

    // Tables, opened in `mode`.
    Ox::ErrorStatus getSymbolTable(OxDbLayerTable*& table, OxDb::OpenMode mode);
    Ox::ErrorStatus getSymbolTable(OxDbLinetypeTable*& table, OxDb::OpenMode mode);
    Ox::ErrorStatus getSymbolTable(OxDbBlockTable*& table, OxDb::OpenMode mode);
    Ox::ErrorStatus getLayerTable(OxDbLayerTable*& table, OxDb::OpenMode mode) { return getSymbolTable(table, mode); }
    Ox::ErrorStatus getLinetypeTable(OxDbLinetypeTable*& table, OxDb::OpenMode mode) {
        return getSymbolTable(table, mode);
    }
    Ox::ErrorStatus getBlockTable(OxDbBlockTable*& table, OxDb::OpenMode mode) { return getSymbolTable(table, mode); }
    OxDbObjectId layerTableId() const;
    OxDbObjectId linetypeTableId() const;
    OxDbObjectId blockTableId() const;

    // Dictionaries.
    OxDbObjectId namedObjectsDictionaryId() const;
    OxDbObjectId layoutDictionaryId() const;
    OxDbObjectId plotSettingsDictionaryId() const;
    // The plot style name dictionary; made when missing if `createIfNotFound`.
    OxDbObjectId getPlotStyleNameDictionaryId(bool createIfNotFound = true);
    OxDbObjectId layerStatesDictionaryId(bool createIfNotFound);
    OxDbObjectId materialDictionaryId() const;
    Ox::ErrorStatus getNamedObjectsDictionary(OxDbDictionary*& dict, OxDb::OpenMode mode);
    Ox::ErrorStatus getLayoutDictionary(OxDbDictionary*& dict, OxDb::OpenMode mode);
    Ox::ErrorStatus getPlotSettingsDictionary(OxDbDictionary*& dict, OxDb::OpenMode mode);
    Ox::ErrorStatus getPlotStyleNameDictionary(OxDbDictionary*& dict, OxDb::OpenMode mode);

    // Well-known records.
    OxDbObjectId layerZero() const;
    OxDbObjectId byLayerLinetype() const;
    OxDbObjectId byBlockLinetype() const;
    OxDbObjectId continuousLinetype() const;
    OxDbObjectId byLayerMaterial() const;
    OxDbObjectId byBlockMaterial() const;
    OxDbObjectId globalMaterial() const;
    OxDbObjectId modelSpaceId() const;
    // The block of the current space: model space when TILEMODE is 1 or the
    // user works inside a viewport, else the current layout's block.
    OxDbObjectId currentSpaceId() const;

    // The current layer. setClayer refuses a null, erased, frozen or
    // non-layer id (eInvalidLayer, eWasErased, eLayerFrozen); an off or
    // locked layer is accepted.
    OxDbObjectId clayer() const;
    Ox::ErrorStatus setClayer(const OxDbObjectId& layerId);
    OxDbObjectId celtype() const;
    Ox::ErrorStatus setCeltype(const OxDbObjectId& linetypeId);
    OxCmColor cecolor() const;
    Ox::ErrorStatus setCecolor(const OxCmColor& color);
    OxDb::LineWeight celweight() const;
    Ox::ErrorStatus setCelweight(OxDb::LineWeight weight);
    OxCmTransparency cetransparency() const;
    Ox::ErrorStatus setCetransparency(const OxCmTransparency& transparency);
    // The plot style of new objects: "ByLayer", "ByBlock" or a name of the
    // plot style name dictionary (eKeyNotFound for another name).
    OxString cepstyle() const;
    Ox::ErrorStatus setCepstyle(const wchar_t* name);

    // Header variables kept in the drawing.
    bool tilemode() const;
    Ox::ErrorStatus setTilemode(bool modelSpace);
    int pstylemode() const; // 1 colour-dependent, 0 named plot styles
    Ox::ErrorStatus setPstylemode(int mode);
    int measurement() const; // 0 imperial, 1 metric
    Ox::ErrorStatus setMeasurement(int value);
    int extnames() const;
    Ox::ErrorStatus setExtnames(int value);
    double ltscale() const;
    Ox::ErrorStatus setLtscale(double value);
    int insunits() const;
    Ox::ErrorStatus setInsunits(int value);
    // The viewport number the user works in (CVPORT).
    int cvport() const;
    Ox::ErrorStatus setCvport(int number);
    std::uint64_t handseed() const;

    OxDbLayerStateManager* getLayerStateManager();
    PavoUndoController* undoController();

    // Loads linetypes whose names match `pattern` (a name or wildcard
    // pattern) from a linetype file; linetypes already in the drawing are
    // left alone. eFileNotFound, eInvalidFileFormat, eKeyNotFound (no match).
    Ox::ErrorStatus loadLineTypeFile(const wchar_t* pattern, const wchar_t* fileName);

    // The drawing's file name (empty for a new drawing) and modified flag.
    const OxString& fileName() const;
    void setFileName(const wchar_t* name);
    bool isModified() const;
    void setModified(bool modified);

    // Host internals: the object store.
    struct Impl;
    Impl* impl() const { return m_impl.get(); }

private:
    std::unique_ptr<Impl> m_impl;
};
