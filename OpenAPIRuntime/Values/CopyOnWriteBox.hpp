#pragma once

#include "platform/DiagnosticText.hpp"
#include "platform/coding/HashValue.hpp"
#include "platform/coding/TypeDescription.hpp"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

/// A value that stands elsewhere: copies of a box share it until one of them is written to.
///
/// A schema that contains itself holds itself in boxes, so `T` may be incomplete where the box is a member:
///
///     struct Folder {
///         std::string name{};
///         std::optional<CopyOnWriteBox<Folder>> parent{};
///     };
///
/// A box is coded, compared, hashed and described as its value; only what `T` offers of these can be used. Boxes within
/// boxes are destroyed one inside the other, so the depth of a chain is limited by the stack.
///
/// A box that was moved from may only be assigned to or destroyed.
///
/// Thread safety: distinct boxes: safe, also where they share their value; one box: like a plain value.
template <class T>
class CopyOnWriteBox {
public:
    /// A box of a default value.
    CopyOnWriteBox()
        : storage_(new Storage) {}

    explicit CopyOnWriteBox(T value)
        : storage_(new Storage(std::move(value))) {}

    /// Shares the value; O(1).
    CopyOnWriteBox(const CopyOnWriteBox& other) noexcept
        : storage_(other.storage_) {
        if (storage_ != nullptr) storage_->references.fetch_add(1, std::memory_order_relaxed);
    }

    CopyOnWriteBox(CopyOnWriteBox&& other) noexcept
        : storage_(std::exchange(other.storage_, nullptr)) {}

    /// What is assigned may be inside the value that goes.
    CopyOnWriteBox& operator=(CopyOnWriteBox other) noexcept {
        std::swap(storage_, other.storage_);
        return *this;
    }

    ~CopyOnWriteBox() {
        if (storage_ != nullptr && storage_->references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete storage_;
    }

    /// The value; valid until the box is written to or destroyed.
    [[nodiscard]] const T& value() const noexcept { return storage_->value; }

    [[nodiscard]] const T& operator*() const noexcept { return storage_->value; }

    [[nodiscard]] const T* operator->() const noexcept { return &storage_->value; }

    /// The value, to be written to through the reference at once: it is copied first where it is shared. The reference
    /// must not be used after the box was copied, for then it would write to the copy as well.
    [[nodiscard]] T& mutableValue() {
        if (!isUniquelyOwned()) *this = CopyOnWriteBox(value());
        return storage_->value;
    }

    void setValue(T value) {
        if (isUniquelyOwned()) {
            storage_->value = std::move(value);
        } else {
            *this = CopyOnWriteBox(std::move(value));
        }
    }

    /// Whether no other box shares the value, so that writing does not copy it.
    [[nodiscard]] bool isUniquelyOwned() const noexcept {
        return storage_ != nullptr && storage_->references.load(std::memory_order_acquire) == 1;
    }

    /// The text of the value, for diagnosis.
    [[nodiscard]] std::string description() const { return platform::diagnosticText(value()); }

    friend void describe(std::string& out, const CopyOnWriteBox& box) {
        platform::appendDiagnosticText(out, box.value());
    }

    [[nodiscard]] friend bool operator==(const CopyOnWriteBox& left, const CopyOnWriteBox& right) {
        return left.value() == right.value();
    }

private:
    struct Storage {
        Storage() = default;

        explicit Storage(T value_)
            : value(std::move(value_)) {}

        std::atomic<std::size_t> references{1};
        T value{};
    };

    Storage* storage_;
};

} // namespace OpenAPIRuntime::inline v1

template <class T>
struct std::hash<OpenAPIRuntime::CopyOnWriteBox<T>> {
    [[nodiscard]] std::size_t operator()(const OpenAPIRuntime::CopyOnWriteBox<T>& box) const noexcept {
        return platform::hashValue(box.value());
    }
};

template <class T>
struct platform::Coding<OpenAPIRuntime::CopyOnWriteBox<T>> {
    static constexpr CodedShape shape = codedShapeOf<T>();

    [[nodiscard]] static std::string typeName() { return typeNameOf<T>(); }

    [[nodiscard]] static bool mayDecode(Decoder& decoder)
        requires requires { Coding<T>::mayDecode(decoder); }
    {
        return Coding<T>::mayDecode(decoder);
    }

    static void decode(Decoder& decoder, OpenAPIRuntime::CopyOnWriteBox<T>& out) {
        T value = detail::blankFor<T>();
        Coding<T>::decode(decoder, value);
        out.setValue(std::move(value));
    }

    static void encode(Encoder& encoder, const OpenAPIRuntime::CopyOnWriteBox<T>& box) {
        Coding<T>::encode(encoder, box.value());
    }
};
