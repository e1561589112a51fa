#pragma once

#include "benchmarks/json/Links.hpp"

#include <memory>
#include <string>
#include <string_view>

/// The same work by other means.
namespace peers {

/// A hand-written loop over simdjson's on-demand parser: parser reused, input padded beforehand.
class OnDemand {
public:
    OnDemand();
    ~OnDemand();
    [[nodiscard]] std::unique_ptr<std::string> padded(std::string_view json) const;
    [[nodiscard]] links::History history(const std::string& padded, std::size_t length);
    [[nodiscard]] links::ErrorBody errorBody(const std::string& padded, std::size_t length);

private:
    struct State;
    std::unique_ptr<State> state_;
};

[[nodiscard]] links::History decodeNlohmann(std::string_view json);
[[nodiscard]] links::History decodeRapidJSON(std::string_view json);
[[nodiscard]] links::History decodeBoost(std::string_view json);
[[nodiscard]] std::string encodeNlohmann(const links::History& history);
/// Writes members straight in the order of their keys.
[[nodiscard]] std::string encodeByHand(const links::History& history);

} // namespace peers
