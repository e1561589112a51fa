#include "sandbox/Authentication.hpp"

#include "sandbox/DateTime.hpp"
#include "sandbox/Identifiers.hpp"
#include "sandbox/Problem.hpp"

#include <algorithm>
#include <array>
#include <openssl/sha.h>
#include <string_view>
#include <utility>

namespace sandbox {

namespace {

// RFC 6750, section 2.1; the scheme's name has no case (RFC 9110, section 11.1).
std::string bearerKey(const Request& request) {
    constexpr std::string_view scheme = "bearer ";
    const std::string header = request.header("authorization").value_or("");
    const auto sameLetter = [](char left, char right) { return (left | 0x20) == (right | 0x20); };
    if (header.size() < scheme.size() || !std::equal(scheme.begin(), scheme.end(), header.begin(), sameLetter)) {
        throw Problem::unauthorized("An API key is required: send it as \"Authorization: Bearer KEY\".");
    }
    const std::size_t start = header.find_first_not_of(' ', scheme.size());
    return start == std::string::npos ? std::string() : header.substr(start);
}

// Keys are random and long: a plain digest cannot be searched for them.
std::string digestOf(std::string_view key) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    SHA256(reinterpret_cast<const unsigned char*>(key.data()), key.size(), digest.data());
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : digest) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

Account authenticate(Session& database, const Request& request) {
    const std::string digest = digestOf(bearerKey(request));
    const auto row = database.first("SELECT account_id FROM api_keys WHERE digest = ?", {digest});
    if (!row) throw Problem::unauthorized("The API key is not known.");
    database.execute("UPDATE api_keys SET last_used_at = strftime(" DATE_TIME_FORMAT ") WHERE digest = ?", {digest});
    return Account{row->text(0)};
}

} // namespace

Handler withAccount(AccountHandler handler) {
    return [handler = std::move(handler)](Session& database, const Request& request) {
        return handler(database, request, authenticate(database, request));
    };
}

NewKey addKey(Session& database, const std::string& account, const std::optional<std::string>& name) {
    NewKey key{makeIdentifier("key"), makeIdentifier("qb", 20)};
    const std::string hint = key.key.substr(0, 7) + "..." + key.key.substr(key.key.size() - 4);
    database.execute(
        "INSERT INTO api_keys (id, account_id, digest, hint, name) VALUES (?, ?, ?, ?, ?)",
        {key.id, account, digestOf(key.key), hint, valueOf(name)}
    );
    return key;
}

NewAccount addAccount(Session& database, const std::string& keyName) {
    const std::string id = makeIdentifier("acc");
    database.execute(
        "INSERT INTO accounts (id, email, first_name, last_name) VALUES (?, ?, 'Sandbox', 'Developer')",
        {id, id + "@users.quillbeam.example"}
    );
    return NewAccount{id, addKey(database, id, keyName).key};
}

void keepClearText(Session& database, const std::string& key) {
    database.execute("UPDATE api_keys SET clear_text = ? WHERE digest = ?", {key, digestOf(key)});
}

std::optional<std::string> firstKey(Session& database) {
    const auto row = database.first("SELECT clear_text FROM api_keys WHERE clear_text IS NOT NULL");
    if (!row) return std::nullopt;
    return row->text(0);
}

} // namespace sandbox
