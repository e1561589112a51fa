#include "OpenAPIRuntime/Values/OpenAPIValueContainer.hpp"

#include "OpenAPIRuntime/Values/detail/FreeFormCoding.hpp"
#include "platform/DiagnosticText.hpp"
#include "platform/TypeName.hpp"
#include "platform/coding/CodingError.hpp"
#include "platform/coding/HashValue.hpp"
#include "platform/date/Date.hpp"

#include <algorithm>
#include <new>
#include <typeinfo>
#include <unordered_map>

namespace OpenAPIRuntime::inline v1 {

namespace {

using Member = OpenAPIObjectContainer::Member;
using Elements = std::vector<OpenAPIValueContainer>;
using Members = std::vector<Member>;

const OpenAPIValueContainer& absent() noexcept {
    // Never destroyed: references may outlive whatever ends with the process.
    alignas(OpenAPIValueContainer) static std::byte place[sizeof(OpenAPIValueContainer)];
    static const OpenAPIValueContainer& value = *::new (static_cast<void*>(place)) OpenAPIValueContainer;
    return value;
}

// Destruction. A level destroys the levels below it by recursion as deep as `recursionLimit`; what is deeper is taken
// apart in a list of its own.

constexpr unsigned recursionLimit = 128;

OpenAPIValueContainer& valueOf(OpenAPIValueContainer& element) noexcept {
    return element;
}

OpenAPIValueContainer& valueOf(Member& member) noexcept {
    return member.second;
}

/// Moves the containers that stand directly inside one to `pending`.
template <class Container>
void takeApart(Container& container, Elements& pending) {
    for (auto& content : detail::FreeFormAccess::contents(container)) {
        OpenAPIValueContainer& value = valueOf(content);
        if (value.is<OpenAPIArrayContainer>() || value.is<OpenAPIObjectContainer>())
            pending.push_back(std::move(value));
    }
}

/// Empties what stands inside a container, so that destroying it recurses no further.
template <class Container>
void release(Container& container, unsigned depth) noexcept {
    if (depth == recursionLimit) {
        Elements pending;
        takeApart(container, pending);
        while (!pending.empty()) {
            OpenAPIValueContainer next = std::move(pending.back());
            pending.pop_back();
            if (auto* list = next.getIf<OpenAPIArrayContainer>()) takeApart(*list, pending);
            if (auto* object = next.getIf<OpenAPIObjectContainer>()) takeApart(*object, pending);
        }
        return;
    }
    for (auto& content : detail::FreeFormAccess::contents(container)) {
        OpenAPIValueContainer& value = valueOf(content);
        if (auto* list = value.getIf<OpenAPIArrayContainer>()) {
            release(*list, depth + 1);
        } else if (auto* object = value.getIf<OpenAPIObjectContainer>()) {
            release(*object, depth + 1);
        }
        detail::FreeFormAccess::makeAbsent(value); // while it is known what it is
    }
    detail::FreeFormAccess::contents(container).clear();
}

} // namespace

OpenAPIArrayContainer::~OpenAPIArrayContainer() {
    if (!elements_.empty()) release(*this, 0);
}

OpenAPIObjectContainer::~OpenAPIObjectContainer() {
    if (!members_.empty()) release(*this, 0);
}

// What is assigned may stand inside what it is assigned to, so it is taken before the old contents go.

OpenAPIArrayContainer& OpenAPIArrayContainer::operator=(const OpenAPIArrayContainer& other) {
    OpenAPIArrayContainer copy(other);
    elements_.swap(copy.elements_);
    return *this;
}

OpenAPIArrayContainer& OpenAPIArrayContainer::operator=(OpenAPIArrayContainer&& other) noexcept {
    OpenAPIArrayContainer taken(std::move(other));
    elements_.swap(taken.elements_);
    return *this;
}

OpenAPIObjectContainer& OpenAPIObjectContainer::operator=(const OpenAPIObjectContainer& other) {
    OpenAPIObjectContainer copy(other);
    members_.swap(copy.members_);
    return *this;
}

OpenAPIObjectContainer& OpenAPIObjectContainer::operator=(OpenAPIObjectContainer&& other) noexcept {
    OpenAPIObjectContainer taken(std::move(other));
    members_.swap(taken.members_);
    return *this;
}

OpenAPIValueContainer::OpenAPIValueContainer(const OpenAPIValueContainer& other) {
    other.visit([this]<class T>(const T& content) {
        if constexpr (detail::OpenAPIAlternative<T>) construct<T>(content);
    });
}

// Access.

const OpenAPIValueContainer& OpenAPIArrayContainer::operator[](std::size_t position) const noexcept {
    return position < elements_.size() ? elements_[position] : absent();
}

namespace {

auto lowerBound(auto& members, std::string_view key) noexcept {
    return std::lower_bound(members.begin(), members.end(), key, [](const Member& member, std::string_view wanted) {
        return member.first < wanted;
    });
}

} // namespace

OpenAPIObjectContainer::OpenAPIObjectContainer(std::initializer_list<Member> members)
    : OpenAPIObjectContainer(Members(members)) {}

OpenAPIObjectContainer::OpenAPIObjectContainer(std::vector<Member> members)
    : members_(detail::MemberSorter().sorted(members)) {}

const OpenAPIValueContainer* OpenAPIObjectContainer::find(std::string_view key) const noexcept {
    const auto at = lowerBound(members_, key);
    return at != members_.end() && at->first == key ? &at->second : nullptr;
}

OpenAPIValueContainer* OpenAPIObjectContainer::find(std::string_view key) noexcept {
    const auto at = lowerBound(members_, key);
    return at != members_.end() && at->first == key ? &at->second : nullptr;
}

const OpenAPIValueContainer& OpenAPIObjectContainer::operator[](std::string_view key) const noexcept {
    const OpenAPIValueContainer* const value = find(key);
    return value != nullptr ? *value : absent();
}

OpenAPIValueContainer& OpenAPIObjectContainer::operator[](std::string_view key) {
    auto at = lowerBound(members_, key);
    if (at == members_.end() || at->first != key) at = members_.emplace(at, std::string(key), OpenAPIValueContainer());
    return at->second;
}

bool OpenAPIObjectContainer::erase(std::string_view key) {
    const auto at = lowerBound(members_, key);
    if (at == members_.end() || at->first != key) return false;
    members_.erase(at);
    return true;
}

void OpenAPIObjectContainer::clear() noexcept {
    members_.clear();
}

const OpenAPIValueContainer& OpenAPIValueContainer::operator[](std::string_view key) const noexcept {
    const auto* const object = getIf<OpenAPIObjectContainer>();
    return object != nullptr ? (*object)[key] : absent();
}

const OpenAPIValueContainer& OpenAPIValueContainer::operator[](std::size_t position) const noexcept {
    const auto* const list = getIf<OpenAPIArrayContainer>();
    return list != nullptr ? (*list)[position] : absent();
}

std::optional<double> OpenAPIValueContainer::number() const noexcept {
    if (const auto* const integer = getIf<std::int64_t>()) return static_cast<double>(*integer);
    if (const auto* const number = getIf<double>()) return *number;
    return std::nullopt;
}

bool operator==(const OpenAPIValueContainer& left, const OpenAPIValueContainer& right) noexcept {
    return left.kind_ == right.kind_ && left.visit([&right]<class T>(const T& content) {
        if constexpr (detail::OpenAPIAlternative<T>) {
            return content == *right.getIf<T>();
        } else {
            return true;
        }
    });
}

bool operator==(const OpenAPIArrayContainer& left, const OpenAPIArrayContainer& right) noexcept {
    return left.elements_ == right.elements_;
}

bool operator==(const OpenAPIObjectContainer& left, const OpenAPIObjectContainer& right) noexcept {
    return left.members_ == right.members_;
}

// Values of unknown types.

namespace {

std::string nameOfType(const platform::AnyValue& value) {
    if (value.type() == typeid(platform::Date)) return "Date"; // its own name tells a clock and a ratio
    return platform::unqualifiedTypeName(value.type());
}

template <class... T>
bool takeKnown(const platform::AnyValue& value, OpenAPIValueContainer& out) {
    const auto take = [&]<class One>(const One* found) {
        if (found != nullptr) out = *found;
        return found != nullptr;
    };
    return (take(value.getIf<T>()) || ...);
}

OpenAPIObjectContainer validatedObject(const auto& unvalidatedValues) {
    Members members;
    members.reserve(unvalidatedValues.size());
    for (const auto& [key, value] : unvalidatedValues)
        members.emplace_back(key, OpenAPIValueContainer::validating(value));
    return OpenAPIObjectContainer(std::move(members));
}

template <class Map>
bool takeKnownMap(const platform::AnyValue& value, OpenAPIValueContainer& out) {
    const auto* const map = value.getIf<Map>();
    if (map != nullptr) out = validatedObject(*map);
    return map != nullptr;
}

} // namespace

OpenAPIValueContainer OpenAPIValueContainer::validating(const platform::AnyValue& unvalidatedValue) {
    OpenAPIValueContainer result;
    if (!unvalidatedValue.hasValue() ||
        takeKnown<OpenAPIValueContainer, OpenAPIArrayContainer, OpenAPIObjectContainer>(unvalidatedValue, result)) {
        return result;
    }
    if (const auto* const list = unvalidatedValue.getIf<std::vector<platform::AnyValue>>()) {
        return OpenAPIArrayContainer::validating(*list);
    }
    if (takeKnownMap<std::map<std::string, platform::AnyValue>>(unvalidatedValue, result) ||
        takeKnownMap<std::unordered_map<std::string, platform::AnyValue>>(unvalidatedValue, result) ||
        takeKnown<std::nullopt_t, std::string, const char*, std::string_view>(unvalidatedValue, result) ||
        takeKnown<int, long, long long, short, signed char, unsigned, unsigned short, unsigned char>(
            unvalidatedValue, result
        ) ||
        takeKnown<bool, double>(unvalidatedValue, result)) {
        return result;
    }
    throw platform::EncodingError::invalidValue(
        unvalidatedValue,
        platform::CodingErrorContext(
            platform::CodingPath(), "Type '" + nameOfType(unvalidatedValue) + "' is not a supported OpenAPI value."
        )
    );
}

OpenAPIArrayContainer OpenAPIArrayContainer::validating(const std::vector<platform::AnyValue>& unvalidatedValues) {
    Elements elements;
    elements.reserve(unvalidatedValues.size());
    for (const platform::AnyValue& value : unvalidatedValues)
        elements.push_back(OpenAPIValueContainer::validating(value));
    return OpenAPIArrayContainer(std::move(elements));
}

OpenAPIObjectContainer
OpenAPIObjectContainer::validating(const std::map<std::string, platform::AnyValue>& unvalidatedValues) {
    return validatedObject(unvalidatedValues);
}

// Texts.

void describe(std::string& out, const OpenAPIArrayContainer& value) {
    platform::appendDiagnosticText(out, value.value());
}

void describe(std::string& out, const OpenAPIObjectContainer& value) {
    out += '[';
    bool isFirst = true;
    for (const auto& [key, element] : value) {
        if (!isFirst) out += ", ";
        isFirst = false;
        platform::appendDiagnosticText(out, key);
        out += ": ";
        describe(out, element);
    }
    out += ']';
}

void describe(std::string& out, const OpenAPIValueContainer& value) {
    value.visit([&out]<class T>(const T& alternative) {
        if constexpr (std::same_as<T, std::nullptr_t>) {
            out += "nil";
        } else {
            platform::appendDiagnosticText(out, alternative);
        }
    });
}

std::string OpenAPIArrayContainer::description() const {
    return platform::diagnosticText(*this);
}

std::string OpenAPIObjectContainer::description() const {
    return platform::diagnosticText(*this);
}

std::string OpenAPIValueContainer::description() const {
    return platform::diagnosticText(*this);
}

// Hashes.

namespace {

std::size_t hashed(std::size_t hash, const OpenAPIValueContainer& value) noexcept;

std::size_t hashed(std::size_t hash, const OpenAPIArrayContainer& list) noexcept {
    for (const OpenAPIValueContainer& element : list)
        hash = hashed(hash, element);
    return hash;
}

std::size_t hashed(std::size_t hash, const OpenAPIObjectContainer& object) noexcept {
    for (const auto& [key, value] : object)
        hash = hashed(platform::combinedHash(hash, std::hash<std::string>()(key)), value);
    return hash;
}

std::size_t hashed(std::size_t hash, const OpenAPIValueContainer& value) noexcept {
    return value.visit([hash]<class T>(const T& alternative) {
        if constexpr (std::same_as<T, std::nullptr_t>) {
            return hash;
        } else if constexpr (detail::OpenAPIContainer<T>) {
            return hashed(hash, alternative);
        } else {
            return platform::combinedHash(hash, std::hash<T>()(alternative));
        }
    });
}

} // namespace

} // namespace OpenAPIRuntime::inline v1

std::size_t
std::hash<OpenAPIRuntime::OpenAPIValueContainer>::operator()(const OpenAPIRuntime::OpenAPIValueContainer& value
) const noexcept {
    return OpenAPIRuntime::hashed(0, value);
}

std::size_t
std::hash<OpenAPIRuntime::OpenAPIArrayContainer>::operator()(const OpenAPIRuntime::OpenAPIArrayContainer& value
) const noexcept {
    return OpenAPIRuntime::hashed(0, value);
}

std::size_t
std::hash<OpenAPIRuntime::OpenAPIObjectContainer>::operator()(const OpenAPIRuntime::OpenAPIObjectContainer& value
) const noexcept {
    return OpenAPIRuntime::hashed(0, value);
}
