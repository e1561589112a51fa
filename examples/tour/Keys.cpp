#include "OpenAPIRuntime/Middlewares/BearerToken.hpp"
#include "QuillbeamAPI/APIKeys.hpp"
#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "QuillbeamAPI/Users.hpp"
#include "examples/tour/Chapters.hpp"

namespace examples {

namespace {

/// Gives the keys in turn, and the last one for ever after: what a program does that reads its key anew where it is
/// told that the one it has does not work.
class KeysInTurn {
public:
    explicit KeysInTurn(std::vector<std::string> keys)
        : keys_(std::make_shared<std::vector<std::string>>(std::move(keys))) {}

    Task<std::string> operator()() const {
        std::string key = keys_->front();
        if (keys_->size() > 1) keys_->erase(keys_->begin());
        return Task<std::string>::ready(std::move(key));
    }

private:
    std::shared_ptr<std::vector<std::string>> keys_;
};

void showKeys(Report& report, const std::vector<APIKeyDTO>& keys) {
    for (const APIKeyDTO& key : keys) {
        report.detail(key.name.value_or("(no name)"), key.key + (key.lastUsedAt ? ", was used" : ", never used"));
    }
}

} // namespace

Task<void> replaceAKey(std::shared_ptr<Guide> guide) {
    using OpenAPIRuntime::BearerToken;
    Report& report = guide->report;
    report.chapter("Keys");

    report.step("Make two more keys: each is told in full this once");
    const CreateApiKeyDTO oldName("tour, old");
    auto old = co_await guide->client.createApiKey(oldName);
    guide->show(Operations::createApiKey::id, old, 201);
    const CreateApiKeyDTO newName("tour, new");
    auto fresh = co_await guide->client.createApiKey(newName);
    guide->show(Operations::createApiKey::id, fresh, 201);
    const APIKeyDTO oldKey = old.created().body.json();
    const APIKeyDTO newKey = fresh.created().body.json();

    report.step("Call with the first of them: it works at once");
    const KeysInTurn source({oldKey.key, newKey.key});
    auto program = guide->clientWith(std::make_shared<BearerToken>(source));
    auto first = co_await program.getUserInfo();
    guide->show(Operations::getUserInfo::id, first, 200);
    auto listed = co_await guide->client.getApiKeys();
    guide->show(Operations::getApiKeys::id, listed, 200);
    showKeys(report, listed.ok().body.json());

    report.step("Delete it while that program runs: the program asks for another one and does not notice more");
    const Operations::deleteApiKey::Path oldPath(oldKey.id);
    auto deleted = co_await guide->client.deleteApiKey(oldPath);
    guide->show(Operations::deleteApiKey::id, deleted, 200);
    const int requestsBefore = guide->trace->count();
    auto second = co_await program.getUserInfo();
    guide->show(Operations::getUserInfo::id, second, 200);
    const int requests = guide->trace->count() - requestsBefore;
    report.detail("requests sent", std::to_string(requests));
    report.expect(requests == 2, "expected one that is refused and one that is not");

    report.step("Delete the other one too, and a key that is not there");
    const Operations::deleteApiKey::Path newPath(newKey.id);
    auto deletedToo = co_await guide->client.deleteApiKey(newPath);
    guide->show(Operations::deleteApiKey::id, deletedToo, 200);
    auto absent = co_await guide->client.deleteApiKey(newPath);
    guide->show(Operations::deleteApiKey::id, absent, 404);
    auto refused = co_await program.getUserInfo();
    guide->show(Operations::getUserInfo::id, refused, 401);
    guide->showError(refused.unauthorized().body.json());
}

} // namespace examples
