#include "DefaultDrawing.h"

#include "DbBuild.h"
#include "DbInternal.h"
#include "DictionaryImpl.h"
#include "OxDbDictionary.h"
#include "OxDbLayout.h"
#include "OxDbMaterial.h"
#include "OxDbSymbolTable.h"

namespace pavo::db {

namespace {

OxDbObjectId addDictionary(OxDbDictionary* parent, const wchar_t* key) {
    return dictionaryAddDirect(parent, key, new OxDbDictionary());
}

OxDbObjectId addLinetype(OxDbLinetypeTable* table, const wchar_t* name, const wchar_t* description) {
    auto* linetype = new OxDbLinetypeTableRecord();
    linetype->setName(name);
    linetype->setComments(description);
    return addRecordDirect(table, linetype);
}

OxDbObjectId addMaterial(OxDbDictionary* materials, const wchar_t* name) {
    auto* material = new OxDbMaterial();
    material->setName(name);
    return dictionaryAddDirect(materials, name, material);
}

OxDbObjectId addBlock(OxDbBlockTable* table, const wchar_t* name) {
    auto* block = new OxDbBlockTableRecord();
    block->setName(name);
    return addRecordDirect(table, block);
}

} // namespace

void buildDefaults(OxDbDatabase* db) {
    OxDbDatabase::Impl& impl = *db->impl();

    auto* named = new OxDbDictionary();
    impl.namedObjects = createRootObject(db, named);
    impl.layoutDictionary = addDictionary(named, kLayoutsKey);
    impl.plotSettingsDictionary = addDictionary(named, kPlotSettingsKey);
    impl.plotStyleNameDictionary = addDictionary(named, kPlotStyleNamesKey);
    impl.layerStatesDictionary = addDictionary(named, kLayerStatesKey);
    impl.materialDictionary = addDictionary(named, kMaterialsKey);

    auto* styles = OxDbDictionary::cast(peekObject(impl.plotStyleNameDictionary));
    dictionaryAddDirect(styles, L"Normal", new OxDbPlaceHolder());

    auto* materials = OxDbDictionary::cast(peekObject(impl.materialDictionary));
    impl.byLayerMaterial = addMaterial(materials, L"ByLayer");
    impl.byBlockMaterial = addMaterial(materials, L"ByBlock");
    impl.globalMaterial = addMaterial(materials, L"Global");

    auto* linetypes = new OxDbLinetypeTable();
    impl.linetypeTable = createRootObject(db, linetypes);
    impl.byBlockLinetype = addLinetype(linetypes, L"ByBlock", L"");
    impl.byLayerLinetype = addLinetype(linetypes, L"ByLayer", L"");
    impl.continuousLinetype = addLinetype(linetypes, L"Continuous", L"Solid line");
    impl.celtype = impl.byLayerLinetype;

    auto* layers = new OxDbLayerTable();
    impl.layerTable = createRootObject(db, layers);
    auto* zero = new OxDbLayerTableRecord(); // colour 7, plottable, default lineweight
    zero->setName(L"0");
    impl.layerZero = addRecordDirect(layers, zero);
    impl.clayer = impl.layerZero;

    auto* blocks = new OxDbBlockTable();
    impl.blockTable = createRootObject(db, blocks);
    impl.modelSpace = addBlock(blocks, L"*Model_Space");

    auto* layouts = OxDbDictionary::cast(peekObject(impl.layoutDictionary));
    auto* model = new OxDbLayout();
    model->setLayoutName(L"Model");
    model->setTabOrder(0);
    model->setBlockTableRecordId(impl.modelSpace);
    OxDbObjectId modelLayout = dictionaryAddDirect(layouts, L"Model", model);
    changeDirect(OxDbBlockTableRecord::cast(peekObject(impl.modelSpace)),
                 [&](OxDbBlockTableRecord& b) { b.setLayoutId(modelLayout); });

    OxDbObjectId layoutId, blockId;
    createPaperLayout(db, L"Layout1", layoutId, blockId);
    impl.currentLayout = layoutId;
    impl.tilemode = true;
}

} // namespace pavo::db
