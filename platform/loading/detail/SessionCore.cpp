#include "platform/loading/detail/SessionCore.hpp"

#include "platform/concurrency/SyncWait.hpp"
#include "platform/loading/detail/FieldText.hpp"
#include "platform/url/Origin.hpp"

#include <algorithm>
#include <csignal>
#include <new>
#include <pthread.h>
#include <system_error>

namespace platform::inline v1::detail {

namespace {

// Streams that one HTTP/2 connection carries by common consent (RFC 9113 section 6.5.2 advises at least 100).
constexpr int maximumHTTP2Transfers = 100;
constexpr long maximumIdleConnections = 64;
constexpr std::size_t maximumIdleTransfers = 128;
// Reading the rest of a redirecting response saves a connection, as long as the rest is short.
constexpr std::size_t maximumSkippedBytes = 64 * 1024;
constexpr std::size_t maximumRememberedOrigins = 1024;
// A declared length is only a promise: this much is reserved on its word.
constexpr std::int64_t maximumReservation = 16 * 1024 * 1024;

bool isRedirect(int status) noexcept {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

/// Makes a URL that strict parsers take of one that a server wrote.
std::string escapingForbiddenSymbols(std::string_view url) {
    constexpr std::string_view forbidden = "\"<>\\^`{|} ";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (const char symbol : url) {
        const auto code = static_cast<unsigned char>(symbol);
        if (code <= 0x20 || code >= 0x7F || forbidden.find(symbol) != std::string_view::npos) {
            result.push_back('%');
            result.push_back(digits[code >> 4]);
            result.push_back(digits[code & 0x0F]);
        } else {
            result.push_back(symbol);
        }
    }
    return result;
}

} // namespace

SessionCore::SessionCore(URLSessionConfiguration configuration)
    : configuration_(std::move(configuration)) {}

SessionCore::~SessionCore() = default;

// Any thread
// -------------------------------------------------------------------------------------------------------------

void SessionCore::submit(const std::shared_ptr<TaskState>& task) {
    if ((task->flags.fetch_or(TaskState::queued) & TaskState::queued) != 0) return;
    std::optional<URLError> refusal;
    {
        const std::lock_guard lock(mutex_);
        if (stopped_) {
            refusal.emplace(
                URLError::Kind::cancelled, "the session was invalidated", task->request.url.absoluteString()
            );
        } else {
            try {
                if (!started_) start();
                submissions_.push_back(task);
            } catch (const std::exception& error) {
                refusal.emplace(URLError::Kind::other, error.what(), task->request.url.absoluteString());
            }
        }
    }
    if (refusal) {
        task->flags.fetch_and(~unsigned(TaskState::queued));
        const auto flags = task->flags.load();
        if ((flags & TaskState::suspended) == 0 || (flags & TaskState::cancelled) != 0)
            completeElsewhere(task, *refusal);
    } else if (sleeping_.exchange(false)) {
        poller_->wake();
    }
}

void SessionCore::start() {
    // Kept for the life of the process: undoing it could pull the engine from under somebody else's feet.
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    requireSuccess(initialised);
    poller_ = Poller::make();
    // The program's signals are for the program's threads.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        thread_ = std::thread([self = shared_from_this()] { self->run(); });
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        throw;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    started_ = true;
}

void SessionCore::stop() {
    std::thread thread;
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
        thread = std::move(thread_);
    }
    if (!thread.joinable()) return;
    if (thread.get_id() == std::this_thread::get_id()) {
        thread.detach();
        return;
    }
    poller_->wake();
    thread.join();
}

void SessionCore::complete(const std::shared_ptr<TaskState>& task, std::optional<URLError> error) noexcept {
    const auto before = task->flags.fetch_or(TaskState::completed);
    if ((before & TaskState::completed) != 0) return;
    if ((before & TaskState::cancelled) != 0 && (!error || error->kind() != URLError::Kind::cancelled)) {
        error.emplace(URLError::Kind::cancelled, "", task->request.url.absoluteString());
    }
    const auto cause = error ? std::make_exception_ptr(*std::move(error)) : std::exception_ptr();
    if (task->collects) {
        const auto handler = std::exchange(task->handler, nullptr);
        std::optional<ByteChunk> data;
        if (!cause) data.emplace(std::move(task->body));
        handler(std::move(data), std::move(task->response), cause);
    } else if (const auto delegate = std::exchange(task->delegate, nullptr)) {
        task->response.reset();
        delegate->didComplete(URLSessionTask(task), cause);
    }
}

void SessionCore::completeElsewhere(const std::shared_ptr<TaskState>& task, const URLError& error) noexcept {
    // The session has no thread any more, and the caller may hold locks that the handler wants.
    try {
        std::thread([task, error] { complete(task, error); }).detach();
    } catch (const std::system_error&) {
        complete(task, error);
    }
}

// The loop
// ---------------------------------------------------------------------------------------------------------------

void SessionCore::run() noexcept {
    disallowBlockingOnThisThread();
    multi_ = curl_multi_init();
    share_ = curl_share_init();
    curl_share_setopt(share_, CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
    curl_multi_setopt(multi_, CURLMOPT_SOCKETFUNCTION, &SessionCore::socketCallback);
    curl_multi_setopt(multi_, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(multi_, CURLMOPT_TIMERFUNCTION, &SessionCore::timerCallback);
    curl_multi_setopt(multi_, CURLMOPT_TIMERDATA, this);
    // The engine's own bound shrinks with the number of transfers, and would drop connections in every pause.
    curl_multi_setopt(
        multi_,
        CURLMOPT_MAXCONNECTS,
        std::max<long>(maximumIdleConnections, 4L * configuration_.httpMaximumConnectionsPerHost)
    );
    try {
        loop();
    } catch (const std::bad_alloc&) {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
    }
    cancelEverything();
    idleTransfers_.clear();
    curl_multi_cleanup(multi_);
    curl_share_cleanup(share_);
}

void SessionCore::loop() {
    now_ = Clock::now();
    while (true) {
        takeSubmissions();
        {
            const std::lock_guard lock(mutex_);
            if (stopped_) return;
        }
        do {
            openGates();
            if (engineTimer_ && *engineTimer_ <= now_) {
                engineTimer_.reset();
                int running = 0;
                curl_multi_socket_action(multi_, CURL_SOCKET_TIMEOUT, 0, &running);
            }
            collectResults();
            expireIdleTransfers();
        } while (!touchedGates_.empty());
        wait();
    }
}

void SessionCore::takeSubmissions() {
    {
        const std::lock_guard lock(mutex_);
        takenSubmissions_.swap(submissions_);
    }
    for (auto& task : takenSubmissions_) {
        task->flags.fetch_and(~unsigned(TaskState::queued));
        reconcile(task);
        task.reset();
    }
    takenSubmissions_.clear();
}

void SessionCore::wait() {
    sleeping_.store(true);
    int milliseconds = -1;
    {
        const std::lock_guard lock(mutex_);
        if (stopped_ || !submissions_.empty()) milliseconds = 0;
    }
    if (milliseconds != 0) {
        std::optional<Clock::time_point> next = engineTimer_;
        if (nextIdleCheck_ && (!next || *nextIdleCheck_ < *next)) next = nextIdleCheck_;
        if (next) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - now_).count();
            milliseconds = static_cast<int>(std::clamp<std::int64_t>(left, 0, 60'000));
        }
    }
    poller_->wait(milliseconds, ready_);
    sleeping_.store(false);
    now_ = Clock::now();
    for (const auto& ready : ready_) {
        const int events = (ready.readable ? CURL_CSELECT_IN : 0) | (ready.writable ? CURL_CSELECT_OUT : 0) |
                           (ready.failed ? CURL_CSELECT_ERR : 0);
        int running = 0;
        curl_multi_socket_action(multi_, ready.descriptor, events, &running);
    }
}

int SessionCore::socketCallback(CURL*, curl_socket_t socket, int what, void* self, void*) noexcept {
    try {
        static_cast<SessionCore*>(self)->poller_->watch(
            socket, what == CURL_POLL_IN || what == CURL_POLL_INOUT, what == CURL_POLL_OUT || what == CURL_POLL_INOUT
        );
    } catch (const std::exception&) {
        return -1;
    }
    return 0;
}

int SessionCore::timerCallback(CURLM*, long milliseconds, void* self) noexcept {
    auto& core = *static_cast<SessionCore*>(self);
    if (milliseconds < 0) {
        core.engineTimer_.reset();
    } else {
        core.engineTimer_ = core.now_ + std::chrono::milliseconds(milliseconds);
    }
    return 0;
}

// A task's way
// -----------------------------------------------------------------------------------------------------------

void SessionCore::reconcile(const std::shared_ptr<TaskState>& task) {
    if (task->has(TaskState::completed)) return;
    if (task->has(TaskState::cancelled)) {
        finish(task, URLError(URLError::Kind::cancelled, "", task->request.url.absoluteString()));
        return;
    }
    if (task->has(TaskState::suspended)) return;
    switch (task->place) {
    case TaskState::Place::nowhere:
        enqueue(task);
        break;
    case TaskState::Place::waiting:
        break;
    case TaskState::Place::active:
        task->lastProgress = now_;
        if (task->transfer->isPaused()) task->transfer->unpause();
        break;
    }
}

void SessionCore::enqueue(const std::shared_ptr<TaskState>& task) {
    if (!task->hasTarget) {
        task->target.url = task->request.url.absoluteString();
        task->target.method = task->request.httpMethod;
        task->hasTarget = true;
    }
    auto origin = originOf(task->target.url);
    if (!origin) {
        finish(task, URLError(URLError::Kind::unsupportedURL, "it is not http or https with a host", task->target.url));
        return;
    }
    // Streams may be parked for as long as their readers like; they queue among themselves.
    if (!task->collects) origin->append(" stream");
    if (gates_.size() >= maximumRememberedOrigins) {
        std::erase_if(gates_, [](const auto& entry) {
            return entry.second.running == 0 && entry.second.waiting.empty();
        });
    }
    task->gate = &gates_[*std::move(origin)];
    task->position = task->gate->waiting.insert(task->gate->waiting.end(), task);
    task->place = TaskState::Place::waiting;
    touch(*task->gate);
}

void SessionCore::touch(OriginGate& gate) {
    if (std::exchange(gate.isTouched, true)) return;
    touchedGates_.push_back(&gate);
}

void SessionCore::openGates() {
    // Never from where a task ends, or a row of requests that end at once would end inside each other.
    for (std::size_t i = 0; i < touchedGates_.size(); ++i) {
        touchedGates_[i]->isTouched = false;
        admit(*touchedGates_[i]);
    }
    touchedGates_.clear();
    if (gates_.size() < maximumRememberedOrigins) return;
    std::erase_if(gates_, [](const auto& entry) { return entry.second.running == 0 && entry.second.waiting.empty(); });
}

void SessionCore::admit(OriginGate& gate) {
    const int limit = gate.speaksHTTP2 ? connectionsOfOrigin() + gate.furtherStreams : connectionsOfOrigin();
    while (gate.running < limit && !gate.waiting.empty()) {
        const auto task = gate.waiting.front();
        if (task->has(TaskState::suspended)) {
            // It comes back when it is resumed.
            gate.waiting.pop_front();
            task->place = TaskState::Place::nowhere;
            continue;
        }
        if (!task->collects && gate.unshared >= connectionsOfOrigin()) break;
        active_.splice(active_.end(), gate.waiting, task->position);
        task->place = TaskState::Place::active;
        ++gate.running;
        if (!task->collects) ++gate.unshared;
        begin(task);
    }
}

void SessionCore::begin(const std::shared_ptr<TaskState>& task) {
    Transfer::Options options;
    options.collectsBody = task->collects;
    options.usesFreshConnection = task->retries;
    options.waitsForSharing = task->gate->speaksHTTP2;
    task->lastProgress = now_;
    task->uploadedBytes = 0;
    task->redirects = false;
    task->skippedBytes = 0;
    try {
        if (!task->transfer) task->transfer = takeTransfer();
        requireSuccess(curl_easy_setopt(task->transfer->easy(), CURLOPT_PRIVATE, task.get()));
        if (const auto defect = task->transfer->prepare(task->request, task->target, options, *this)) {
            finish(task, URLError(URLError::Kind::invalidRequest, *defect, task->target.url));
            return;
        }
    } catch (const std::exception& error) {
        // An option that the engine does not take, or a lack of memory.
        finish(task, URLError(URLError::Kind::other, error.what(), task->target.url));
        return;
    }
    if (const auto limit = idleLimit(*task); limit.count() > 0) {
        const auto deadline = now_ + limit;
        if (!nextIdleCheck_ || deadline < *nextIdleCheck_) nextIdleCheck_ = deadline;
    }
    curl_multi_add_handle(multi_, task->transfer->easy());
}

std::unique_ptr<Transfer> SessionCore::takeTransfer() {
    if (idleTransfers_.empty()) return std::make_unique<Transfer>(configuration_, share_);
    auto transfer = std::move(idleTransfers_.back());
    idleTransfers_.pop_back();
    return transfer;
}

TaskState& SessionCore::taskOf(const Transfer& transfer) noexcept {
    char* task = nullptr;
    curl_easy_getinfo(transfer.easy(), CURLINFO_PRIVATE, &task);
    return *reinterpret_cast<TaskState*>(task);
}

void SessionCore::didProgress(Transfer& transfer) {
    taskOf(transfer).lastProgress = now_;
}

void SessionCore::willConnect(Transfer& transfer) {
    const auto& task = taskOf(transfer);
    auto& gate = *task.gate;
    if (!gate.speaksHTTP2 || !task.collects || gate.running < 2) return;
    gate.isFull = true;
    gate.furtherStreams = std::min(gate.furtherStreams, gate.running - 1 - connectionsOfOrigin());
}

bool SessionCore::didCompleteHead(Transfer& transfer) {
    auto& task = taskOf(transfer);
    if (task.has(TaskState::cancelled)) return false;
    auto& head = transfer.head();
    if (task.collects) {
        auto& gate = *task.gate;
        gate.speaksHTTP2 = head.isHTTP2();
        const bool isRoomKnown = gate.isFull || connectionsOfOrigin() + gate.furtherStreams >= maximumHTTP2Transfers;
        if (gate.speaksHTTP2 && !isRoomKnown) ++gate.furtherStreams;
    }
    // An empty location would lead back to where it came from, so it counts as none.
    const bool leadsElsewhere = !head.field("Location").value_or("").empty();
    if (isRedirect(head.statusCode()) && configuration_.maximumRedirects > 0 && leadsElsewhere) {
        task.redirects = true;
        return true;
    }
    // A head that follows another one of the same task can only be the engine's repetition of a refused expectation;
    // whoever streams has got the first.
    if (task.response && !task.collects) return false;
    const int status = head.statusCode();
    const bool hasNoBody = transfer.method() == "HEAD" || status == 204 || status == 304;
    const bool isDecoded = task.collects && head.field("Content-Encoding") &&
                           !task.request.allHTTPHeaderFields.contains("Accept-Encoding");
    const auto length = hasNoBody   ? 0
                        : isDecoded ? URLResponse::unknownLength
                                    : head.contentLength().value_or(URLResponse::unknownLength);
    auto url = task.redirectCount == 0 ? std::optional(task.request.url) : URL::make(task.target.url);
    task.response = std::make_shared<const HTTPURLResponse>(
        url ? *std::move(url) : task.request.url, status, head.takeFields(), length
    );
    if (task.collects) {
        task.body.clear();
        if (length > 0) task.body.reserve(static_cast<std::size_t>(std::min(length, maximumReservation)));
        return true;
    }
    if (const auto delegate = task.delegate) {
        delegate->didReceiveResponse(
            URLSessionTask(task.shared_from_this()),
            task.response,
            [state = task.shared_from_this()](ResponseDisposition disposition) {
                state->flags.fetch_or(
                    disposition == ResponseDisposition::allow ? TaskState::responseAllowed : TaskState::cancelled
                );
                state->core->submit(state);
            }
        );
    } else {
        task.flags.fetch_or(TaskState::responseAllowed);
    }
    return true;
}

TransferEvents::Body SessionCore::didReceiveBody(Transfer& transfer, std::string_view bytes) {
    auto& task = taskOf(transfer);
    if (task.redirects) {
        task.skippedBytes += bytes.size();
        return task.skippedBytes > maximumSkippedBytes ? Body::stop : Body::taken;
    }
    const auto flags = task.flags.load();
    if ((flags & TaskState::cancelled) != 0) return Body::stop;
    if ((flags & TaskState::suspended) != 0) return Body::pause;
    if (task.collects) {
        task.body.append(bytes);
        return Body::taken;
    }
    if ((flags & TaskState::responseAllowed) == 0) return Body::pause;
    if (const auto delegate = task.delegate) {
        delegate->didReceiveData(URLSessionTask(task.shared_from_this()), ByteChunk(bytes));
    }
    return Body::taken;
}

void SessionCore::collectResults() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
        if (message->msg != CURLMSG_DONE) continue;
        const CURLcode code = message->data.result;
        char* task = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &task);
        didEnd(reinterpret_cast<TaskState*>(task)->shared_from_this(), code);
    }
}

