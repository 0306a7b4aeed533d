// Pictures beside an animation: what an animation may ask for, and what it gets.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "cli/Program.h"
#include "files/PictureFile.h"
#include "render/Png.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {
namespace {

using headless::pictureType;
using headless::readPicture;
using testing::HasSubstr;

class Pictures : public Program {
 protected:
    Pictures() { fs::create_directories(folder / "in/sub"); }

    std::string refusal(const std::string& name) {
        try {
            readPicture(folder / "in", name);
            return "";
        } catch (const std::runtime_error& error) {
            EXPECT_THAT(error.what(), HasSubstr(name + ": the picture cannot be read: "));
            return error.what();
        }
    }

    const std::string png = "\x89PNG\r\n\x1A\n and so on";
};

TEST_F(Pictures, AreKnownByWhatTheyHold) {
    EXPECT_EQ(pictureType(png), "png");
    EXPECT_EQ(pictureType("\xFF\xD8\xFF\xE0"), "jpeg");
    EXPECT_EQ(pictureType("GIF89a.."), "gif");
    EXPECT_EQ(pictureType("RIFF....WEBPVP8 "), "webp");
    for (const char* svg :
         {"<svg>", "\xEF\xBB\xBF <svg xmlns=\"\"/>", "<?xml version=\"1.0\"?>\n<!-- > -->\n<svg\n",
          "<!DOCTYPE svg [<!ENTITY a \"b\">]><svg>"}) {
        EXPECT_EQ(pictureType(svg), "svg+xml") << svg;
    }
    for (const char* other : {"", "SECRET=1", "<?xml", "<?xml version=\"1.0\"?><plist>", "<!--", "<svgs>",
                              "RIFF....WAVE", "<!DOCTYPE"}) {
        EXPECT_EQ(pictureType(other), "") << other;
    }
}

TEST_F(Pictures, OnlyOrdinaryOnesInsideTheFolderAreRead) {
    write("in/sub/a.png", png);
    write("in-other.png", png);
    write("in/.env", "SECRET=1");
    const auto link = [&](const fs::path& to, const char* name) {
        fs::create_symlink(to, folder / "in" / name);
    };
    link("sub/a.png", "inside.png");
    link(folder / "in/sub", "folder");
    link("../in-other.png", "outside.png");
    link("/dev/zero", "endless.png");
    link("/dev", "devices");
    ASSERT_EQ(::mkfifo(pathOf("in/pipe.png").c_str(), 0600), 0);
    EXPECT_EQ(readPicture(folder / "in", "sub/a.png"), png);
    EXPECT_EQ(readPicture(folder / "in", "inside.png"), png);
    EXPECT_EQ(readPicture(folder / "in", "folder/a.png"), png);
    EXPECT_THAT(refusal("outside.png"), HasSubstr("outside the folder"));
    EXPECT_THAT(refusal("../in-other.png"), HasSubstr("outside the folder"));
    EXPECT_THAT(refusal("endless.png"), HasSubstr("no ordinary file"));
    EXPECT_THAT(refusal("devices/zero"), HasSubstr("no ordinary file"));
    EXPECT_THAT(refusal("pipe.png"), HasSubstr("no ordinary file"));
    EXPECT_THAT(refusal("sub"), HasSubstr("no ordinary file"));
    EXPECT_THAT(refusal(".env"), HasSubstr("no PNG, JPEG"));
    EXPECT_THAT(refusal("missing.png"), HasSubstr("No such file"));
    fs::resize_file(pathOf("in/sub/a.png"), headless::largestPicture + 1);
    EXPECT_THAT(refusal("sub/a.png"), HasSubstr("larger than 64 MiB"));
}

TEST_F(Pictures, WhatIsNoneDoesNotGetIntoAnArchive) {
    headless::render::writePng(pathOf("in/dot.png"), {3, 2, std::vector<std::uint32_t>(6, 0xFFFF0000)});
    write("in/.env", "SECRET=1");
    const auto asking = [&](const std::string& name) {
        Json scene =
            Json::parse(project("Scene", {40, 30}).with(LayerSpec(2, "dot").set("refId", "dot")).text());
        scene["assets"] = {{{"id", "dot"}, {"w", 3}, {"h", 2}, {"u", ""}, {"p", "dot.png"}},
                           {{"id", "other"}, {"w", 3}, {"h", 2}, {"u", ""}, {"p", name}}};
        return write("in.json", scene.dump());
    };
    const auto crop = [&](const std::string& file) {
        return run({"crop", file, "--images", pathOf("in"), "-o", pathOf("out.lottie")});
    };
    const Outcome refused = crop(asking(".env"));
    EXPECT_EQ(refused.code, ExitCode::BadInput);
    EXPECT_THAT(refused.err, HasSubstr("in/.env: the picture cannot be read: it is no PNG"));
    EXPECT_FALSE(fs::exists(pathOf("out.lottie")));
    EXPECT_EQ(crop(asking("dot.png")).code, ExitCode::Done);
}

}  // namespace
}  // namespace kestrin_test
