// relationship_names.h - the element Relationship, in the namespace of the standard and in that of its draft.
#pragma once

#include <string_view>

inline constexpr std::string_view relationshipName = "Relationship";

inline constexpr std::string_view relationshipNamespaces[] = {
    "http://schemas.openxmlformats.org/package/2006/relationships",
    "http://schemas.microsoft.com/package/2005/06/relationships",
};
