#include "tests/platform/loading/Identity.hpp"
#include "tests/platform/loading/Loading.hpp"
#include "tests/platform/loading/ScriptedServer.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <openssl/ssl.h>

using namespace tests;
using platform::URLSession;

namespace {

/// Answers one request over TLS.
void serve(SSL_CTX* context, int socket) {
    SSL* tls = SSL_new(context);
    SSL_set_fd(tls, socket);
    if (SSL_accept(tls) == 1) {
        char request[4096];
        if (SSL_read(tls, request, sizeof request) > 0) {
            constexpr std::string_view response = "HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nsecret";
            SSL_write(tls, response.data(), static_cast<int>(response.size()));
            SSL_shutdown(tls);
        }
    }
    SSL_free(tls);
}

} // namespace

TEST(TLS, ServersAreTrustedByTheirCertificateAndName) {
    std::signal(SIGPIPE, SIG_IGN); // the server may write to a client that has turned away
    const Identity identity;
    SSL_CTX* context = SSL_CTX_new(TLS_server_method());
    SSL_CTX_use_certificate(context, identity.certificate);
    SSL_CTX_use_PrivateKey(context, identity.key);
    {
        ScriptedServer server([&](ScriptedServer::Connection& connection) { serve(context, connection.socket()); });
        auto trusting = direct();
        trusting.certificateAuthorityFile = identity.certificateFile.string();
        auto missing = direct();
        missing.certificateAuthorityFile = identity.certificateFile.string() + ".missing";
        const auto address = [&](std::string_view host) { return "https" + server.url("/", host).substr(4); };

        const struct {
            platform::URLSessionConfiguration configuration;
            std::string url;
            std::string_view outcome;
        } rows[] = {
            {direct(), address("127.0.0.1"), "tls"},
            {trusting, address("127.0.0.1"), "200 secret"},
            {trusting, address("localhost"), "tls"},
            {missing, address("127.0.0.1"), "tls"},
        };

        for (const auto& row : rows) {
            const Outcome outcome = load(URLSession(row.configuration), request(row.url));
            EXPECT_EQ(outcome.text(), row.outcome) << row.url << ": " << outcome.errorText();
        }
    }
    SSL_CTX_free(context);
}
