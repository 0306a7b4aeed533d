#include "cli/Area.h"

#include "cli/Text.h"

namespace headless::cli {

namespace {

std::int64_t pixels(const std::optional<model::Size>& size) {
    return size ? std::int64_t{size->width} * size->height : 0;
}

}  // namespace

void Area::add(const std::optional<model::Size>& sizeBefore, const std::optional<model::Size>& sizeAfter) {
    before += pixels(sizeBefore);
    after += pixels(sizeAfter);
}

double Area::savedPercent() const {
    return before == 0 ? 0 : 100.0 * static_cast<double>(saved()) / static_cast<double>(before);
}

std::string cropText(model::Size before, model::Size after, int uses) {
    Area area;
    area.add(before, after);
    const std::string saved = area.saved() < 0 ? grouped(-area.saved()) + " pixels more"
                                               : grouped(area.saved()) + " pixels saved (" +
                                                     std::to_string(area.wholePercent()) + " %)";
    return sizeText(before) + " -> " + sizeText(after) + ", " + saved + ", " + counted(uses, "use") +
           " corrected";
}

model::Json areaJson(const Area& area) {
    return {{"before", area.before}, {"after", area.after}, {"savedPercent", area.savedPercent()}};
}

}  // namespace headless::cli
