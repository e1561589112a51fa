#pragma once

#include <cstdio>
#include <filesystem>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <string>
#include <unistd.h>

namespace tests {

/// A key and a certificate for 127.0.0.1 that it signs itself, in a folder that goes with the object.
class Identity {
public:
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

        std::string folderTemplate = (std::filesystem::temp_directory_path() / "loading-test-XXXXXX").string();
        folder = mkdtemp(folderTemplate.data());
        certificateFile = folder / "certificate.pem";
        FILE* out = std::fopen(certificateFile.c_str(), "w");
        PEM_write_X509(out, certificate);
        std::fclose(out);
        keyFile = folder / "key.pem";
        out = std::fopen(keyFile.c_str(), "w");
        PEM_write_PrivateKey(out, key, nullptr, nullptr, 0, nullptr, nullptr);
        std::fclose(out);
    }

    ~Identity() {
        std::filesystem::remove_all(folder);
        X509_free(certificate);
        EVP_PKEY_free(key);
    }

    Identity(const Identity&) = delete;
    Identity& operator=(const Identity&) = delete;

    EVP_PKEY* key = EVP_EC_gen("P-256");
    X509* certificate = X509_new();
    std::filesystem::path folder;
    std::filesystem::path certificateFile;
    std::filesystem::path keyFile;
};

} // namespace tests
