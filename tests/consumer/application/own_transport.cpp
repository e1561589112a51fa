#include "OpenAPIRuntime/Interface/ClientTransport.hpp"
#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "QuillbeamAPI/Servers.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <memory>
#include <optional>
#include <string>

namespace {

class FixedTransport final : public OpenAPIRuntime::ClientTransport {
public:
    platform::Task<OpenAPIRuntime::HTTPResponseAndBody>
    send(HTTPTypes::HTTPRequest, std::optional<OpenAPIRuntime::HTTPBody>, platform::URL, std::string) override {
        return platform::Task<OpenAPIRuntime::HTTPResponseAndBody>::ready(
            HTTPTypes::HTTPResponse(HTTPTypes::HTTPResponse::Status(200)),
            OpenAPIRuntime::HTTPBody(R"({"domains": [{"id": "d1", "name": "links.example"}]})")
        );
    }
};

} // namespace

int main() {
    QuillbeamAPI::Client client(QuillbeamAPI::Servers::Server1::url(), std::make_shared<FixedTransport>());
    const auto output = platform::syncWait(client.getDomains());
    return output.ok().body.json().domains.at(0).name == "links.example" ? 0 : 1;
}
