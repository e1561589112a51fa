#include "sandbox/Database.hpp"

#include <sqlite3.h>

#include <memory>
#include <unordered_map>

namespace sandbox {

namespace {

constexpr int busyTimeoutMilliseconds = 5000;

[[noreturn]] void fail(sqlite3* connection) {
    throw DatabaseError(sqlite3_errmsg(connection));
}

// Ends a statement's run and lets go of its arguments; the statement stays prepared.
struct Resetter {
    void operator()(sqlite3_stmt* statement) const {
        sqlite3_reset(statement);
        sqlite3_clear_bindings(statement);
    }
};

using Statement = std::unique_ptr<sqlite3_stmt, Resetter>;

void bind(sqlite3* connection, const Statement& statement, std::initializer_list<Value> arguments) {
    sqlite3_stmt* const raw = statement.get();
    int index = 0;
    for (const Value& argument : arguments) {
        ++index;
        int status = SQLITE_OK;
        if (const auto* text = std::get_if<std::string>(&argument)) {
            status = sqlite3_bind_text64(
                raw, index, text->data(), text->size(), SQLITE_TRANSIENT, static_cast<unsigned char>(SQLITE_UTF8)
            );
        } else if (const auto* bytes = std::get_if<Bytes>(&argument)) {
            status = sqlite3_bind_blob64(raw, index, bytes->bytes.data(), bytes->bytes.size(), SQLITE_TRANSIENT);
        } else if (const auto* integer = std::get_if<std::int64_t>(&argument)) {
            status = sqlite3_bind_int64(raw, index, *integer);
        } else if (const auto* number = std::get_if<double>(&argument)) {
            status = sqlite3_bind_double(raw, index, *number);
        } else {
            status = sqlite3_bind_null(raw, index);
        }
        if (status != SQLITE_OK) fail(connection);
    }
}

bool step(sqlite3* connection, const Statement& statement) {
    switch (sqlite3_step(statement.get())) {
    case SQLITE_ROW:
        return true;
    case SQLITE_DONE:
        return false;
    default:
        fail(connection);
    }
}

Value columnValue(sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return static_cast<std::int64_t>(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column);
    case SQLITE_NULL:
        return nullptr;
    case SQLITE_BLOB: {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
        return Bytes{std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)))};
    }
    default: {
        const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        return std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
    }
    }
}

Row currentRow(const Statement& statement) {
    std::vector<Value> columns;
    const int count = sqlite3_column_count(statement.get());
    columns.reserve(static_cast<std::size_t>(count));
    for (int column = 0; column < count; ++column) {
        columns.push_back(columnValue(statement.get(), column));
    }
    return Row(std::move(columns));
}

} // namespace

// Preparing costs several times what most statements take to run, and the program has a fixed set of them.
class StatementCache {
public:
    explicit StatementCache(sqlite3* connection)
        : connection_(connection) {}

    // A statement is in use once at a time: its rows are read before the next one is asked for.
    Statement take(const char* sql, std::initializer_list<Value> arguments) {
        Prepared& prepared = statements_[sql];
        if (!prepared) {
            sqlite3_stmt* raw = nullptr;
            if (sqlite3_prepare_v3(connection_, sql, -1, SQLITE_PREPARE_PERSISTENT, &raw, nullptr) != SQLITE_OK) {
                fail(connection_);
            }
            prepared.reset(raw);
        }
        Statement statement(prepared.get());
        bind(connection_, statement, arguments);
        return statement;
    }

    sqlite3* connection() const { return connection_; }

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    using Prepared = std::unique_ptr<sqlite3_stmt, Finalizer>;

    sqlite3* connection_;
    std::unordered_map<std::string, Prepared> statements_;
};

Value valueOf(const std::optional<std::string>& text) {
    if (!text) return nullptr;
    return *text;
}

Row::Row(std::vector<Value> columns)
    : columns_(std::move(columns)) {}

template <class T>
const T& Row::get(std::size_t column) const {
    const T* value = column < columns_.size() ? std::get_if<T>(&columns_[column]) : nullptr;
    if (!value) throw DatabaseError("column " + std::to_string(column) + " is missing or of another type");
    return *value;
}

const std::string& Row::text(std::size_t column) const {
    return get<std::string>(column);
}

std::int64_t Row::integer(std::size_t column) const {
    return get<std::int64_t>(column);
}

double Row::number(std::size_t column) const {
    return get<double>(column);
}

const std::string& Row::bytes(std::size_t column) const {
    return get<Bytes>(column).bytes;
}

std::optional<std::string> Row::optionalText(std::size_t column) const {
    if (column < columns_.size() && std::holds_alternative<std::nullptr_t>(columns_[column])) return std::nullopt;
    return text(column);
}

std::vector<Row> Session::rows(const char* sql, std::initializer_list<Value> arguments) {
    const Statement statement = statements_->take(sql, arguments);
    std::vector<Row> result;
    while (step(statements_->connection(), statement)) {
        result.push_back(currentRow(statement));
    }
    return result;
}

std::optional<Row> Session::first(const char* sql, std::initializer_list<Value> arguments) {
    const Statement statement = statements_->take(sql, arguments);
    if (!step(statements_->connection(), statement)) return std::nullopt;
    return currentRow(statement);
}

std::int64_t Session::execute(const char* sql, std::initializer_list<Value> arguments) {
    const Statement statement = statements_->take(sql, arguments);
    while (step(statements_->connection(), statement)) {
    }
    return sqlite3_changes64(statements_->connection());
}

void Session::script(const char* sql) {
    sqlite3* const connection = statements_->connection();
    if (sqlite3_exec(connection, sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail(connection);
}

Database::Transaction::Transaction(StatementCache& statements)
    : session(statements) {
    session.execute("BEGIN IMMEDIATE");
}

Database::Transaction::~Transaction() {
    if (open) sqlite3_exec(session.statements_->connection(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Database::Transaction::commit() {
    session.execute("COMMIT");
    open = false;
}

Database::Database(const std::string& path) {
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    const int status = sqlite3_open_v2(path.c_str(), &connection_, flags, nullptr);
    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> closeOnFailure(connection_, &sqlite3_close);
    if (status != SQLITE_OK) {
        throw DatabaseError(connection_ ? sqlite3_errmsg(connection_) : "out of memory");
    }
    sqlite3_busy_timeout(connection_, busyTimeoutMilliseconds);
    statements_ = std::make_unique<StatementCache>(connection_);
    Session(*statements_).script("PRAGMA foreign_keys = ON; PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
    closeOnFailure.release();
}

Database::~Database() {
    statements_.reset();
    sqlite3_close(connection_);
}

} // namespace sandbox
