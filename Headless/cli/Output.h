// Where results go, and in which form.

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/Verbs.h"
#include "files/WholeFile.h"
#include "model/Project.h"

namespace headless::cli {

void addForce(CLI::App& verb, ReadOnly& readOnly);

// Where the result goes. Checked before the work begins: throws Stop when nothing can be written there, or when
// it is the input and that was not asked for.
std::filesystem::path outputFile(const std::filesystem::path& output, const std::filesystem::path& input,
                                 bool inPlace, ReadOnly readOnly);
// Throws Stop when no file can be written there.
void requireWritable(const std::filesystem::path& file);
// The same for a verb with --force.
void requireWritable(const std::filesystem::path& file, ReadOnly readOnly);
// Writes a result and says what the file that it replaces has lost. Throws std::runtime_error.
void writeResult(const std::filesystem::path& file, std::string_view content, ReadOnly readOnly);

// What is to be written of projects that were opened from one file.
//
// A name that ends in .lottie, or an input that is an archive and written over, takes an archive: the input's
// with the animations put in, or a new one; any other name takes the one animation alone.
//
// Made before the input is read: what others write there from then on is not overwritten with what was read
// before.
class ResultFile {
 public:
    ResultFile(std::filesystem::path input, std::filesystem::path output, ReadOnly readOnly);

    // The ids of the input's animations where it is an archive of several. Throws Stop where the output cannot
    // take them all, and model::ProjectError.
    std::vector<std::string> severalAnimations() const;
    // `animation`: the id in an input that is an archive; empty for the only one. Throws Stop where it cannot
    // stand alone, and model::ProjectError.
    void put(const model::Project& project, const std::string& animation);
    // Throws Stop where the input has changed.
    void write() const;

 private:
    std::filesystem::path input_, output_;
    ReadOnly readOnly_;
    Snapshot read_;
    bool fromArchive_, toArchive_;
    std::string content_;
};

}  // namespace headless::cli
