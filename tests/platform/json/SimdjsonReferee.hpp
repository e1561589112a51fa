#pragma once

#include "platform/json/JSONDecoder.hpp"

#include <simdjson.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <set>
#include <string>
#include <string_view>

/// Compares the JSON decoder with simdjson: what is accepted, and the whole tree, doubles bit for bit.
namespace referee {

/// A text that stands for exactly one tree: of a key that comes twice the first counts, and zeros have no sign, since
/// simdjson drops it from integers.
struct Tree {
    std::string text;

    void number(double value) { text += 'd' + std::to_string(std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value)); }

    void string(std::string_view value) { text.append("s" + std::to_string(value.size()) + ":").append(value); }
};

inline void append(Tree& tree, simdjson::dom::element element) {
    using simdjson::dom::element_type;
    switch (element.type()) {
    case element_type::ARRAY: {
        const simdjson::dom::array array = element.get_array().value_unsafe();
        tree.text += '[';
        for (const simdjson::dom::element child : array)
            append(tree, child);
        tree.text += ']';
        break;
    }
    case element_type::OBJECT: {
        const simdjson::dom::object object = element.get_object().value_unsafe();
        tree.text += '{';
        std::set<std::string_view> seen;
        for (const auto& member : object) {
            if (!seen.insert(member.key).second) continue;
            tree.string(member.key);
            append(tree, member.value);
        }
        tree.text += '}';
        break;
    }
    case element_type::INT64:
    case element_type::UINT64:
    case element_type::DOUBLE:
        tree.number(element.get_double().value_unsafe());
        break;
    case element_type::STRING:
        tree.string(element.get_string().value_unsafe());
        break;
    case element_type::BOOL:
        tree.text += element.get_bool().value_unsafe() ? 't' : 'f';
        break;
    case element_type::NULL_VALUE:
        tree.text += 'n';
        break;
    }
}

/// Whether there is a number beyond 64-bit integers or doubles, which simdjson refuses also where nobody reads it.
inline bool hasHugeNumber(std::string_view json) {
    constexpr std::string_view symbols = "+-.0123456789Ee";
    for (std::size_t at = 0; (at = json.find_first_of(symbols, at)) != std::string_view::npos;) {
        const std::size_t end = std::min(json.find_first_not_of(symbols, at), json.size());
        if (std::fabs(std::strtod(std::string(json.substr(at, end - at)).c_str(), nullptr)) >= 9.2e18) return true;
        at = end;
    }
    return false;
}

/// What differs between the two over `json`; empty where they agree.
std::string difference(std::string_view json);

} // namespace referee

template <>
struct platform::Coding<referee::Tree> {
    static void decode(Decoder& decoder, referee::Tree& tree) {
        auto value = decoder.singleValueContainer();
        bool flag = false;
        double number = 0;
        std::string text;
        if (value.decodeNil()) {
            tree.text += 'n';
        } else if (value.tryDecode(flag)) {
            tree.text += flag ? 't' : 'f';
        } else if (value.tryDecode(number)) {
            tree.number(number);
        } else if (value.tryDecode(text)) {
            tree.string(text);
        } else if (const auto kind = shapeOf(decoder); kind == CodedShape::unkeyed) {
            auto container = decoder.unkeyedContainer();
            tree.text += '[';
            while (!container.isAtEnd())
                container.decode(tree);
            tree.text += ']';
        } else if (kind == CodedShape::keyed) {
            auto container = decoder.container();
            tree.text += '{';
            std::size_t cursor = 0;
            while (container.implementation().nextKey(cursor, text)) {
                tree.string(text);
                container.decode(text, tree);
            }
            tree.text += '}';
        } else { // a number too great for a double
            tree.text += '!';
        }
    }

private:
    static CodedShape shapeOf(Decoder& decoder) {
        try {
            (void)decoder.unkeyedContainer();
            return CodedShape::unkeyed;
        } catch (const DecodingError&) {
        }
        try {
            (void)decoder.container();
            return CodedShape::keyed;
        } catch (const DecodingError&) {
        }
        return CodedShape::single;
    }
};

inline std::string referee::difference(std::string_view json) {
    static simdjson::dom::parser parser;
    simdjson::dom::element root;
    const simdjson::error_code code = parser.parse(simdjson::padded_string(json)).get(root);
    const bool skipsMark = json.starts_with("\xEF\xBB\xBF"); // which newer ones read over
    Tree ours;
    std::string complaint;
    try {
        platform::JSONDecoder().decode(json, ours);
    } catch (const platform::DecodingError& error) {
        complaint = error.what();
    }
    if (!complaint.empty()) {
        const bool isDeep = complaint.find("512 containers") != std::string::npos;
        return code != simdjson::SUCCESS || isDeep || skipsMark ? "" : "only we refuse: " + complaint;
    }
    if (code != simdjson::SUCCESS) {
        const bool isNumber = code == simdjson::NUMBER_ERROR;
        return isNumber && hasHugeNumber(json) ? ""
                                               : std::string("only we accept; they: ") + simdjson::error_message(code);
    }
    Tree theirs;
    append(theirs, root);
    return theirs.text == ours.text ? "" : "trees differ\nours:   " + ours.text + "\ntheirs: " + theirs.text;
}
