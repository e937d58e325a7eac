// Sessions of the real host and module as the benchmarks drive them: the
// module loaded, the answers scripted, the output swallowed; and the many
// layers that the layer benchmarks add to a new drawing.
#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "BenchSupport.h"
#include "app/Session.h"

class OxDbDatabase;

namespace pavobench {

// The host's defaults, without the user's settings file or dialogs, so that
// figures do not depend on who runs them.
pavo::app::SessionOptions benchSessionOptions();

// A session whose input holds `answers` and whose output goes nowhere (its
// size is counted). No drawing is open yet.
class BenchSession {
public:
    explicit BenchSession(const std::vector<std::string>& answers,
                          const pavo::app::SessionOptions& options = benchSessionOptions());
    // False when the module did not load.
    bool ready() const { return m_ready; }
    pavo::app::Session& session() { return *m_session; }
    std::size_t written() const { return m_output.written(); }

private:
    NullBuffer m_output;
    std::ostream m_out{&m_output};
    std::unique_ptr<pavo::app::Session> m_session;
    bool m_ready = false;
};

// "LAYER-00000000", "LAYER-00000001" ...
std::wstring layerName(std::size_t i);
using LayerNaming = std::wstring (*)(std::size_t);

// Adds `count` continuous layers named by `nameOf` to `db`'s layer table.
void addLayers(OxDbDatabase* db, std::size_t count, LayerNaming nameOf = layerName);

} // namespace pavobench
