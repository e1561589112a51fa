#pragma once

#include "platform/Export.hpp"
#include "platform/url/URL.hpp"

/// The servers that the service is offered on.
namespace QuillbeamAPI::inline v1::Servers {

/// The production endpoint.
struct Server1 {
    /// @throws OpenAPIRuntime::RuntimeError (invalidServerURL) if the address does not parse, which it does
    [[nodiscard]] QUILLBEAM_EXPORT static platform::URL url();
};

/// The development endpoint.
struct Server2 {
    /// @throws OpenAPIRuntime::RuntimeError (invalidServerURL) if the address does not parse, which it does
    [[nodiscard]] QUILLBEAM_EXPORT static platform::URL url();
};

/// A server on this machine, such as the sandbox: plain http on port 3000.
struct Server3 {
    /// @throws OpenAPIRuntime::RuntimeError (invalidServerURL) if the address does not parse, which it does
    [[nodiscard]] QUILLBEAM_EXPORT static platform::URL url();
};

} // namespace QuillbeamAPI::inline v1::Servers
