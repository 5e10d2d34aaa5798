// row_families.h - the families of rows that the second table is put together from, in table order.
#pragma once

#include <array>
#include <cstddef>
#include <iterator>

#include "further/archive_rows.h"
#include "further/data_rows.h"
#include "further/design_rows.h"
#include "further/image_rows.h"
#include "further/key_rows.h"
#include "further/media_rows.h"
#include "further/package_rows.h"
#include "further/program_rows.h"
#include "further/rest_rows.h"
#include "further/storage_rows.h"
#include "further/text_rows.h"
#include "signatures/row_needs.h"

// A family's rows with what the compiler makes of them: one evaluation each, for its limits.
template <const auto& rows>
struct FIFurtherFamily {
    static constexpr auto code = FIAssembleRows<rows>();
    static constexpr std::array<FIRowNeeds, std::size(rows)> needs = [] {
        std::array<FIRowNeeds, std::size(rows)> made;
        for (std::size_t index = 0; index < made.size(); ++index)
            made[index] = FINeedsOfSignature(rows[index].signature);
        return made;
    }();
};

// Calls visit<rows>() for each family, in table order.
template <typename Visit>
constexpr void FIVisitFurtherFamilies(Visit visit) {
    visit.template operator()<furtherPackageRows>();
    visit.template operator()<furtherImageRows>();
    visit.template operator()<furtherMediaRows>();
    visit.template operator()<furtherArchiveRows>();
    visit.template operator()<furtherProgramRows>();
    visit.template operator()<furtherDataRows>();
    visit.template operator()<furtherDesignRows>();
    visit.template operator()<furtherKeyRows>();
    visit.template operator()<furtherTextRows>();
    visit.template operator()<furtherStorageRows>();
    visit.template operator()<furtherRestRows>();
}
