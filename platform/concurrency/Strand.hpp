#pragma once

#include "platform/Export.hpp"
#include "platform/concurrency/Executor.hpp"

#include <memory>

namespace platform::inline v1 {

/// A serial queue on another executor: its jobs run one at a time, first in, first out, on that executor's threads.
///
/// It has no thread of its own and costs one post to the other executor for each run of jobs that came together. What
/// tasks on one strand share needs no lock. The strand may be destroyed while jobs wait: they still run.
///
/// Thread safety: `post` from any thread. Posting takes constant time.
class QUILLBEAM_EXPORT Strand final : public Executor {
public:
    /// @param executor runs the jobs; kept alive as long as there are any
    explicit Strand(std::shared_ptr<Executor> executor);

    ~Strand() override;

    void post(Job& job) noexcept override;

private:
    struct State;

    std::shared_ptr<State> state_;
};

} // namespace platform::inline v1
