// markup.cpp - the verdict on a markup text: the XML prolog and the HTML tags, read one after the other and always
// both.
//
//   The prolog says            The tags say            Answer
//   1150, XML                  an HTML identifier      what the tags say
//   1182, a doctype of html    anything, also 0        what the tags say: the doctype alone doesn't make it HTML
//   any other but 0            anything                what the prolog says
//   0                          anything                what the tags say
#include "package/markup.h"

#include <algorithm>
#include <iterator>

#include "package/html_tags.h"
#include "package/xml_prolog.h"

namespace {

// The HTML identifiers that win over plain XML, in ascending order. The tags yield 1101, 1147 to 1149 and 1181; the
// list is that of all HTML formats.
constexpr FIID htmlIdentifiers[] = {1101, 1109, 1110, 1111, 1112, 1113, 1114, 1115,
                                    1116, 1117, 1147, 1148, 1149, 1153, 1181};
static_assert(std::size(htmlIdentifiers) == 15 && std::ranges::is_sorted(htmlIdentifiers));

}  // namespace

FIID FIProbeMarkup(FIReader& reader) {
    const FIID prolog = FIScanXmlProlog(reader);
    const FIID tags = FIScanHtmlTags(reader);
    if (prolog == xmlText && std::ranges::binary_search(htmlIdentifiers, tags)) return tags;
    if (prolog == htmlDoctype) return tags;
    return prolog != 0 ? prolog : tags;
}
