#pragma once

#include <cstddef>
#include <memory>
#include <utility>

namespace platform::inline v1::detail {

/// Memory for so many `T`, not initialised.
template <class T>
struct Room {
    std::unique_ptr<T[]> items{};
    std::size_t capacity = 0;

    [[nodiscard]] static Room of(std::size_t capacity) {
        return {std::make_unique_for_overwrite<T[]>(capacity), capacity};
    }
};

/// The room that each thread keeps for the next one who needs some. Giving a large block back to the system and taking
/// it anew, page by page, would cost a third of the time of coding a document that fills it.
template <class T>
class SpareRoom {
public:
    /// Enough for a document of about one megabyte.
    static constexpr std::size_t largest = std::size_t{2} * 1024 * 1024 / sizeof(T);

    /// What the thread keeps; it keeps nothing then.
    [[nodiscard]] static Room<T> take() noexcept {
        return hasEnded() ? Room<T>{} : std::exchange(keeper().room, Room<T>{});
    }

    /// Gives room back. Of two that were in use at once, the thread keeps the larger.
    static void give(Room<T> room) noexcept {
        if (hasEnded() || room.capacity > largest || room.capacity <= keeper().room.capacity) return;
        keeper().room = std::move(room);
    }

private:
    struct Keeper {
        Room<T> room{};

        ~Keeper() { hasEnded() = true; }
    };

    static Keeper& keeper() noexcept {
        static thread_local Keeper keeper;
        return keeper;
    }

    /// Whether the thread's keeper is gone, while objects that live longer still code: a flag has no destructor.
    static bool& hasEnded() noexcept {
        static thread_local bool ended = false;
        return ended;
    }
};

} // namespace platform::inline v1::detail
