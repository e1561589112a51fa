#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

struct sqlite3;

namespace sandbox {

class DatabaseError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What is stored as it is, and not as text.
struct Bytes {
    std::string bytes;
};

/// A value bound to a statement.
using Value = std::variant<std::nullptr_t, std::int64_t, double, std::string, Bytes>;

/// A text, or null where there is none.
Value valueOf(const std::optional<std::string>& text);

/// One row of a result, by column from 0. Asking a column for another type than it holds throws DatabaseError.
class Row {
public:
    explicit Row(std::vector<Value> columns);

    const std::string& text(std::size_t column) const;
    std::int64_t integer(std::size_t column) const;
    double number(std::size_t column) const;
    const std::string& bytes(std::size_t column) const;
    std::optional<std::string> optionalText(std::size_t column) const;

private:
    template <class T>
    const T& get(std::size_t column) const;

    std::vector<Value> columns_;
};

class Database;
class StatementCache;

/// What runs inside one transaction. Statements take their arguments in the order of their question marks, and stay
/// prepared for the next time: the set of their texts is a fixed one.
class Session {
public:
    std::vector<Row> rows(const char* sql, std::initializer_list<Value> arguments = {});
    std::optional<Row> first(const char* sql, std::initializer_list<Value> arguments = {});

    /// @return how many rows were inserted, changed or deleted.
    std::int64_t execute(const char* sql, std::initializer_list<Value> arguments = {});

    /// Runs several statements without arguments.
    void script(const char* sql);

private:
    friend class Database;

    explicit Session(StatementCache& statements)
        : statements_(&statements) {}

    StatementCache* statements_;
};

/// One connection under a mutex: a transaction at a time, which is what a stand-in needs to be right under parallel
/// requests.
class Database {
public:
    /// @param path a file, made if it is missing, or ":memory:".
    /// @throws DatabaseError if the file cannot be opened or is no database.
    explicit Database(const std::string& path);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Runs `work(session)`; commits when it returns, rolls back when it throws.
    template <class Work>
    auto transaction(Work&& work) {
        const std::lock_guard lock(mutex_);
        Transaction transaction(*statements_);
        auto result = std::forward<Work>(work)(transaction.session);
        transaction.commit();
        return result;
    }

private:
    struct Transaction {
        explicit Transaction(StatementCache& statements);
        ~Transaction();
        Transaction(const Transaction&) = delete;
        Transaction& operator=(const Transaction&) = delete;
        void commit();

        Session session;
        bool open = true;
    };

    std::mutex mutex_;
    sqlite3* connection_ = nullptr;
    std::unique_ptr<StatementCache> statements_;
};

} // namespace sandbox
