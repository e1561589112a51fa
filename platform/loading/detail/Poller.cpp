#include "platform/loading/detail/Poller.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <unistd.h>
#if defined(__linux__)
#include <sys/epoll.h>
#include <sys/eventfd.h>
#endif

namespace platform::inline v1::detail {

namespace {

[[noreturn]] void throwSystemError(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

class PollPoller final : public Poller {
public:
    PollPoller() { entries_.push_back({wakeDescriptor(), POLLIN, 0}); }

    void watch(int descriptor, bool forReading, bool forWriting) override {
        const auto at =
            std::find_if(entries_.begin() + 1, entries_.end(), [&](const pollfd& e) { return e.fd == descriptor; });
        if (!forReading && !forWriting) {
            if (at == entries_.end()) return;
            *at = entries_.back();
            entries_.pop_back();
            return;
        }
        const auto events = static_cast<short>((forReading ? POLLIN : 0) | (forWriting ? POLLOUT : 0));
        if (at == entries_.end()) {
            entries_.push_back({descriptor, events, 0});
        } else {
            at->events = events;
        }
    }

private:
    void waitForDescriptors(int milliseconds, std::vector<Ready>& ready) override {
        if (poll(entries_.data(), static_cast<nfds_t>(entries_.size()), milliseconds) <= 0) return;
        for (const pollfd& entry : entries_) {
            if (entry.revents == 0) continue;
            ready.push_back(
                {entry.fd,
                 (entry.revents & (POLLIN | POLLHUP)) != 0,
                 (entry.revents & POLLOUT) != 0,
                 (entry.revents & (POLLERR | POLLNVAL)) != 0}
            );
        }
    }

    std::vector<pollfd> entries_;
};

#if defined(__linux__)
class EpollPoller final : public Poller {
public:
    EpollPoller() {
        if (epoll_ < 0) throwSystemError("epoll_create1");
        watch(wakeDescriptor(), true, false);
    }

    ~EpollPoller() override { close(epoll_); }

    void watch(int descriptor, bool forReading, bool forWriting) override {
        epoll_event event{};
        event.events = (forReading ? EPOLLIN : 0U) | (forWriting ? EPOLLOUT : 0U);
        event.data.fd = descriptor;
        if (event.events == 0) {
            // A socket that was closed first has left by itself.
            epoll_ctl(epoll_, EPOLL_CTL_DEL, descriptor, &event);
            return;
        }
        if (epoll_ctl(epoll_, EPOLL_CTL_ADD, descriptor, &event) == 0) return;
        if (errno == EEXIST && epoll_ctl(epoll_, EPOLL_CTL_MOD, descriptor, &event) == 0) return;
        throwSystemError("epoll_ctl");
    }

private:
    void waitForDescriptors(int milliseconds, std::vector<Ready>& ready) override {
        std::array<epoll_event, 128> events;
        const int count = epoll_wait(epoll_, events.data(), static_cast<int>(events.size()), milliseconds);
        for (int i = 0; i < count; ++i) {
            const epoll_event& event = events[static_cast<std::size_t>(i)];
            ready.push_back(
                {event.data.fd,
                 (event.events & (EPOLLIN | EPOLLHUP)) != 0,
                 (event.events & EPOLLOUT) != 0,
                 (event.events & EPOLLERR) != 0}
            );
        }
    }

    int epoll_ = epoll_create1(EPOLL_CLOEXEC);
};
#endif

} // namespace

Poller::Poller() {
#if defined(__linux__)
    wakeRead_ = wakeWrite_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeRead_ < 0) throwSystemError("eventfd");
#else
    int ends[2];
    if (pipe(ends) != 0) throwSystemError("pipe");
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    wakeRead_ = ends[0];
    wakeWrite_ = ends[1];
#endif
}

Poller::~Poller() {
    close(wakeRead_);
    if (wakeWrite_ != wakeRead_) close(wakeWrite_);
}

std::unique_ptr<Poller> Poller::make() {
    return make(Mechanism::epoll);
}

std::unique_ptr<Poller> Poller::make(Mechanism mechanism) {
#if defined(__linux__)
    if (mechanism == Mechanism::epoll) return std::make_unique<EpollPoller>();
#else
    static_cast<void>(mechanism);
#endif
    return std::make_unique<PollPoller>();
}

void Poller::wait(int milliseconds, std::vector<Ready>& ready) {
    ready.clear();
    waitForDescriptors(milliseconds, ready);
    const auto woken =
        std::find_if(ready.begin(), ready.end(), [&](const Ready& r) { return r.descriptor == wakeRead_; });
    if (woken == ready.end()) return;
    ready.erase(woken);
    std::array<char, 64> drained;
    while (read(wakeRead_, drained.data(), drained.size()) == static_cast<ssize_t>(drained.size())) {
    }
}

void Poller::wake() noexcept {
    // An eventfd takes eight bytes; of a pipe any will do. A full pipe is as good as a written one.
    const std::uint64_t one = 1;
    while (write(wakeWrite_, &one, sizeof one) < 0 && errno == EINTR) {
    }
}

} // namespace platform::inline v1::detail
