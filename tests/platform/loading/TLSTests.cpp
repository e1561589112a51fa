#include "tests/platform/loading/Loading.hpp"
#include "tests/platform/loading/ScriptedServer.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <unistd.h>

using namespace tests;
using platform::URLSession;

namespace {

/// A key and a certificate for 127.0.0.1 that it signs itself.
struct Identity {
    Identity() {
        X509_set_version(certificate, 2);
        ASN1_INTEGER_set(X509_get_serialNumber(certificate), 1);
        X509_gmtime_adj(X509_getm_notBefore(certificate), -3600);
        X509_gmtime_adj(X509_getm_notAfter(certificate), 3600);
        X509_set_pubkey(certificate, key);
        X509_NAME* name = X509_get_subject_name(certificate);
        X509_NAME_add_entry_by_txt(
            name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>("loading test"), -1, -1, 0
        );
        X509_set_issuer_name(certificate, name);
        X509_EXTENSION* names = X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1");
        X509_add_ext(certificate, names, -1);
        X509_EXTENSION_free(names);
        X509_sign(certificate, key, EVP_sha256());
        file = std::filesystem::temp_directory_path() / ("loading-test-" + std::to_string(getpid()) + ".pem");
        FILE* out = std::fopen(file.c_str(), "w");
        PEM_write_X509(out, certificate);
        std::fclose(out);
    }

    ~Identity() {
        std::filesystem::remove(file);
        X509_free(certificate);
        EVP_PKEY_free(key);
    }

    Identity(const Identity&) = delete;
    Identity& operator=(const Identity&) = delete;

    EVP_PKEY* key = EVP_EC_gen("P-256");
    X509* certificate = X509_new();
    std::filesystem::path file;
};

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
        trusting.certificateAuthorityFile = identity.file.string();
        auto missing = direct();
        missing.certificateAuthorityFile = identity.file.string() + ".missing";
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
