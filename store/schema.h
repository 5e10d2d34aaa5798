// schema.h - the tables of a store, and how an older store gets them.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "store/database.h"

// What tells a store from other databases: PRAGMA application_id, "fiid" in ASCII.
inline constexpr std::int64_t storeApplicationId = 0x66696964;

// What brings a store from the version in front of it to its own. A new store goes through all of them.
struct SchemaStep {
    std::int64_t version;  // PRAGMA user_version behind it: 1 for the first step, and so on
    const char* sql;
};

std::span<const SchemaStep> StoreSchema();

// Makes or upgrades the tables, in one transaction: all or nothing. Returns "", or what is wrong in words: the database
// is another program's, or of a later version than the last step's.
std::string BringToSchema(Database& database, std::span<const SchemaStep> steps, const std::string& file);

// For those who only read: "" if the tables are those of the last step.
std::string CheckSchema(Database& database, std::span<const SchemaStep> steps, const std::string& file);
