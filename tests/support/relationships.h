// relationships.h - the part of a package that tells which other parts it has, for tests.
#pragma once

#include <string>

// One relationship.
inline std::string FIRelationship(const std::string& type, const std::string& target) {
    return "<Relationship Id='r' Type='" + type + "' Target='" + target + "'/>";
}

// A document of relationships.
inline std::string FIRelationships(const std::string& content) {
    return "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'>" + content +
           "</Relationships>";
}
