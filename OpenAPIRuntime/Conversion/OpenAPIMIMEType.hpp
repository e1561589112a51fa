#pragma once

#include "platform/Export.hpp"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

/// A media type or a range of them, as header fields and service definitions write it: "application/json;
/// charset=utf-8", "text/*", "*/*".
///
/// The parser is lenient where real servers are sloppy, and not a full reading of RFC 9110: quotes are not removed, and
/// a parameter that is not of the form name=value is skipped.
///
/// Thread safety: distinct objects: safe; shared objects: safe while nobody changes them.
struct QUILLBEAM_EXPORT OpenAPIMIMEType {
    /// The media type without its parameters: any, all subtypes of one type, or one type and subtype. The texts keep
    /// the case in which they were given.
    class QUILLBEAM_EXPORT Kind {
    public:
        enum class Case { any, anySubtype, concrete };

        /// The case `any`.
        Kind() = default;

        [[nodiscard]] static Kind any() { return {}; }

        [[nodiscard]] static Kind anySubtype(std::string type) { return {Case::anySubtype, std::move(type), {}}; }

        [[nodiscard]] static Kind concrete(std::string type, std::string subtype) {
            return {Case::concrete, std::move(type), std::move(subtype)};
        }

        /// The kind that a text such as "text/*" tells; nothing where it is none.
        [[nodiscard]] static std::optional<Kind> make(std::string_view text);

        [[nodiscard]] Case whichCase() const noexcept { return case_; }

        /// The type; empty for `any`.
        [[nodiscard]] const std::string& type() const noexcept { return type_; }

        /// The subtype; empty unless `concrete`.
        [[nodiscard]] const std::string& subtype() const noexcept { return subtype_; }

        /// The text of the kind, such as "text/*".
        [[nodiscard]] std::string description() const;

        /// Equal without regard to case.
        friend QUILLBEAM_EXPORT bool operator==(const Kind& left, const Kind& right);

    private:
        Kind(Case which, std::string type, std::string subtype)
            : case_(which)
            , type_(std::move(type))
            , subtype_(std::move(subtype)) {}

        Case case_ = Case::any;
        std::string type_{};
        std::string subtype_{};
    };

    /// How well a received media type fits an option.
    class Match {
    public:
        /// What keeps a received type from fitting: its type, its type or subtype, or a parameter.
        struct IncompatibilityReason {
            enum class Case { type, subtype, parameter };

            Case whichCase = Case::type;
            std::string name{}; ///< of the parameter, in lower case; empty for the other cases

            IncompatibilityReason() = default;

            explicit IncompatibilityReason(Case whichCase_, std::string name_ = {})
                : whichCase(whichCase_)
                , name(std::move(name_)) {}

            friend bool operator==(const IncompatibilityReason&, const IncompatibilityReason&) = default;
        };

        enum class Case { incompatible, wildcard, subtypeWildcard, typeAndSubtype };

        [[nodiscard]] static Match incompatible(IncompatibilityReason reason) {
            return {Case::incompatible, 0, std::move(reason)};
        }

        [[nodiscard]] static Match wildcard() { return {Case::wildcard, 0, {}}; }

        [[nodiscard]] static Match subtypeWildcard() { return {Case::subtypeWildcard, 0, {}}; }

        [[nodiscard]] static Match typeAndSubtype(std::size_t matchedParameterCount) {
            return {Case::typeAndSubtype, matchedParameterCount, {}};
        }

        [[nodiscard]] Case whichCase() const noexcept { return case_; }

        /// The number of the option's parameters, all of them matched; 0 unless `typeAndSubtype`.
        [[nodiscard]] std::size_t matchedParameterCount() const noexcept { return matchedParameterCount_; }

        /// Meaningful for `incompatible` only.
        [[nodiscard]] const IncompatibilityReason& reason() const noexcept { return reason_; }

        /// The better the match, the higher: 0 incompatible, 1 wildcard, 2 subtype wildcard, from 3 on type and
        /// subtype.
        [[nodiscard]] std::size_t score() const noexcept {
            return static_cast<std::size_t>(case_) + matchedParameterCount_;
        }

        friend bool operator==(const Match&, const Match&) = default;

    private:
        Match(Case which, std::size_t matchedParameterCount, IncompatibilityReason reason)
            : case_(which)
            , matchedParameterCount_(matchedParameterCount)
            , reason_(std::move(reason)) {}

        Case case_;
        std::size_t matchedParameterCount_;
        IncompatibilityReason reason_;
    };

    using Parameters = std::map<std::string, std::string, std::less<>>;

    Kind kind{};
    Parameters parameters{}; ///< names and values as they were given

    OpenAPIMIMEType() = default;

    explicit OpenAPIMIMEType(Kind kind_, Parameters parameters_ = {})
        : kind(std::move(kind_))
        , parameters(std::move(parameters_)) {}

    /// The media type that `text` tells; nothing where its kind is none. Parameters never make it fail; of two with the
    /// same name the first one counts.
    [[nodiscard]] static std::optional<OpenAPIMIMEType> make(std::string_view text);

    /// The kind and the parameters in ascending order of their names, joined by "; ".
    [[nodiscard]] std::string description() const;

    /// How well a received concrete media type fits `option`. Types, subtypes and parameter names compare without
    /// regard to case, parameter values exactly; parameters that the option does not name do not count. Where two
    /// received names differ by case only, the one that sorts first counts.
    [[nodiscard]] static Match matchReceived(
        std::string_view type, std::string_view subtype, const Parameters& parameters, const OpenAPIMIMEType& option
    );

    /// Equal kinds, and equal parameters, their names without regard to case.
    friend QUILLBEAM_EXPORT bool operator==(const OpenAPIMIMEType& left, const OpenAPIMIMEType& right);
};

} // namespace OpenAPIRuntime::inline v1

template <>
struct std::hash<OpenAPIRuntime::OpenAPIMIMEType::Match::IncompatibilityReason> {
    std::size_t operator()(const OpenAPIRuntime::OpenAPIMIMEType::Match::IncompatibilityReason& reason) const noexcept {
        return std::hash<std::string>()(reason.name) * 31 + static_cast<std::size_t>(reason.whichCase);
    }
};

template <>
struct std::hash<OpenAPIRuntime::OpenAPIMIMEType::Match> {
    std::size_t operator()(const OpenAPIRuntime::OpenAPIMIMEType::Match& match) const noexcept {
        return std::hash<OpenAPIRuntime::OpenAPIMIMEType::Match::IncompatibilityReason>()(match.reason()) * 31 +
               match.score();
    }
};
