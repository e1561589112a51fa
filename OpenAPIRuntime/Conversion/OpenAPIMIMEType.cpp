#include "OpenAPIRuntime/Conversion/OpenAPIMIMEType.hpp"

#include "platform/text/ASCII.hpp"
#include "platform/text/Trimming.hpp"

#include <array>

namespace OpenAPIRuntime::inline v1 {

namespace {

/// Calls `body` with each piece of `text` between the separators that is not empty.
template <class Body>
void forEachPiece(std::string_view text, char separator, Body body) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0) body(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

/// The two pieces of `text` between the separators; nothing where there are fewer or more of them.
std::optional<std::pair<std::string_view, std::string_view>> twoPieces(std::string_view text, char separator) {
    std::array<std::string_view, 2> pieces;
    std::size_t count = 0;
    forEachPiece(text, separator, [&](std::string_view piece) {
        if (count < pieces.size()) pieces[count] = piece;
        ++count;
    });
    if (count != pieces.size()) return std::nullopt;
    return std::pair(pieces[0], pieces[1]);
}

bool equalWithoutCase(std::string_view left, std::string_view right) {
    return left == right || platform::lowercased(left) == platform::lowercased(right);
}

/// The parameters under their lower-cased names; where two names meet, the entry that comes first in `parameters`
/// stays.
OpenAPIMIMEType::Parameters lowercasedNames(const OpenAPIMIMEType::Parameters& parameters) {
    OpenAPIMIMEType::Parameters result;
    for (const auto& [name, value] : parameters) {
        result.try_emplace(platform::lowercased(name), value);
    }
    return result;
}

} // namespace

std::optional<OpenAPIMIMEType::Kind> OpenAPIMIMEType::Kind::make(std::string_view text) {
    const auto pieces = twoPieces(text, '/');
    if (!pieces) return std::nullopt;
    const auto& [type, subtype] = *pieces;
    if (subtype == "*") return type == "*" ? any() : anySubtype(std::string(type));
    if (type == "*") return std::nullopt;
    return concrete(std::string(type), std::string(subtype));
}

std::string OpenAPIMIMEType::Kind::description() const {
    switch (case_) {
    case Case::any:
        return "*/*";
    case Case::anySubtype:
        return type_ + "/*";
    case Case::concrete:
        break;
    }
    return type_ + "/" + subtype_;
}

bool operator==(const OpenAPIMIMEType::Kind& left, const OpenAPIMIMEType::Kind& right) {
    return left.case_ == right.case_ && equalWithoutCase(left.type_, right.type_) &&
           equalWithoutCase(left.subtype_, right.subtype_);
}

std::optional<OpenAPIMIMEType> OpenAPIMIMEType::make(std::string_view text) {
    std::optional<Kind> kind;
    Parameters parameters;
    bool isFirst = true;
    forEachPiece(text, ';', [&](std::string_view untrimmed) {
        const std::string_view piece = platform::trimmingWhitespaceAndNewlines(untrimmed);
        if (std::exchange(isFirst, false)) {
            kind = Kind::make(piece);
        } else if (const auto parameter = twoPieces(piece, '=')) {
            parameters.try_emplace(std::string(parameter->first), parameter->second);
        }
    });
    if (!kind) return std::nullopt;
    return OpenAPIMIMEType(std::move(*kind), std::move(parameters));
}

std::string OpenAPIMIMEType::description() const {
    std::string text = kind.description();
    for (const auto& [name, value] : parameters) {
        text.append("; ").append(name).append("=").append(value);
    }
    return text;
}

OpenAPIMIMEType::Match OpenAPIMIMEType::matchReceived(
    std::string_view type, std::string_view subtype, const Parameters& parameters, const OpenAPIMIMEType& option
) {
    using Reason = Match::IncompatibilityReason;
    switch (option.kind.whichCase()) {
    case Kind::Case::any:
        return Match::wildcard();
    case Kind::Case::anySubtype:
        if (!equalWithoutCase(type, option.kind.type())) return Match::incompatible(Reason(Reason::Case::type));
        return Match::subtypeWildcard();
    case Kind::Case::concrete:
        break;
    }
    if (!equalWithoutCase(type, option.kind.type()) || !equalWithoutCase(subtype, option.kind.subtype())) {
        return Match::incompatible(Reason(Reason::Case::subtype));
    }
    if (option.parameters.empty()) return Match::typeAndSubtype(0);
    const Parameters received = lowercasedNames(parameters);
    for (const auto& [originalName, value] : option.parameters) {
        std::string name = platform::lowercased(originalName);
        const auto found = received.find(name);
        if (found == received.end() || found->second != value) {
            return Match::incompatible(Reason(Reason::Case::parameter, std::move(name)));
        }
    }
    return Match::typeAndSubtype(option.parameters.size());
}

bool operator==(const OpenAPIMIMEType& left, const OpenAPIMIMEType& right) {
    if (!(left.kind == right.kind) || left.parameters.size() != right.parameters.size()) return false;
    return left.parameters == right.parameters || lowercasedNames(left.parameters) == lowercasedNames(right.parameters);
}

} // namespace OpenAPIRuntime::inline v1
