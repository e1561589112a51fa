// A program that calls one operation: what an application's source file pays for the library.
#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/Domains.hpp"

platform::Task<int> countDomains(QuillbeamAPI::Client& client) {
    auto output = co_await client.getDomains();
    co_return static_cast<int>(output.ok().body.json().domains.size());
}
