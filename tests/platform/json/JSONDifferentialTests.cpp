#include "tests/platform/json/SimdjsonReferee.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <random>
#include <string>

namespace {

class Generator {
public:
    explicit Generator(std::uint64_t seed)
        : random_(seed) {}

    std::string document() {
        std::string text;
        value(text, 0);
        return text;
    }

    std::string mutated(std::string text) {
        static constexpr std::string_view alphabet = "{}[]\",:\\/ubfnrt0123456789.-+eE \n\x01\x80\xC3\xED\xF4";
        for (std::size_t edits = 1 + pick(3); edits > 0 && !text.empty(); --edits) {
            const std::size_t at = pick(text.size());
            switch (pick(4)) {
            case 0:
                text.erase(at, 1 + pick(3));
                break;
            case 1:
                text.insert(at, 1, alphabet[pick(alphabet.size())]);
                break;
            case 2:
                text[at] = alphabet[pick(alphabet.size())];
                break;
            default:
                text.insert(at, text.substr(pick(text.size()), pick(12)));
            }
        }
        return text;
    }

private:
    std::size_t pick(std::size_t count) { return static_cast<std::size_t>(random_() % count); }

    void space(std::string& out) {
        if (pick(6) == 0) out += std::array{" ", "\n", "\t", "\r", "  "}[pick(5)];
    }

    void string(std::string& out) {
        static constexpr std::array pieces{
            "a",
            "key",
            "\\n",
            "\\\"",
            "\\u00e9",
            "\\ud83d\\ude00",
            "é",
            "\xF0\x9F\x98\x80",
            "0123456789abcdef",
            "/",
            "\\/",
            "\\u0000",
            "\xE2\x82\xAC"
        };
        out += '"';
        for (std::size_t n = pick(5); n > 0; --n)
            out += pieces[pick(pieces.size())];
        out += '"';
    }

    void number(std::string& out) {
        if (pick(2) == 0) out += '-';
        out += std::to_string(random_() >> pick(64));
        if (pick(2) == 0) out += '.' + std::to_string(random_() >> pick(64));
        if (pick(3) == 0) out += std::array{"e", "E", "e+", "E-", "e-"}[pick(5)] + std::to_string(pick(330));
    }

    void value(std::string& out, int depth) {
        space(out);
        const std::size_t kind = pick(depth > 5 ? 5 : 8);
        if (kind == 0) out += std::array{"null", "true", "false"}[pick(3)];
        if (kind == 1 || kind == 2) string(out);
        if (kind == 3 || kind == 4) number(out);
        if (kind >= 5) {
            const bool isObject = kind != 5;
            out += isObject ? '{' : '[';
            // Now and then so many members that they get an index, now and then keys that repeat.
            const std::size_t count = pick(40) == 0 ? 70 + pick(40) : pick(6);
            for (std::size_t i = 0; i < count; ++i) {
                if (i > 0) out += ',';
                space(out);
                if (isObject) {
                    string(out);
                    space(out);
                    out += ':';
                }
                value(out, depth + (count > 6 ? 6 : 1));
            }
            out += isObject ? '}' : ']';
        }
        space(out);
    }

    std::mt19937_64 random_;
};

TEST(JSONDifferential, AgreesWithSimdjsonOnGeneratedAndMutatedText) {
    const char* given = std::getenv("QUILLBEAM_SEED");
    const std::uint64_t seed = given != nullptr ? std::strtoull(given, nullptr, 10) : std::random_device{}();
    SCOPED_TRACE("QUILLBEAM_SEED=" + std::to_string(seed));
    Generator generator(seed);
    for (int i = 0; i < 5000; ++i) {
        const std::string text = generator.document();
        ASSERT_EQ(referee::difference(text), "") << text;
        for (int j = 0; j < 4; ++j) {
            const std::string mutation = generator.mutated(text);
            ASSERT_EQ(referee::difference(mutation), "") << mutation;
        }
    }
}

} // namespace
