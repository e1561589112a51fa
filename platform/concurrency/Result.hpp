#pragma once

#include <exception>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace platform::inline v1 {

/// What a task ended with: nothing yet, a value, or an error.
///
/// Thread safety: none; it is handed from the one who sets it to the one who takes it.
template <class T>
class Result {
public:
    Result() noexcept {}

    Result(Result&& other) noexcept(std::is_nothrow_move_constructible_v<T>)
        : state_(other.state_) {
        if (state_ == State::value) {
            std::construct_at(&value_, std::move(other.value_));
        } else if (state_ == State::error) {
            std::construct_at(&error_, std::move(other.error_));
        }
    }

    Result& operator=(Result&&) = delete;

    ~Result() { reset(); }

    /// Sets the value, made of `arguments`. The result must hold nothing yet.
    template <class... Arguments>
    void set(Arguments&&... arguments) {
        std::construct_at(&value_, std::forward<Arguments>(arguments)...);
        state_ = State::value;
    }

    /// Sets the error. The result must hold nothing yet.
    void fail(std::exception_ptr error) noexcept {
        std::construct_at(&error_, std::move(error));
        state_ = State::error;
    }

    [[nodiscard]] bool isSet() const noexcept { return state_ != State::none; }

    /// The error, or a null pointer where there is none.
    [[nodiscard]] std::exception_ptr error() const noexcept {
        return state_ == State::error ? error_ : std::exception_ptr();
    }

    /// Moves the value out, or throws the error. The result must be set.
    T take() {
        if (state_ == State::error) std::rethrow_exception(std::move(error_));
        return std::move(value_);
    }

private:
    enum class State : unsigned char { none, value, error };

    void reset() noexcept {
        if (state_ == State::value) {
            std::destroy_at(&value_);
        } else if (state_ == State::error) {
            std::destroy_at(&error_);
        }
        state_ = State::none;
    }

    union {
        T value_;
        std::exception_ptr error_;
    };

    State state_ = State::none;
};

template <>
class Result<void> {
public:
    void set() noexcept { isSet_ = true; }

    void fail(std::exception_ptr error) noexcept {
        error_ = std::move(error);
        isSet_ = true;
    }

    [[nodiscard]] bool isSet() const noexcept { return isSet_; }

    [[nodiscard]] std::exception_ptr error() const noexcept { return error_; }

    void take() {
        if (error_) std::rethrow_exception(std::move(error_));
    }

private:
    std::exception_ptr error_{};
    bool isSet_ = false;
};

} // namespace platform::inline v1
