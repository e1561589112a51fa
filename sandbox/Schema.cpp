#include "sandbox/Schema.hpp"

#include "sandbox/Authentication.hpp"
#include "sandbox/Domains.hpp"

namespace sandbox {

namespace {

// Written into the file's header: tells our files from other databases.
constexpr std::int64_t applicationID = 0x51424d31;
constexpr std::int64_t schemaVersion = 1;

constexpr const char* schema = R"sql(
PRAGMA application_id = 0x51424d31;
PRAGMA user_version = 1;

CREATE TABLE accounts (
    id                  TEXT PRIMARY KEY,
    created_at          TEXT NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ')),
    email               TEXT NOT NULL,
    first_name          TEXT,
    last_name           TEXT,
    -- Instead of those of the account's plan.
    link_limit          INTEGER,
    click_limit         INTEGER,
    custom_domain_limit INTEGER
) STRICT;

-- What an account used of its limits in a calendar month. Deleting what was made gives nothing back.
CREATE TABLE usage (
    account_id TEXT NOT NULL REFERENCES accounts ON DELETE CASCADE,
    month      TEXT NOT NULL,
    links      INTEGER NOT NULL DEFAULT 0,
    clicks     INTEGER NOT NULL DEFAULT 0,
    PRIMARY KEY (account_id, month)
) STRICT;

CREATE TABLE subscriptions (
    account_id  TEXT PRIMARY KEY REFERENCES accounts ON DELETE CASCADE,
    id          TEXT NOT NULL UNIQUE,
    store       TEXT NOT NULL CHECK (store IN ('appStore', 'macAppStore', 'stripe')),
    plan        TEXT NOT NULL CHECK (plan IN ('lite', 'pro', 'growth')),
    price_id    TEXT,
    is_canceled INTEGER NOT NULL DEFAULT 0,
    expires_at  TEXT NOT NULL
) STRICT;

CREATE VIEW subscription_states AS
SELECT *,
       CASE WHEN is_canceled THEN 'canceled'
            WHEN expires_at <= strftime('%Y-%m-%dT%H:%M:%SZ') THEN 'expired'
            ELSE 'active' END AS status
FROM subscriptions;

CREATE TABLE api_keys (
    sequence     INTEGER PRIMARY KEY,
    id           TEXT NOT NULL UNIQUE,
    account_id   TEXT NOT NULL REFERENCES accounts ON DELETE CASCADE,
    digest       TEXT NOT NULL UNIQUE,
    -- The key's ends, by which its owner knows it again.
    hint         TEXT NOT NULL,
    -- Only of the very first key, which is printed at each start.
    clear_text   TEXT,
    name         TEXT,
    created_at   TEXT NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%SZ')),
    last_used_at TEXT
) STRICT;

CREATE TABLE pages (
    token      TEXT PRIMARY KEY,
    kind       TEXT NOT NULL,
    account_id TEXT NOT NULL REFERENCES accounts ON DELETE CASCADE,
    redirect   TEXT,
    price_id   TEXT,
    is_done    INTEGER NOT NULL DEFAULT 0
) STRICT;

-- A domain without an account is built in: every account sees it, none can change it. A host name is one account's at a
-- time, since a short link is found by its host name alone.
CREATE TABLE domains (
    sequence           INTEGER PRIMARY KEY,
    id                 TEXT NOT NULL UNIQUE,
    account_id         TEXT REFERENCES accounts ON DELETE CASCADE,
    name               TEXT NOT NULL UNIQUE,
    redirect_url       TEXT,
    status             TEXT NOT NULL CHECK (status IN ('ACTIVE', 'PENDING', 'BLOCKED')),
    checks             INTEGER NOT NULL DEFAULT 0,
    verification_token TEXT
) STRICT;

CREATE INDEX domains_of_account ON domains (account_id);

-- A link without an account waits to be claimed.
CREATE TABLE links (
    sequence                INTEGER PRIMARY KEY,
    id                      TEXT NOT NULL UNIQUE,
    account_id              TEXT REFERENCES accounts ON DELETE CASCADE,
    claim_token             TEXT UNIQUE,
    created_at              TEXT NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%SZ')),
    domain_id               TEXT NOT NULL REFERENCES domains (id) ON DELETE CASCADE,
    slug                    TEXT NOT NULL,
    destination_url         TEXT NOT NULL,
    title                   TEXT,
    description             TEXT,
    image_url               TEXT,
    utm_source              TEXT,
    utm_medium              TEXT,
    utm_campaign            TEXT,
    utm_term                TEXT,
    utm_content             TEXT,
    ios_redirect_url        TEXT,
    android_redirect_url    TEXT,
    -- A JSON list of countries and addresses.
    region_redirects        TEXT,
    expire_at               TEXT,
    expiration_redirect_url TEXT,
    UNIQUE (domain_id, slug)
) STRICT;

CREATE INDEX links_of_account ON links (account_id);

CREATE TABLE clicks (
    sequence INTEGER PRIMARY KEY,
    link_id  TEXT NOT NULL REFERENCES links (id) ON DELETE CASCADE,
    at       TEXT NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%SZ')),
    country  TEXT,
    region   TEXT,
    device   TEXT,
    referrer TEXT,
    browser  TEXT,
    os       TEXT
) STRICT;

CREATE INDEX clicks_of_link ON clicks (link_id, at);

-- Without a type and bytes until it is uploaded.
CREATE TABLE images (
    id           TEXT PRIMARY KEY,
    account_id   TEXT NOT NULL REFERENCES accounts ON DELETE CASCADE,
    upload_token TEXT NOT NULL UNIQUE,
    content_type TEXT,
    bytes        BLOB
) STRICT;

CREATE TABLE tags (
    sequence   INTEGER PRIMARY KEY,
    id         TEXT NOT NULL UNIQUE,
    account_id TEXT NOT NULL REFERENCES accounts ON DELETE CASCADE,
    name       TEXT NOT NULL,
    UNIQUE (account_id, name)
) STRICT;

CREATE TABLE link_tags (
    sequence INTEGER PRIMARY KEY,
    link_id  TEXT NOT NULL REFERENCES links (id) ON DELETE CASCADE,
    tag_id   TEXT NOT NULL REFERENCES tags (id) ON DELETE CASCADE,
    UNIQUE (link_id, tag_id)
) STRICT;

CREATE INDEX links_of_tag ON link_tags (tag_id);
)sql";

} // namespace

void prepareSchema(Session& database) {
    const std::int64_t application = database.first("PRAGMA application_id")->integer(0);
    const std::int64_t version = database.first("PRAGMA user_version")->integer(0);
    const bool isEmpty = !database.first("SELECT 1 FROM sqlite_schema");
    if (isEmpty) {
        database.script(schema);
        addBuiltInDomain(database);
        keepClearText(database, addAccount(database, "first key").key);
    } else if (application != applicationID) {
        throw DatabaseError("the file is another program's database");
    } else if (version != schemaVersion) {
        throw DatabaseError("the file was written by another version of the sandbox");
    }
}

} // namespace sandbox
