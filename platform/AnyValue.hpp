#pragma once

#include "platform/DiagnosticText.hpp"
#include "platform/Export.hpp"

#include <concepts>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace platform::inline v1 {

/// A value of any type, kept for diagnosis: it can tell its text and its type, and be read back by one who knows the
/// type.
///
/// An immutable value over shared storage: copies share it, cost a reference count and never throw.
///
/// Thread safety: distinct objects: safe, also where they share storage.
class QUILLBEAM_EXPORT AnyValue {
public:
    /// No value; its text is "<nil>".
    AnyValue() noexcept = default;

    /// Keeps `value`. Its text is `platform::diagnosticText(value)`, made when it is asked for.
    template <class T>
        requires(!std::same_as<std::remove_cvref_t<T>, AnyValue> && std::copy_constructible<std::decay_t<T>>)
    explicit AnyValue(T&& value)
        : holder_(std::make_shared<const Holder<std::decay_t<T>>>(std::forward<T>(value))) {}

    [[nodiscard]] bool hasValue() const noexcept { return holder_ != nullptr; }

    /// The text of the value.
    [[nodiscard]] std::string description() const { return holder_ ? holder_->text() : std::string("<nil>"); }

    /// The type of the value; `void` for no value.
    [[nodiscard]] const std::type_info& type() const noexcept { return holder_ ? holder_->type() : typeid(void); }

    /// The value, where it is exactly of type `T`; else a null pointer. Valid as long as this object or a copy of it
    /// lives.
    template <class T>
    [[nodiscard]] const T* getIf() const noexcept {
        return holder_ && holder_->type() == typeid(T) ? &static_cast<const Holder<T>&>(*holder_).value : nullptr;
    }

private:
    struct Base {
        virtual ~Base() = default;
        [[nodiscard]] virtual std::string text() const = 0;
        [[nodiscard]] virtual const std::type_info& type() const noexcept = 0;
    };

    template <class T>
    struct Holder final : Base {
        template <class U>
        explicit Holder(U&& value_)
            : value(std::forward<U>(value_)) {}

        [[nodiscard]] std::string text() const override { return diagnosticText(value); }

        [[nodiscard]] const std::type_info& type() const noexcept override { return typeid(T); }

        T value;
    };

    std::shared_ptr<const Base> holder_{};
};

} // namespace platform::inline v1
