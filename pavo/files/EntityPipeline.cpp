#include "files/EntityPipeline.h"

#include <algorithm>
#include <system_error>
#include <utility>


namespace pavo::files {

namespace {

// Batches in existence at once when threaded: one being filled, the rest
// queued or being built. Bounds the memory held by records in flight.
constexpr std::size_t kBatchesInFlight = 4;

} // namespace

PipelineSettings& pipelineSettings() {
    static PipelineSettings settings;
    return settings;
}

EntityPipeline::EntityPipeline(BatchBuilder& builder, std::size_t textSize)
    : m_builder(builder),
      m_batchEntities(std::max<std::size_t>(1, pipelineSettings().batchEntities)),
      m_current(std::make_unique<EntityBatch>()) {
    const PipelineSettings& settings = pipelineSettings();
    if (!settings.threads || textSize < settings.minimumText || std::thread::hardware_concurrency() < 2) return;
    for (std::size_t i = 1; i < kBatchesInFlight; ++i)
        m_free.push_back(std::make_unique<EntityBatch>());
    try {
        m_thread = std::thread([this] { run(); });
        m_threaded = true;
    } catch (const std::system_error&) {
        m_free.clear(); // no thread to be had: build here
    }
}

EntityPipeline::~EntityPipeline() { stop(); }

std::unique_ptr<EntityBatch> EntityPipeline::takeFree() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return !m_free.empty(); });
    auto batch = std::move(m_free.back());
    m_free.pop_back();
    return batch;
}

bool EntityPipeline::flush() {
    if (!m_thread.joinable()) {
        if (m_current->empty()) return !m_failed;
        if (!m_failed && !m_builder.build(*m_current)) m_failed = true;
        m_current->clear();
        return !m_failed;
    }
    {
        std::lock_guard lock(m_mutex);
        if (m_failed) {
            m_current->clear();
            return false;
        }
        if (m_current->empty()) return true;
        m_full.push_back(std::move(m_current));
        m_waiting.store(m_full.size(), std::memory_order_relaxed);
    }
    m_changed.notify_all();
    m_current = takeFree();
    std::lock_guard lock(m_mutex);
    return !m_failed;
}

bool EntityPipeline::finish() {
    stop();
    if (m_exception) std::rethrow_exception(std::exchange(m_exception, nullptr)); // as if built here
    return !m_failed;
}

void EntityPipeline::stop() {
    if (m_finished) return;
    flush();
    m_finished = true;
    if (!m_thread.joinable()) return;
    {
        std::lock_guard lock(m_mutex);
        m_closed = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

// The building thread: builds the batches in the order they were queued;
// after a problem it only empties them, so that the reading side never waits
// for room that will not come.
void EntityPipeline::run() {
    for (;;) {
        std::unique_ptr<EntityBatch> batch;
        bool failed = false;
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [&] { return !m_full.empty() || m_closed; });
            if (m_full.empty()) return;
            batch = std::move(m_full.front());
            m_full.pop_front();
            m_waiting.store(m_full.size(), std::memory_order_relaxed);
            failed = m_failed;
        }
        bool built = false;
        try {
            built = !failed && m_builder.build(*batch);
        } catch (...) { // out of memory: the reading thread rethrows it
            m_exception = std::current_exception();
        }
        batch->clear();
        {
            std::lock_guard lock(m_mutex);
            if (!built) m_failed = true;
            m_free.push_back(std::move(batch));
        }
        m_changed.notify_all();
    }
}

} // namespace pavo::files
