#pragma once

#include "platform/Export.hpp"

#include <memory>
#include <pthread.h>
#include <utility>

namespace OpenAPIURLSession::inline v1 {

/// The raw operations on a platform mutex: plain, not recursive, with default attributes. A mutex operation that fails
/// means that the program is broken (it locks twice, or unlocks what it does not hold), and stops it.
struct QUILLBEAM_EXPORT LockOperations {
    static void create(pthread_mutex_t& mutex) noexcept;
    static void destroy(pthread_mutex_t& mutex) noexcept;
    static void lock(pthread_mutex_t& mutex) noexcept;
    static void unlock(pthread_mutex_t& mutex) noexcept;
};

/// One heap object that holds a value and the mutex that protects it side by side.
template <class Value>
class LockStorage {
public:
    [[nodiscard]] static std::shared_ptr<LockStorage> create(Value value) {
        return std::shared_ptr<LockStorage>(new LockStorage(std::move(value)));
    }

    ~LockStorage() { LockOperations::destroy(mutex_); }

    LockStorage(const LockStorage&) = delete;
    LockStorage& operator=(const LockStorage&) = delete;

    void lock() noexcept { LockOperations::lock(mutex_); }

    void unlock() noexcept { LockOperations::unlock(mutex_); }

    /// Calls `body` with the mutex itself, which it does not lock.
    template <class Body>
    decltype(auto) withLockPrimitive(Body&& body) {
        return std::forward<Body>(body)(mutex_);
    }

    /// Calls `body` with the value (`Value&`) while the mutex is held, and returns what it returns.
    template <class Body>
    decltype(auto) withLockedValue(Body&& body) {
        const Holder holder(*this);
        return std::forward<Body>(body)(value_);
    }

private:
    struct Holder {
        explicit Holder(LockStorage& held) noexcept
            : storage(held) {
            storage.lock();
        }

        ~Holder() { storage.unlock(); }

        Holder(const Holder&) = delete;
        Holder& operator=(const Holder&) = delete;

        LockStorage& storage;
    };

    explicit LockStorage(Value value)
        : value_(std::move(value)) {
        LockOperations::create(mutex_);
    }

    pthread_mutex_t mutex_{};
    Value value_;
};

/// A mutex with the semantics of a value: copies share the same mutex.
///
/// Thread safety: all functions may be called from any thread. Not recursive.
class QUILLBEAM_EXPORT Lock {
public:
    Lock()
        : _storage(LockStorage<Nothing>::create({})) {}

    void lock() const noexcept { _storage->lock(); }

    void unlock() const noexcept { _storage->unlock(); }

    /// Calls `body` while the mutex is held, and returns what it returns.
    template <class Body>
    decltype(auto) withLock(Body&& body) const {
        return _storage->withLockedValue([&](auto&) -> decltype(auto) { return std::forward<Body>(body)(); });
    }

    /// Calls `body` with the mutex itself, which it does not lock.
    template <class Body>
    decltype(auto) withLockPrimitive(Body&& body) const {
        return _storage->withLockPrimitive(std::forward<Body>(body));
    }

private:
    struct Nothing {};

    std::shared_ptr<LockStorage<Nothing>> _storage;
};

} // namespace OpenAPIURLSession::inline v1
