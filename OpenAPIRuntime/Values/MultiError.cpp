#include "OpenAPIRuntime/Values/MultiError.hpp"

#include <utility>

namespace OpenAPIRuntime::inline v1 {

namespace {

std::string textOf(const std::vector<std::exception_ptr>& errors) {
    std::string text = "MultiError (contains " + std::to_string(errors.size()) + " error";
    text += errors.size() == 1 ? "): " : "s): ";
    for (std::size_t i = 0; i < errors.size(); ++i) {
        if (i > 0) text += ", ";
        text += "Error " + std::to_string(i + 1) + ": [" + platform::localizedDescription(errors[i]) + "]";
    }
    return text;
}

} // namespace

struct MultiError::Contents {
    std::vector<std::exception_ptr> errors;
    std::string text;
};

MultiError::MultiError(std::vector<std::exception_ptr> errors)
    : contents_([&errors] {
        std::string text = textOf(errors);
        return std::make_shared<const Contents>(Contents{std::move(errors), std::move(text)});
    }()) {}

const std::vector<std::exception_ptr>& MultiError::errors() const noexcept {
    return contents_->errors;
}

const char* MultiError::what() const noexcept {
    return contents_->text.c_str();
}

std::string MultiError::prettyDescription() const {
    return contents_->text;
}

} // namespace OpenAPIRuntime::inline v1
