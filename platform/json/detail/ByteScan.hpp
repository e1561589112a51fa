#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace platform::inline v1::detail {

/// Whether a byte cannot simply be copied between a JSON string and the text it stands for: quotes, backslashes,
/// control characters and everything beyond ASCII, which has to be checked.
[[nodiscard]] constexpr bool isSpecialInString(unsigned char byte) noexcept {
    return byte < 0x20 || byte == '"' || byte == '\\' || byte >= 0x80;
}

#if defined(__SSE2__)
/// One bit for each of 16 bytes: whether it is special, or equals `also`.
[[nodiscard]] inline unsigned specialBytes(__m128i bytes, char also) noexcept {
    const __m128i quotes = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"'));
    const __m128i backslashes = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'));
    const __m128i others = _mm_cmpeq_epi8(bytes, _mm_set1_epi8(also));
    const __m128i low = _mm_cmplt_epi8(bytes, _mm_set1_epi8(0x20)); // signed: bytes from 0x80 count as less, too
    return static_cast<unsigned>(
        _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(quotes, backslashes), _mm_or_si128(others, low)))
    );
}
#else
/// Not 0 where one of 8 bytes is special, or equals `also`.
[[nodiscard]] inline std::uint64_t specialBytes(std::uint64_t word, char also) noexcept {
    constexpr std::uint64_t ones = 0x0101010101010101ULL;
    constexpr std::uint64_t highs = 0x8080808080808080ULL;
    const auto hasByte = [](std::uint64_t in, char byte) {
        const std::uint64_t difference = in ^ (ones * static_cast<unsigned char>(byte));
        return (difference - ones) & ~difference & highs;
    };
    return hasByte(word, '"') | hasByte(word, '\\') | hasByte(word, also) | ((word - ones * 0x20) & ~word & highs) |
           (word & highs);
}
#endif

/// The first byte in [at, end) that is special; `end` where there is none. Looks at 16 bytes a step where the machine
/// can, else at 8.
[[nodiscard]] inline const char* findSpecialInString(const char* at, const char* end) noexcept {
    constexpr char none = '"'; // no further byte: the quote is special anyway
#if defined(__SSE2__)
    for (; end - at >= 16; at += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        if (const unsigned mask = specialBytes(bytes, none); mask != 0) return at + std::countr_zero(mask);
    }
#else
    for (; end - at >= 8; at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, 8);
        if (specialBytes(word, none) != 0) break; // which byte it is, is left to the loop below
    }
#endif
    while (at != end && !isSpecialInString(static_cast<unsigned char>(*at)))
        ++at;
    return at;
}

/// Copies [at, end) up to the first byte that is special, or equals `also`, and tells where that is; `end` where there
/// is none.
/// @param also a further byte to stop at; '"' for none
/// @param out has room for all of [at, end): what stands behind the copied bytes there has no meaning afterwards
[[nodiscard]] inline const char* copyToSpecial(char* out, const char* at, const char* end, char also) noexcept {
#if defined(__SSE2__)
    for (; end - at >= 16; at += 16, out += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
        if (const unsigned mask = specialBytes(bytes, also); mask != 0) return at + std::countr_zero(mask);
    }
#else
    for (; end - at >= 8; at += 8, out += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, 8);
        if (specialBytes(word, also) != 0) break;
        std::memcpy(out, &word, 8);
    }
#endif
    while (at != end && !isSpecialInString(static_cast<unsigned char>(*at)) && *at != also)
        *out++ = *at++;
    return at;
}

/// Copies [at, end) up to the first backslash, and tells where that is; `end` where there is none.
/// @param out has room for all of [at, end): what stands behind the copied bytes there has no meaning afterwards
[[nodiscard]] inline const char* copyToBackslash(char* out, const char* at, const char* end) noexcept {
#if defined(__SSE2__)
    const __m128i backslash = _mm_set1_epi8('\\');
    for (; end - at >= 16; at += 16, out += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
        if (const int mask = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, backslash)); mask != 0)
            return at + std::countr_zero(static_cast<unsigned>(mask));
    }
#endif
    while (at != end && *at != '\\')
        *out++ = *at++;
    return at;
}

/// Whether none of 16 bytes, given as two words, is special or equals `also`.
[[nodiscard]] inline bool isPlainInString(std::uint64_t first, std::uint64_t second, char also) noexcept {
#if defined(__SSE2__)
    const auto low = static_cast<long long>(first);
    return specialBytes(_mm_set_epi64x(static_cast<long long>(second), low), also) == 0;
#else
    return (specialBytes(first, also) | specialBytes(second, also)) == 0;
#endif
}

/// Copies a string up to where it is found that one of its bytes is special or equals `also`: then it is false, and
/// what was written has no meaning. Reads and writes each byte, some twice, and no other.
[[nodiscard]] inline bool copyPlainInString(char* out, const char* at, std::size_t size, char also) noexcept {
    if (size >= 8) {
        const std::size_t half = size >= 16 ? 8 : size - 8; // between the two words of a step
        const std::size_t last = size - 8 - half;
        for (std::size_t offset = 0;; offset = offset + 16 < last ? offset + 16 : last) {
            std::uint64_t first = 0;
            std::uint64_t second = 0;
            std::memcpy(&first, at + offset, 8);
            std::memcpy(&second, at + offset + half, 8);
            if (!isPlainInString(first, second, also)) return false;
            std::memcpy(out + offset, &first, 8);
            std::memcpy(out + offset + half, &second, 8);
            if (offset == last) return true;
        }
    }
    if (size >= 4) {
        std::uint32_t first = 0;
        std::uint32_t second = 0;
        std::memcpy(&first, at, 4);
        std::memcpy(&second, at + size - 4, 4);
        std::memcpy(out, &first, 4);
        std::memcpy(out + size - 4, &second, 4);
        const std::uint64_t both = std::uint64_t{first} << 32U | second;
        return isPlainInString(both, both, also);
    }
    for (std::size_t i = 0; i < size; ++i) {
        if (isSpecialInString(static_cast<unsigned char>(at[i])) || at[i] == also) return false;
        out[i] = at[i];
    }
    return true;
}

} // namespace platform::inline v1::detail