void SessionCore::didEnd(const std::shared_ptr<TaskState>& task, CURLcode code) {
    auto& transfer = *task->transfer;
    auto error = transfer.error(code);
    if (task->has(TaskState::cancelled)) {
        finish(task, std::move(error));
    } else if (task->redirects && (!error || code == CURLE_WRITE_ERROR)) {
        redirect(task);
    } else if (error && !task->retries && transfer.mayRetry(code)) {
        task->retries = true;
        curl_multi_remove_handle(multi_, transfer.easy());
        begin(task);
    } else {
        finish(task, std::move(error));
    }
}

void SessionCore::redirect(const std::shared_ptr<TaskState>& task) {
    if (++task->redirectCount > configuration_.maximumRedirects) {
        finish(task, URLError(URLError::Kind::tooManyRedirects, "", task->target.url));
        return;
    }
    const int status = task->transfer->head().statusCode();
    auto& target = task->target;
    const bool becomesGet = (status == 303 && target.method != "HEAD") || (status < 303 && target.method == "POST");
    if (becomesGet) {
        target.method = "GET";
        target.dropsBody = true;
    }
    auto next = escapingForbiddenSymbols(task->transfer->redirectURL());
    if (originOf(next) != originOf(target.url)) target.dropsCredentials = true;
    target.url = std::move(next);
    release(*task);
    task->retries = false;
    enqueue(task);
}

