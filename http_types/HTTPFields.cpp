#include "http_types/HTTPFields.hpp"

#include "platform/ProgrammingError.hpp"
#include "platform/text/Comparison.hpp"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <span>

namespace HTTPTypes::inline v1 {

namespace {

using Position = std::uint16_t;

/// Ends a chain; never the position of a field.
constexpr Position endOfChain = 0xFFFF;

/// Up to this many fields a scan over the hashes of the names beats building an index.
constexpr std::size_t scanLimit = 16;

/// Room for the head of most messages without growing.
constexpr std::size_t firstCapacity = 16;

void refusePseudoName(const HTTPField& field) {
    if (field.name.isPseudo()) {
        platform::stopOnProgrammingError("HTTPFields holds no pseudo header fields: " + field.name.description());
    }
}

void checkCount(std::size_t count) {
    if (count > HTTPFields::maximumCount) {
        platform::stopOnProgrammingError("HTTPFields holds at most 65534 fields");
    }
}

void checkPosition(std::size_t position, std::size_t bound) {
    if (position >= bound) platform::stopOnProgrammingError("Position out of the range of the HTTPFields");
}

/// From a canonical name to the chain of its fields' positions. Open addressing with linear probing; the slots hold the
/// hash, so that a probe looks at a field only when the name is very likely the same.
class Index {
public:
    explicit Index(std::span<const HTTPField> fields) {
        reserve(fields.size());
        for (std::size_t count = 0; count < fields.size(); ++count) {
            append(fields[count].name, fields.first(count));
        }
    }

    [[nodiscard]] Position first(const HTTPField::Name& name, std::span<const HTTPField> fields) const noexcept {
        return slots_[slotOf(name, fields)].first;
    }

    [[nodiscard]] Position next(Position position) const noexcept { return next_[position]; }

    [[nodiscard]] std::size_t distinctNames() const noexcept { return distinctNames_; }

    /// Takes up a field of `name` behind `fields`, which are all in the index.
    void append(const HTTPField::Name& name, std::span<const HTTPField> fields) {
        const auto position = static_cast<Position>(next_.size());
        if (2 * (distinctNames_ + 1) > slots_.size()) grow();
        next_.push_back(endOfChain);
        Slot& slot = slots_[slotOf(name, fields)];
        if (slot.first == endOfChain) {
            slot = {name.hash(), position, position};
            ++distinctNames_;
        } else {
            next_[slot.last] = position;
            slot.last = position;
        }
    }

    void reserve(std::size_t count) { next_.reserve(count); }

private:
    struct Slot {
        std::uint32_t hash = 0;
        Position first = endOfChain; // vacant while it is the end
        Position last = endOfChain;
    };

    [[nodiscard]] std::size_t slotOf(const HTTPField::Name& name, std::span<const HTTPField> fields) const noexcept {
        const std::size_t mask = slots_.size() - 1;
        std::size_t i = name.hash() & mask;
        while (slots_[i].first != endOfChain && (slots_[i].hash != name.hash() || fields[slots_[i].first].name != name)
        ) {
            i = (i + 1) & mask;
        }
        return i;
    }

    void grow() {
        std::vector<Slot> old(slots_.size() * 2);
        old.swap(slots_);
        const std::size_t mask = slots_.size() - 1;
        for (const Slot& slot : old) {
            if (slot.first == endOfChain) continue;
            std::size_t i = slot.hash & mask;
            while (slots_[i].first != endOfChain) {
                i = (i + 1) & mask;
            }
            slots_[i] = slot;
        }
    }

    std::vector<Position> next_;
    std::vector<Slot> slots_ = std::vector<Slot>(64); // a power of two, at most half of it taken
    std::size_t distinctNames_ = 0;
};

} // namespace

/// The fields and, once a lookup has asked for it, their index. Shared by copies of one collection and then constant
/// but for the publishing of the index, which `lock` serialises; changed only while one collection owns it alone.
struct HTTPFields::Storage {
    Storage() { fields.reserve(firstCapacity); }

    Storage(const Storage& other) {
        fields.reserve(std::max(firstCapacity, other.fields.size() + other.fields.size() / 2));
        fields = other.fields;
        if (const Index* theirs = other.index.load(std::memory_order_acquire)) index = new Index(*theirs);
    }

