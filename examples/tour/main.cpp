// Walks through all operations of the service as a story, and tells what came back:
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

constexpr std::size_t operationsOfTheService = 28;

bool walk(const char* address, const char* key) {
    const auto server = platform::URL::make(address);
    if (!server) throw std::invalid_argument(std::string("not an address: ") + address);
    auto guide = std::make_shared<examples::Guide>(*server, key);
    std::cout << "A tour of the service at " << address << '\n';
    for (const auto chapter : {
             examples::meetTheAccount,
             examples::addADomain,
             examples::uploadASocialCard,
             examples::makeLinks,
             examples::followTheLink,
             examples::readTheAnalytics,
             examples::sortByTags,
             examples::replaceAKey,
             examples::changeThePlan,
             examples::removeTheLinks,
             examples::removeTheDomain,
             examples::meetFailures,
         }) {
        platform::syncWait(chapter(guide));
    }
    return guide->report.finish(operationsOfTheService);
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
