// .lottie archives: what is found in them, what is written back, and what is refused.

#include <gmock/gmock.h>

#include <cstring>
#include <map>
#include <random>

#include "Packed.h"
#include "archive/DotLottie.h"
#include "support/ProjectSpec.h"

namespace kestrin_test {
namespace {

using namespace headless::archive;
using headless::model::ProjectError;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

std::string scene(const std::string& name) {
    return project(name, {40, 30}).with(solid("Red", {10, 10})).text();
}

std::string withPicture(const std::string& folder, const std::string& name) {
    Json json = Json::parse(project("Scene", {40, 30}).with(LayerSpec(2, "dot").set("refId", "dot")).text());
    json["assets"].push_back({{"id", "dot"}, {"w", 3}, {"h", 2}, {"u", folder}, {"p", name}, {"e", 0}});
    return json.dump();
}

// Everything that a crop does with an archive.
std::string refusal(const std::string& bytes, const std::string& id = "") {
    try {
        const auto archive = readArchive(bytes, "x.lottie");
        const auto opened = openAnimation(archive, id);
        opened->documentOf(opened->root(), opened->root().item->size);
    } catch (const ProjectError& error) {
        return error.what();
    }
    return "(accepted)";
}

std::map<std::string, std::string> contentsOf(const std::string& bytes) {
    Zip zip(bytes, "written");
    std::map<std::string, std::string> contents;
    for (const std::string& entry : zip.entries()) {
        contents[entry] = zip.contentOf(entry);
    }
    return contents;
}

TEST(Archive, AnimationsAreFoundInEitherLayoutAndWithoutAManifest) {
    struct Case {
        std::string manifest, entry, id;
    };
    for (const Case& c : std::vector<Case>{
             {R"({"version":"1.0","animations":[{"id":"x"}]})", "animations/x.json", "x"},
             {R"({"version":"2","animations":[{"id":"x"}]})", "a/x.json", "x"},
             {R"({"version":2,"animations":[{"id":"x"}]})", "a/x.json", "x"},
             {R"({"version":"1.0","animations":[{"id":"x"}]})", "a/x.json", "x"},
             {R"({"author":"nobody"})", "animations/x.json", ""},
             {"", "a/\u706F \U0001F3EE.json", ""},
         }) {
        std::vector<PackedEntry> entries{{c.entry, scene("Found")}};
        if (!c.manifest.empty()) {
            entries.insert(entries.begin(), {"manifest.json", c.manifest});
        }
        const auto archive = readArchive(packed(entries), "x.lottie");
        EXPECT_EQ(openAnimation(archive, c.id)->root().item->name, "Found");
    }

    const std::string two = packed({{"manifest.json", R"({"animations":[{"id":"b"},{"id":"a"}]})"},
                                    {"animations/a.json", scene("First")},
                                    {"animations/b.json", scene("Second")}});
    EXPECT_EQ(openAnimation(readArchive(two, "x.lottie"), "b")->root().item->name, "Second");
    EXPECT_THAT(refusal(two), AllOf(HasSubstr("several"), HasSubstr("--animation: \"b\", \"a\"")));
    EXPECT_THAT(refusal(two, "c"), AllOf(HasSubstr("no animation \"c\""), HasSubstr("\"b\", \"a\"")));
}

TEST(Archive, PicturesComeFromTheArchiveHoweverTheyAreStated) {
    const std::vector<std::pair<std::string, std::string>> stated{{"images/", "dot.png"},
                                                                  {"/images/", "dot.png"},
                                                                  {"", "images/dot.png"},
                                                                  {"", "dot.png"},
                                                                  {"/i/", "dot.png"}};
    for (const auto& [folder, name] : stated) {
        SCOPED_TRACE(folder + name);
        const auto archive = readArchive(
            packed({{"a/x.json", withPicture(folder, name)}, {"images/dot.png", "\xFF\xD8\xFF bytes"}}),
            "x.lottie");
        const auto opened = openAnimation(archive, "");
        EXPECT_THAT(opened->documentOf(opened->root(), opened->root().item->size),
                    HasSubstr(R"("p":"data:image/jpeg;base64,/9j/IGJ5dGVz")"));
        EXPECT_EQ(opened->write(), withPicture(folder, name));
    }
    EXPECT_THAT(
        refusal(packed({{"a/x.json", withPicture("../images/", "other.png")}, {"images/dot.png", "p"}})),
        AllOf(StartsWith("x.lottie: a/x.json: assets[0]"), HasSubstr("../images/other.png")));
}

TEST(Archive, OneEntryIsReplacedAndEverythingElseStays) {
    std::string noise(5'000, '\0');
    std::mt19937 random(7);
    for (char& byte : noise) {
        byte = static_cast<char>(random());
    }
    const std::vector<PackedEntry> entries{{"z/noise.bin", noise, ZIP_CM_STORE},
                                           {"manifest.json", R"({"animations":[{"id":"x"},{"id":"y"}]})"},
                                           {"animations/x.json", scene("Old"), ZIP_CM_STORE},
                                           {"animations/", ""},
                                           {"animations/y.json", scene("Other")},
                                           {"a picture \U0001F3EE.png", noise}};
    const std::string bytes = packed(entries);
    const auto archive = readArchive(bytes, "x.lottie");
    for (const std::string id : {"x", "y"}) {
        const std::string text = scene("New") + std::string(3'000, ' ');
        const std::string written = archive->with(archive->animation(id), text);
        auto expected = contentsOf(bytes);
        expected["animations/" + id + ".json"] = text;
        EXPECT_EQ(contentsOf(written), expected);
        EXPECT_EQ(Zip(written, "written").entries(), Zip(bytes, "read").entries());
        EXPECT_EQ(written, archive->with(archive->animation(id), text));  // no trace of the time it was made
        EXPECT_EQ(written.size() > bytes.size() + 2'000, id == "x");      // stored stays stored
    }
}

TEST(Archive, WhatCannotBeTrustedIsRefusedByName) {
    const PackedEntry good{"animations/x.json", scene("Good")};
    const auto alongside = [&](PackedEntry bad) { return packed({good, std::move(bad)}); };
    const std::string honest = packed({good, {"images/a.png", std::string(2'000, 'a')}});
    // The unpacked size stands 22 bytes before the name in the list at the end.
    const auto stating = [&](const std::string& entry, std::uint32_t size) {
        std::string bytes = honest;
        std::memcpy(&bytes[bytes.rfind(entry) - 22], &size, sizeof size);
        return bytes;
    };
    std::vector<PackedEntry> many(10'001, {"", ""});
    for (std::size_t i = 0; i < many.size(); ++i) {
        many[i].name = std::to_string(i);
    }
    std::string total = packed({good, {"bb", ""}, {"cc", ""}, {"dd", ""}});
    for (const std::string name : {"bb", "cc", "dd"}) {
        const std::uint32_t size = 50u << 20;
        std::memcpy(&total[total.rfind(name) - 22], &size, sizeof size);
    }

    struct Case {
        std::string bytes;
        std::vector<std::string> words;
    };
    for (const Case& c : std::vector<Case>{
             {honest.substr(0, honest.size() / 2), {"damaged or cut short"}},

             {"", {"no animation"}},
             {packed(many), {"10001 entries"}},
             {stating("images/a.png", 0x7FFFFFFF), {"images/a.png", "64 MiB"}},
             {total, {"dd: ", "128 MiB"}},
             {stating("animations/x.json", 10), {"animations/x.json", "more than the archive says"}},
             {stating("animations/x.json", 20'000), {"animations/x.json", "less than the archive says"}},
             {alongside({"../escape.png", "p"}), {"../escape.png", "leads out"}},
             {alongside({"images/../../escape", "p"}), {"images/../../escape", "leads out"}},
             {patched(alongside({"../escape?[31m", "p"}), "escape?", "escape\x1b"),
              {"../escape\u2190[31m", "leads out"}},
             {alongside({"/etc/escape", "p"}), {"/etc/escape", "absolute"}},
             {alongside({"C:escape", "p"}), {"C:escape", "absolute"}},
             {alongside({"images\\escape", "p"}), {"images\\escape", "backslash"}},
             {patched(alongside({"animations/y.json", "p"}), "animations/y.json", "animations/x.json"),
              {"animations/x.json", "two entries"}},
             {alongside({.name = "secret.png", .content = "p", .encrypted = true}),
              {"secret.png", "encrypted"}},
             {alongside({.name = "link", .content = "/etc/passwd", .link = true}), {"link", "symbolic link"}},
             {packed({{"notes.txt", "p"}}), {"no animation"}},
             {packed({good, {"manifest.json", R"({"animations":[{"id":"../y"}]})"}}),
              {"animations/../y.json", "missing"}},
             {packed({good, {"manifest.json", R"({"animations":[{"id":7}]})"}}),
              {"manifest.json", "animations[0]"}},
             {packed({good, {"manifest.json", R"({"animations":[{"id":"x"},{"id":"x"}]})"}}),
              {"manifest.json", "two animations"}},
             {packed({good, {"manifest.json", std::string(1'000'000, '[')}}), {"manifest.json", "not JSON"}},
             {packed({{"animations/x.json", "{}"}}), {"animations/x.json", "not a Lottie animation"}},
         }) {
        SCOPED_TRACE(testing::PrintToString(c.words));
        const std::string message = refusal(c.bytes);
        EXPECT_THAT(message, StartsWith("x.lottie: "));
        for (const std::string& word : c.words) {
            EXPECT_THAT(message, HasSubstr(word));
        }
    }
}

TEST(Archive, OnePictureShownOftenIsNoWayAroundTheLimit) {
    Json json = Json::parse(project("Scene", {40, 30}).text());
    for (int i = 0; i < 10; ++i) {
        json["assets"].push_back({{"id", std::to_string(i)}, {"w", 3}, {"h", 2}, {"u", ""}, {"p", "dot.png"}});
    }
    const std::string bytes = packed({{"a/x.json", json.dump()}, {"i/dot.png", std::string(20 << 20, 'a')}});
    EXPECT_THAT(refusal(bytes), AllOf(HasSubstr("a/x.json: assets[6]"), HasSubstr("128 MiB")));
}

// Any bytes at all end in a project or in a message.
TEST(Archive, DamageAnywhereEndsInAMessage) {
    const std::string bytes = packed({{"manifest.json", R"({"version":"2","animations":[{"id":"x"}]})"},
                                      {"a/x.json", withPicture("", "dot.png")},
                                      {"i/dot.png", "pixels", ZIP_CM_STORE}});
    int refused = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        for (const int change : {0x01, 0x80, 0xFF}) {
            std::string damaged = bytes;
            damaged[at] = static_cast<char>(damaged[at] ^ change);
            refused += refusal(damaged) != "(accepted)" ? 1 : 0;
        }
    }
    EXPECT_GT(refused, static_cast<int>(bytes.size()));
}

}  // namespace
}  // namespace kestrin_test
