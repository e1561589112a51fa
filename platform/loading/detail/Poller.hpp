#pragma once

#include "platform/Export.hpp"

#include <memory>
#include <vector>

namespace platform::inline v1::detail {

/// Waits for sockets and for wake-ups from other threads: the one step of a session's loop that the system's own
/// mechanism decides. All functions belong to the loop's thread except `wake`.
class QUILLBEAM_EXPORT Poller {
public:
    enum class Mechanism {
        epoll, ///< Linux: a wait costs what is ready, not what is watched
        poll   ///< everywhere
    };

    struct Ready {
        int descriptor;
        bool readable;
        bool writable;
        bool failed;
    };

    /// The best mechanism of this system. Throws `std::system_error` when the system has no descriptors left.
    [[nodiscard]] static std::unique_ptr<Poller> make();

    /// A particular one; `poll` where the system does not have it.
    [[nodiscard]] static std::unique_ptr<Poller> make(Mechanism mechanism);

    virtual ~Poller();

    Poller(const Poller&) = delete;
    Poller& operator=(const Poller&) = delete;

    /// Watches a descriptor for these conditions in place of the earlier ones; neither: no longer.
    virtual void watch(int descriptor, bool forReading, bool forWriting) = 0;

    /// Waits until something is ready, `wake` was called, or the time is up, and replaces the contents of `ready`. May
    /// return early with nothing.
    /// @param milliseconds -1: no limit
    void wait(int milliseconds, std::vector<Ready>& ready);

    /// Ends the wait under way, or else the next one. Any thread.
    void wake() noexcept;

protected:
    Poller();

    /// The descriptor that `wake` makes readable.
    [[nodiscard]] int wakeDescriptor() const noexcept { return wakeRead_; }

private:
    virtual void waitForDescriptors(int milliseconds, std::vector<Ready>& ready) = 0;

    int wakeRead_ = -1;
    int wakeWrite_ = -1;
};

} // namespace platform::inline v1::detail
