#include "QuillbeamAPI/Servers.hpp"

#include "OpenAPIRuntime/Interface/ServerURL.hpp"

namespace QuillbeamAPI::inline v1::Servers {

platform::URL Server1::url() {
    return OpenAPIRuntime::validatingOpenAPIServerURL("https://api.quillbeam.example", {});
}

platform::URL Server2::url() {
    return OpenAPIRuntime::validatingOpenAPIServerURL("https://api.dev.quillbeam.example", {});
}

platform::URL Server3::url() {
    return OpenAPIRuntime::validatingOpenAPIServerURL("http://localhost:3000", {});
}

} // namespace QuillbeamAPI::inline v1::Servers
