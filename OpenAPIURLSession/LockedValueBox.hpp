#pragma once

#include "OpenAPIURLSession/Lock.hpp"

#include <memory>
#include <utility>

namespace OpenAPIURLSession::inline v1 {

/// A value that can only be reached while its lock is held. Copies share the value and the lock.
///
///     LockedValueBox<int> count(0);
///     count.withLockedValue([](int& value) { ++value; });
///
/// Thread safety: safe from any thread. Not recursive: the callback must not use the same box.
template <class Value>
class LockedValueBox {
public:
    explicit LockedValueBox(Value value)
        : storage(LockStorage<Value>::create(std::move(value))) {}

    /// Calls `body` with the value (`Value&`) under the lock, and returns what it returns.
    template <class Body>
    decltype(auto) withLockedValue(Body&& body) const {
        return storage->withLockedValue(std::forward<Body>(body));
    }

private:
    std::shared_ptr<LockStorage<Value>> storage;
};

} // namespace OpenAPIURLSession::inline v1