void SessionCore::release(TaskState& task) {
    const auto before = std::exchange(task.place, TaskState::Place::nowhere);
    if (before == TaskState::Place::nowhere) return;
    auto& gate = *std::exchange(task.gate, nullptr);
    if (before == TaskState::Place::waiting) {
        gate.waiting.erase(task.position);
        return;
    }
    active_.erase(task.position);
    if (task.transfer) {
        curl_multi_remove_handle(multi_, task.transfer->easy());
        if (idleTransfers_.size() < maximumIdleTransfers) idleTransfers_.push_back(std::move(task.transfer));
        task.transfer.reset();
    }
    if (--gate.running == 0) gate.isFull = false;
    if (!task.collects) --gate.unshared;
    touch(gate);
}

void SessionCore::finish(const std::shared_ptr<TaskState>& task, std::optional<URLError> error) {
    release(*task);
    complete(task, std::move(error));
}

int SessionCore::connectionsOfOrigin() const noexcept {
    return std::max(1, configuration_.httpMaximumConnectionsPerHost);
}

std::chrono::milliseconds SessionCore::idleLimit(const TaskState& task) const noexcept {
    return task.request.timeoutInterval.value_or(configuration_.timeoutIntervalForRequest);
}

void SessionCore::expireIdleTransfers() {
    // Progress only ever moves a deadline back, so between two checks nothing is missed and nothing need be sorted.
    if (!nextIdleCheck_ || *nextIdleCheck_ > now_) return;
    nextIdleCheck_.reset();
    for (auto at = active_.begin(); at != active_.end();) {
        const auto task = *at++;
        const auto limit = idleLimit(*task);
        if (limit.count() <= 0) continue;
        const auto uploaded = task->transfer->uploadedBytes();
        const bool stands = task->has(TaskState::suspended) || task->transfer->isPaused();
        if (uploaded != task->uploadedBytes || stands) task->lastProgress = now_;
        task->uploadedBytes = uploaded;
        const auto deadline = task->lastProgress + limit;
        if (deadline <= now_) {
            finish(task, URLError(URLError::Kind::timedOut, "", task->target.url));
        } else if (!nextIdleCheck_ || deadline < *nextIdleCheck_) {
            nextIdleCheck_ = deadline;
        }
    }
}

void SessionCore::cancelEverything() {
    const auto cancel = [&](TaskState::List& tasks) {
        while (!tasks.empty()) {
            // A copy: finishing takes the task off the list that may be the last to hold it.
            const auto task = tasks.front(); // NOLINT(performance-unnecessary-copy-initialization)
            task->flags.fetch_or(TaskState::cancelled);
            finish(task, std::nullopt);
        }
    };
    // Waiting ones first: ending an active one would let them through.
    for (auto& entry : gates_)
        cancel(entry.second.waiting);
    cancel(active_);
    // Submissions end with the flag `stopped_`, so this is the last of them.
    {
        const std::lock_guard lock(mutex_);
        takenSubmissions_.swap(submissions_);
    }
    for (const auto& task : takenSubmissions_) {
        task->flags.fetch_and(~unsigned(TaskState::queued));
        const auto flags = task->flags.load();
        const bool ends = (flags & TaskState::suspended) == 0 || (flags & TaskState::cancelled) != 0;
        if (ends)
            finish(
                task,
                URLError(URLError::Kind::cancelled, "the session was invalidated", task->request.url.absoluteString())
            );
    }
    takenSubmissions_.clear();
}

} // namespace platform::inline v1::detail
