#include "BenchSession.h"

#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"
#include "editor/Input.h"

namespace pavobench {

pavo::app::SessionOptions benchSessionOptions() {
    pavo::app::SessionOptions options = pavo::app::defaultSessionOptions(PAVO_BENCH_PAVO_EXE);
    options.userSettingsFile.clear();
    options.noDialogs = true;
    return options;
}

BenchSession::BenchSession(const std::vector<std::string>& answers, const pavo::app::SessionOptions& options)
    : m_session(std::make_unique<pavo::app::Session>(options, pavo::editor::makeLinesInput(answers), m_out)) {
    m_ready = m_session->loadModules();
}

std::wstring layerName(std::size_t i) { return L"LAYER-" + std::to_wstring(100000000 + i).substr(1); }

void addLayers(OxDbDatabase* db, std::size_t count, LayerNaming nameOf) {
    OxDbLayerTable* table = nullptr;
    if (!count || db->getLayerTable(table, OxDb::kForWrite) != Ox::eOk) return;
    for (std::size_t i = 0; i < count; ++i) {
        auto* layer = new OxDbLayerTableRecord();
        layer->setName(nameOf(i).c_str());
        layer->setLinetypeObjectId(db->continuousLinetype());
        OxDbObjectId id;
        if (table->add(id, layer) == Ox::eOk)
            layer->close();
        else
            delete layer;
    }
    table->close();
}

} // namespace pavobench
