// Values of a Lottie document in the spelling that the renderer reads.
//
// The renderer is strict about types, and forgiving in ways that lose keyframes; so nothing is copied as it
// stands: each member that it knows is written anew, and members that it does not know are left out.

#pragma once

#include <nlohmann/json.hpp>
#include <vector>

namespace headless::render {

using Json = nlohmann::ordered_json;

// The renderer counts whole frames only, also inside a composition that is shown stretched, remapped or
// shifted by parts of a frame. So the rewritten document counts in steps, and one step of the shown document
// is a whole frame again.
class Clock {
 public:
    static constexpr int stepsPerFrame = 16;
    static constexpr int ever = 100'000'000;  // steps; no document reaches so far

    explicit Clock(double firstFrame = 0) : firstFrame_(firstFrame) {}
    double step(double frame) const;        // may lie between two steps
    int wholeStep(double frame) const;      // the nearest
    int firstStepFrom(double frame) const;  // the first that is not before `frame`

 private:
    double firstFrame_;
};

enum class Kind {
    Integer,
    Number,
    Flag,
    // These may be keyframed.
    Scalar,
    Point,
    Colour,
    Stops,  // of a gradient
    Path,
};

struct Member {
    const char* name;
    Kind kind;
};

// Null where `value` is nothing of that kind.
Json rewritten(const Json& value, Kind kind, const Clock& clock);
// A position, which may be given axis by axis.
Json rewrittenPosition(const Json& value, const Clock& clock);
// Appends those of the members that `from` has.
void rewriteMembers(Json& to, const Json& from, const std::vector<Member>& members, const Clock& clock);

// Makes room for so many members more: an object that grows copies all it holds.
void reserve(Json& object, std::size_t members);

// Plain values, where a wrong type counts as absent.
double numberOr(const Json& object, const char* name, double fallback);
bool isSet(const Json& object, const char* name);            // true, or a number that is not 0
const Json& memberOf(const Json& object, const char* name);  // a null where there is none

}  // namespace headless::render
