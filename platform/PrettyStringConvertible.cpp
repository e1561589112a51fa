#include "platform/PrettyStringConvertible.hpp"

namespace platform::inline v1 {

PrettyStringConvertible::~PrettyStringConvertible() = default;

std::string prettyDescription(const std::exception_ptr& error) {
    if (!error) return "<nil>";
    try {
        std::rethrow_exception(error);
    } catch (const PrettyStringConvertible& pretty) {
        return pretty.prettyDescription();
    } catch (...) {
        return localizedDescription(error);
    }
}

std::string localizedDescription(const std::exception_ptr& error) {
    if (!error) return "<nil>";
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "unknown error";
    }
}

} // namespace platform::inline v1
