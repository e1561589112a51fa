// Calls every operation that the sandbox serves and tells what came back:
//
//     tour ADDRESS KEY
//
// Ends with status 0 if everything was as expected.

#include "examples/tour/Chapters.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

namespace {

// Those of every chapter.
constexpr std::size_t operationsWalked = 16;

bool walk(const char* address, const char* key) {
    const auto server = platform::URL::make(address);
    if (!server) throw std::invalid_argument(std::string("not an address: ") + address);
    auto guide = std::make_shared<examples::Guide>(*server, key);
    std::cout << "A tour of the service at " << address << '\n';
    platform::syncWait(examples::meetTheAccount(guide));
    platform::syncWait(examples::addADomain(guide));
    platform::syncWait(examples::uploadASocialCard(guide));
    platform::syncWait(examples::replaceAKey(guide));
    platform::syncWait(examples::changeThePlan(guide));
    platform::syncWait(examples::removeTheDomain(guide));
    platform::syncWait(examples::meetFailures(guide));
    return guide->report.finish(operationsWalked);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "Usage: tour ADDRESS KEY\n";
        return 2;
    }
    try {
        return walk(arguments[1], arguments[2]) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "tour: " << error.what() << '\n';
        return 1;
    }
}
