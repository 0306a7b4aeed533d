// One crop, done with the hands of an artist: open the menu, hold the keys, choose the command.

#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/Settling.h"
#include "cli/Workplace.h"

namespace headless::cli {

// The meanings of the plug-in's one menu entry, by the keys that are held.
enum class Command { Standard, Duration, MaskCrop, Preferences };

// Opens the menu with the command's keys held and leaves the entry standing for it. Throws Stop when the
// plug-in could not say what is possible.
MenuEntry holdKeysFor(Session& session, Command command);

struct CropRequest {
    Command command = Command::Standard;
    std::string mask;  // of the one selected layer; empty: the only one, or the one that a dialog asks for
    int resolution = 1;
    // Preferences; what is not said stays as the store has it.
    std::optional<int> padding, expand;
    bool includeMasks = false, deleteMask = false;
    bool plugInOnly = false;       // nothing but what the plug-in does
    bool neverPrecompose = false;  // crop what has 3D layers as it is, without a question
};

struct CroppedComp {
    model::ItemId item = 0;
    std::string name;  // now: what is pre-composed is renamed
    model::Size before, after;
    int uses = 0;                       // layers that show it, all of them corrected
    std::optional<model::Vec3> corner;  // top left, in its pixels of before; where layers show it

    // Of the same size as before, with its content elsewhere.
    bool moved() const { return corner && *corner != model::Vec3{}; }
    // The new frame reaches over the old one, and what that cut off shows.
    bool reachesOut() const;
};

struct CropResult {
    std::vector<CroppedComp> resized;
    std::vector<CroppedComp> unchanged;  // of those that were to be cropped
    std::vector<CroppedComp> added;      // pre-composed on the way
    std::vector<std::string> settled;    // what was put right besides, a line each
};

// A project before a command, to tell later what that has done to it.
class ProjectBefore {
 public:
    // `targets`: what is to be cropped.
    ProjectBefore(model::Project& project, std::vector<const model::Item*> targets);

    bool unchanged() const;
    CropResult result() const;
    // The same once what the plug-in leaves is put right.
    CropResult settledResult(Runs runs) const;

 private:
    model::Project& project_;
    std::vector<const model::Item*> targets_;
    std::map<model::ItemId, model::Size> sizes_;
    Settling settling_;
    std::size_t steps_;
};

struct NothingCropped : Stop {
    explicit NothingCropped(const std::string& reason)
        : Stop(ExitCode::NothingToDo, "nothing was cropped: " + reason), why(reason) {}
    std::string why;
};

// What a crop of the opened composition with this selection is about.
std::vector<const model::Item*> cropTargets(const model::Project& project, const model::Comp& comp);

// That a duration crop of them looks at.
std::int64_t framesOf(const std::vector<const model::Item*>& targets);

// Runs the command on what is open and selected. Throws NothingCropped, and Stop when a dialog got no answer,
// when the plug-in failed, or when the person cancelled; the project is then not to be written.
CropResult crop(Workplace& workplace, model::Comp& comp, const CropRequest& request);

Runs runsOf(const model::Preferences& preferences, Command command);

void print(const CropResult& result, bool alerted);

}  // namespace headless::cli
