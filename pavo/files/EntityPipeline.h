// Carries batches of layers and entities from the thread that reads the JSON to the one
// that builds the database, through a short bounded queue, so that parsing
// and building overlap. With one processor, or a small drawing, the batches
// are built on the reading thread as they fill: the same code, in the same
// order, with the same results.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "files/EntityBatch.h"

namespace pavo::files {

// The database side: builds one batch; false at the first problem (or at a
// record cut short), after which no other batch is given.
class BatchBuilder {
public:
    virtual ~BatchBuilder() = default;
    virtual bool build(EntityBatch& batch) = 0;
};

struct PipelineSettings {
    // Bytes of drawing below which one thread does all: on a smaller one the
    // second costs more than it saves.
    std::size_t minimumText = 4000000;
    std::size_t batchEntities = 2048; // layers and entities
    bool threads = true;              // false: never a second thread
};
// The settings in force (tests make small drawings go through the threads).
PipelineSettings& pipelineSettings();

class EntityPipeline {
public:
    EntityPipeline(BatchBuilder& builder, std::size_t textSize);
    ~EntityPipeline(); // waits for the building thread
    EntityPipeline(const EntityPipeline&) = delete;
    EntityPipeline& operator=(const EntityPipeline&) = delete;

    // The batch being filled by the reading side.
    EntityBatch& current() { return *m_current; }
    bool full() const { return m_current->records() >= m_batchEntities; }
    // Hands the current batch over (when not empty) and starts another.
    // False once the building side has stopped at a problem.
    bool flush();
    // Hands over what is left and waits for every batch to be built. True
    // when all were.
    bool finish();
    // Whether a second thread builds and is keeping up (few batches wait for
    // it): the reading side may then leave it more of the work. A hint only.
    bool builderHasRoom() const { return m_threaded && m_waiting.load(std::memory_order_relaxed) < 2; }

private:
    void run();
    void stop(); // hands over what is left and waits for the building thread
    std::unique_ptr<EntityBatch> takeFree();

    BatchBuilder& m_builder;
    std::size_t m_batchEntities;
    std::unique_ptr<EntityBatch> m_current;
    bool m_failed = false; // read and written under m_mutex when threaded
    bool m_finished = false;

    std::thread m_thread;
    bool m_threaded = false; // m_thread was started
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::unique_ptr<EntityBatch>> m_full;
    std::atomic<std::size_t> m_waiting{0}; // m_full.size(), for builderBehind()
    std::vector<std::unique_ptr<EntityBatch>> m_free;
    bool m_closed = false;
    std::exception_ptr m_exception; // thrown by the builder on its thread
};

} // namespace pavo::files
