#include "Kestrin_Strings.h"

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace {

struct TableString {
    std::int32_t id;
    char text[256];
};

constexpr TableString g_strs[] = {
    {0, ""},
    {1, "Kestrin"},
    {2, "Kestrin Duration"},
    {3, "Multiple layers not allowed"},
    {4, "Kestrin Preferences"},
    {5, "Mask Crop"},
    {6, "Invoke Text Twiddler"},
    {7, "Kestrin: Problems encountered during twiddling."},
    {8, "Kestrin"},
    {9, "Padding"},
    {10, "PaddingAmount"},
    {11, "DeleteMask"},
    {12, "IncludeMasks"},
    {13, "Expand"},
    {14, "ExpandAmount"},
    {15, "Resolution"},
    {16, "ThreeD"},
    {17, "Panel_Run"},
    {18, "Menu_Cmd"},
    {19, ""},
    {20, ""},
    {21, "Kestrin Null"},
};

constexpr bool everyRowStandsAtItsId() {
    for (std::size_t i = 0; i < std::size(g_strs); ++i) {
        if (g_strs[i].id != static_cast<std::int32_t>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(everyRowStandsAtItsId());

}  // namespace

const char* GetStringPtr(int id) {
    return g_strs[id].text;
}
