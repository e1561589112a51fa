#include "sandbox/APIKeys.hpp"
#include "sandbox/Analytics.hpp"
#include "sandbox/Authentication.hpp"
#include "sandbox/Clicks.hpp"
#include "sandbox/Database.hpp"
#include "sandbox/Development.hpp"
#include "sandbox/Domains.hpp"
#include "sandbox/Images.hpp"
#include "sandbox/Links.hpp"
#include "sandbox/Options.hpp"
#include "sandbox/Router.hpp"
#include "sandbox/Schema.hpp"
#include "sandbox/Server.hpp"
#include "sandbox/Subscriptions.hpp"
#include "sandbox/Tags.hpp"
#include "sandbox/Users.hpp"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

constexpr int statusOfFailure = 1;
constexpr int statusOfBadOptions = 2;

int serve(const sandbox::Options& options) {
    // Blocked before any thread starts, so that only the wait below takes them.
    sigset_t endings;
    sigemptyset(&endings);
    sigaddset(&endings, SIGINT);
    sigaddset(&endings, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endings, nullptr);

    sandbox::Database database(options.database);
    const auto key = database.transaction([](sandbox::Session& session) {
        sandbox::prepareSchema(session);
        return sandbox::firstKey(session);
    });

    sandbox::Router router(database);
    sandbox::addDomainRoutes(router);
    sandbox::addLinkRoutes(router);
    sandbox::addClickRoutes(router);
    sandbox::addAnalyticsRoutes(router);
    sandbox::addSubscriptionRoutes(router);
    sandbox::addTagRoutes(router);
    sandbox::addUserRoutes(router);
    sandbox::addAPIKeyRoutes(router);
    sandbox::addImageRoutes(router);
    sandbox::addDevelopmentRoutes(router);

    sandbox::Server server(router);
    const int port = server.bind(options.host, options.port);
    if (port < 0) {
        std::fprintf(stderr, "quillbeam-sandbox: cannot listen on %s, port %d\n", options.host.c_str(), options.port);
        return statusOfFailure;
    }
    const bool isIPv6 = options.host.find(':') != std::string::npos;
    std::printf(isIPv6 ? "listening on http://[%s]:%d\n" : "listening on http://%s:%d\n", options.host.c_str(), port);
    std::printf("first API key: %s\n", key.value_or("(deleted)").c_str());
    std::fflush(stdout);

    std::atomic<bool> hasEnded = false;
    std::thread listener([&] {
        server.run();
        hasEnded = true;
        // Wakes the wait below where the server ended of itself.
        kill(getpid(), SIGTERM);
    });
    int signal = 0;
    sigwait(&endings, &signal);
    const bool hasFailed = hasEnded;
    server.stop();
    listener.join();
    if (hasFailed) std::fputs("quillbeam-sandbox: the listening socket failed\n", stderr);
    return hasFailed ? statusOfFailure : 0;
}

} // namespace

int main(int count, char** arguments) {
    try {
        const sandbox::Options options = sandbox::parseOptions(count, arguments);
        if (options.help) {
            std::fputs(sandbox::helpText, stdout);
            return 0;
        }
        return serve(options);
    } catch (const sandbox::OptionError& error) {
        std::fprintf(stderr, "quillbeam-sandbox: %s; see --help\n", error.what());
        return statusOfBadOptions;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quillbeam-sandbox: %s\n", error.what());
        return statusOfFailure;
    }
}