    Storage& operator=(const Storage&) = delete;

    ~Storage() { dropIndex(); }

    [[nodiscard]] bool isShared() const noexcept { return references.load(std::memory_order_acquire) != 1; }

    void release() noexcept {
        if (references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
    }

    void dropIndex() noexcept { delete index.exchange(nullptr, std::memory_order_relaxed); }

    /// The index, built now if need be; none while the fields are few or memory is short, when lookups scan.
    [[nodiscard]] const Index* usefulIndex() const noexcept {
        if (const Index* present = index.load(std::memory_order_acquire)) return present;
        if (fields.size() <= scanLimit) return nullptr;
        return buildIndex();
    }

    [[nodiscard]] const Index* buildIndex() const noexcept {
        const std::lock_guard guard(lock);
        if (const Index* present = index.load(std::memory_order_relaxed)) return present;
        try {
            index.store(new Index(fields), std::memory_order_release);
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
        return index.load(std::memory_order_relaxed);
    }

    [[nodiscard]] Position scan(std::size_t from, const HTTPField::Name& name) const noexcept {
        const HTTPField* const start = fields.data();
        const HTTPField* const end = start + fields.size();
        for (const HTTPField* field = start + from; field != end; ++field) {
            if (field->name == name) return static_cast<Position>(field - start);
        }
        return endOfChain;
    }

    [[nodiscard]] Position first(const HTTPField::Name& name) const noexcept {
        const Index* const useful = usefulIndex();
        return useful != nullptr ? useful->first(name, fields) : scan(0, name);
    }

    [[nodiscard]] Position next(Position position, const HTTPField::Name& name) const noexcept {
        const Index* const useful = usefulIndex();
        return useful != nullptr ? useful->next(position) : scan(position + std::size_t{1}, name);
    }

    void append(HTTPField&& field) {
        checkCount(fields.size() + 1);
        if (Index* present = index.load(std::memory_order_relaxed)) {
            if (fields.size() == fields.capacity())
                fields.reserve(2 * fields.size()); // so that only the index may throw
            present->append(field.name, fields);
        }
        fields.push_back(std::move(field));
    }

    std::atomic<std::uint32_t> references{1};
    std::vector<HTTPField> fields;
    mutable std::mutex lock;
    mutable std::atomic<Index*> index{nullptr};
};

HTTPFields::HTTPFields(std::initializer_list<HTTPField> fields) {
    replaceSubrange(0, 0, std::vector<HTTPField>(fields));
}

HTTPFields::HTTPFields(size_type count, const HTTPField& repeating) {
    checkCount(count);
    replaceSubrange(0, 0, std::vector<HTTPField>(count, repeating));
}

HTTPFields::HTTPFields(const HTTPFields& other) noexcept
    : storage_(other.storage_) {
    if (storage_ != nullptr) storage_->references.fetch_add(1, std::memory_order_relaxed);
}

HTTPFields::HTTPFields(HTTPFields&& other) noexcept
    : storage_(std::exchange(other.storage_, nullptr)) {}

HTTPFields& HTTPFields::operator=(const HTTPFields& other) noexcept {
    HTTPFields copy(other);
    std::swap(storage_, copy.storage_);
    return *this;
}

HTTPFields& HTTPFields::operator=(HTTPFields&& other) noexcept {
    HTTPFields taken(std::move(other));
    std::swap(storage_, taken.storage_);
    return *this;
}

HTTPFields::~HTTPFields() {
    if (storage_ != nullptr) storage_->release();
}

HTTPFields::Storage& HTTPFields::uniqueStorage() {
    if (storage_ != nullptr && !storage_->isShared()) [[likely]]
        return *storage_;
    Storage* const own = storage_ == nullptr ? new Storage : new Storage(*storage_);
    clear();
    storage_ = own;
    return *own;
}

std::optional<std::string> HTTPFields::value(const HTTPField::Name& name) const {
    const_iterator field = find(name);
    if (field == end()) return std::nullopt;
    std::string joined = field->value();
    const std::string_view separator = name == HTTPField::Name::cookie ? "; " : ", ";
    auto position = static_cast<Position>(field - begin());
    while ((position = storage_->next(position, name)) != endOfChain) {
        joined += separator;
        joined += storage_->fields[position].value();
    }
    return joined;
}

void HTTPFields::setValue(const HTTPField::Name& name, std::optional<std::string_view> value) {
    std::vector<HTTPField> fields;
    if (value && name == HTTPField::Name::cookie) {
        constexpr std::string_view separator = "; ";
        std::size_t start = 0;
        for (std::size_t at = 0; (at = value->find(separator, start)) != std::string_view::npos;) {
            fields.emplace_back(name, value->substr(start, at - start));
            start = at + separator.size();
        }
        fields.emplace_back(name, value->substr(start));
    } else if (value) {
        fields.emplace_back(name, *value);
    }
    setFields(name, std::move(fields));
}

std::vector<std::string> HTTPFields::values(const HTTPField::Name& name) const {
    std::vector<std::string> values;
    if (storage_ == nullptr) return values;
    for (Position i = storage_->first(name); i != endOfChain; i = storage_->next(i, name)) {
        values.push_back(storage_->fields[i].value());
    }
    return values;
}

void HTTPFields::setValues(const HTTPField::Name& name, const std::vector<std::string>& values) {
    std::vector<HTTPField> fields;
    fields.reserve(values.size());
    for (const std::string& value : values) {
        fields.emplace_back(name, value);
    }
    setFields(name, std::move(fields));
}

std::vector<HTTPField> HTTPFields::fields(const HTTPField::Name& name) const {
    std::vector<HTTPField> fields;
    if (storage_ == nullptr) return fields;
    for (Position i = storage_->first(name); i != endOfChain; i = storage_->next(i, name)) {
        fields.push_back(storage_->fields[i]);
    }
    return fields;
}

void HTTPFields::setFields(const HTTPField::Name& selector, std::vector<HTTPField> fields) {
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may be the name of a field that goes
    const HTTPField::Name name = selector;
    for (const HTTPField& field : fields) {
        if (field.name != name) platform::stopOnProgrammingError("A field set for a name must carry that name");
    }
    auto added = fields.begin();
    if (contains(name)) {
        Storage& storage = uniqueStorage();
        Position position = storage.first(name);
        for (; position != endOfChain && added != fields.end(); position = storage.next(position, name)) {
            storage.fields[position] = std::move(*added++);
        }
        if (position != endOfChain) {
            // A chain ascends, so what is left of it are all fields of the name from here on.
            const auto left = std::remove_if(
                storage.fields.begin() + position,
                storage.fields.end(),
                [&name](const HTTPField& field) { return field.name == name; }
            );
            storage.fields.erase(left, storage.fields.end());
            storage.dropIndex();
        }
    }
    for (; added != fields.end(); ++added) {
        append(std::move(*added));
    }
}

HTTPFields::const_iterator HTTPFields::find(const HTTPField::Name& name) const noexcept {
    if (storage_ == nullptr) return nullptr;
    const Position position = storage_->first(name);
    return storage_->fields.data() + (position == endOfChain ? storage_->fields.size() : position);
}

bool HTTPFields::contains(const HTTPField::Name& name) const noexcept {
    return storage_ != nullptr && storage_->first(name) != endOfChain;
}

HTTPFields::size_type HTTPFields::size() const noexcept {
    return storage_ == nullptr ? 0 : storage_->fields.size();
}

HTTPFields::const_iterator HTTPFields::begin() const noexcept {
    return storage_ == nullptr ? nullptr : storage_->fields.data();
}

HTTPFields::const_iterator HTTPFields::end() const noexcept {
    return storage_ == nullptr ? nullptr : storage_->fields.data() + storage_->fields.size();
}

const HTTPField& HTTPFields::operator[](size_type position) const {
    checkPosition(position, size());
    return storage_->fields[position];
}

void HTTPFields::set(size_type position, HTTPField field) {
    checkPosition(position, size());
    if (storage_->fields[position] == field) return;
    refusePseudoName(field);
    Storage& storage = uniqueStorage();
    HTTPField& old = storage.fields[position];
    if (old.name != field.name) storage.dropIndex();
    old = std::move(field);
}

void HTTPFields::replaceSubrange(size_type first, size_type last, std::vector<HTTPField> fields) {
    checkPosition(first, last + 1);
    checkPosition(last, size() + 1);
    checkCount(size() - (last - first) + fields.size());
    std::ranges::for_each(fields, refusePseudoName);
    if (first == last && fields.empty()) return;
    Storage& storage = uniqueStorage();
    if (first == storage.fields.size()) {
        for (HTTPField& field : fields) {
            storage.append(std::move(field));
        }
        return;
    }
    storage.dropIndex();
    const auto overwritten = std::min(last - first, fields.size());
    const auto from = storage.fields.begin() + static_cast<difference_type>(first);
    const auto middle = fields.begin() + static_cast<difference_type>(overwritten);
    const auto behind = std::move(fields.begin(), middle, from);
    if (overwritten < fields.size()) {
        storage.fields.insert(behind, std::move_iterator(middle), std::move_iterator(fields.end()));
    } else {
        storage.fields.erase(behind, storage.fields.begin() + static_cast<difference_type>(last));
    }
}

void HTTPFields::append(HTTPField field) {
    refusePseudoName(field);
    uniqueStorage().append(std::move(field));
}

void HTTPFields::insert(size_type position, HTTPField field) {
    std::vector<HTTPField> fields;
    fields.push_back(std::move(field));
    replaceSubrange(position, position, std::move(fields));
}

HTTPField HTTPFields::remove(size_type position) {
    checkPosition(position, size());
    HTTPField removed = storage_->fields[position];
    replaceSubrange(position, position + 1, {});
    return removed;
}

HTTPFields::size_type HTTPFields::removeMarked(const std::vector<bool>& goes) {
    const auto removed = static_cast<size_type>(std::ranges::count(goes, true));
    if (removed != 0) {
        Storage& storage = uniqueStorage();
        storage.dropIndex();
        auto next = goes.begin();
        std::erase_if(storage.fields, [&next](const HTTPField&) { return *next++; });
    }
    return removed;
}

void HTTPFields::clear() noexcept {
    if (storage_ != nullptr) std::exchange(storage_, nullptr)->release();
}

void HTTPFields::reserveCapacity(size_type count) {
    checkCount(count);
    Storage& storage = uniqueStorage();
    storage.fields.reserve(count);
    if (Index* index = storage.index.load(std::memory_order_relaxed)) index->reserve(count);
}

bool HTTPFields::operator==(const HTTPFields& other) const {
    if (storage_ == other.storage_) return true;
    if (size() != other.size()) return false;
    if (std::equal(begin(), end(), other.begin())) return true;
    // Of each name both have the same list. With as many fields on both sides that holds once every list of this side
    // is found on the other, since nothing is left over then.
    for (const HTTPField& field : *this) {
        auto mine = static_cast<Position>(&field - begin());
        if (storage_->first(field.name) != mine) continue; // its list was walked from its first field
        Position theirs = other.storage_->first(field.name);
        while (mine != endOfChain && theirs != endOfChain) {
            if (storage_->fields[mine] != other.storage_->fields[theirs]) return false;
            mine = storage_->next(mine, field.name);
            theirs = other.storage_->next(theirs, field.name);
        }
        if (mine != theirs) return false;
    }
    return true;
}

std::string HTTPFields::debugDescription() const {
    std::string text = "[";
    for (const HTTPField& field : *this) {
        if (text.size() > 1) text += ", ";
        text += field.description();
    }
    text += ']';
    return text;
}

std::string HTTPFields::prettyDescription() const {
    std::vector<const HTTPField*> sorted;
    for (const HTTPField& field : *this) {
        sorted.push_back(&field);
    }
    std::ranges::sort(sorted, [](const HTTPField* left, const HTTPField* right) {
        const auto order =
            platform::localizedCaseInsensitiveCompare(left->name.canonicalName(), right->name.canonicalName());
        return order == 0 ? left < right : order < 0; // the fields of one name stay in their order
    });
    std::string text;
    for (const HTTPField* field : sorted) {
        if (!text.empty()) text += "; ";
        text += field->name.canonicalName();
        text += ": ";
        text += field->value();
    }
    return text;
}

} // namespace HTTPTypes::inline v1

std::size_t std::hash<HTTPTypes::HTTPFields>::operator()(const HTTPTypes::HTTPFields& fields) const noexcept {
    // A sum, because equal collections may hold different names in different order.
    std::size_t sum = fields.size();
    for (const HTTPTypes::HTTPField& field : fields) {
        sum += std::hash<HTTPTypes::HTTPField>()(field);
    }
    return sum;
}
