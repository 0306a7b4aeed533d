// The preference store: conversions by text, and its file.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <limits>

#include "model/Preferences.h"

namespace headless::model {
namespace {

namespace fs = std::filesystem;

class PreferencesTest : public ::testing::Test {
 protected:
    PreferencesTest() {
        std::string pattern = (fs::temp_directory_path() / "preferences_XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        file = folder / "prefs.txt";
    }
    ~PreferencesTest() override { fs::remove_all(folder); }

    void write(const std::string& text) const { std::ofstream(file, std::ios::binary) << text; }
    std::string read() const {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    std::string errorOf(const std::string& text) const {
        write(text);
        try {
            Preferences::load(file);
        } catch (const std::runtime_error& error) {
            return std::string(error.what()).substr(file.string().size());
        }
        return "no error";
    }

    fs::path folder, file;
};

TEST_F(PreferencesTest, ReadersConvertByTheText) {
    Preferences store;
    const auto numbers = [&](const std::string& text) {
        store.setString("S", "k", text);
        return std::to_string(store.getLong("S", "k").value()) + ' ' +
               std::to_string(store.getFloat("S", "k").value()) +
               (store.getBool("S", "k").value() ? " on" : " off") +
               (store.getLongIfNumber("S", "k") ? "" : " no number");
    };
    EXPECT_EQ(numbers("12.500000"), "12 12.500000 on");
    EXPECT_EQ(numbers("-12.9px"), "-12 -12.900000 on");
    EXPECT_EQ(numbers(" 3e2e"), "300 300.000000 on");
    EXPECT_EQ(numbers("7e"), "7 7.000000 on");
    EXPECT_EQ(numbers("0"), "0 0.000000 off");
    EXPECT_EQ(numbers("99999999999"), "2147483647 99999999999.000000 on");
    EXPECT_EQ(numbers("-1e999").substr(0, 11), "-2147483648");
    EXPECT_EQ(numbers("abc"), "0 0.000000 on no number");
    EXPECT_EQ(numbers("."), "0 0.000000 on no number");
    EXPECT_EQ(numbers(""), "0 0.000000 off no number");

    store.setFloat("S", "k", -0.1234567);
    EXPECT_EQ(store.getString("S", "k"), "-0.123457");
    store.setLong("S", "k", std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(store.getData("S", "k").value().size(), 11u);
    store.setBool("S", "k", false);
    EXPECT_EQ(store.getData("S", "k"), std::vector<std::uint8_t>{0});
    EXPECT_EQ(store.getBool("S", "k"), false);
    store.remove("S", "k");
    EXPECT_FALSE(store.has("S", "k") || store.getLong("S", "k") || store.getBool("S", "k"));
    EXPECT_EQ(store, Preferences());
}

TEST_F(PreferencesTest, FileHasTheHostsForm) {
    Preferences store;
    store.setLong("Kestrin", "Resolution", 2);
    store.setFloat("Kestrin", "PaddingAmount", 12.5);
    store.setBool("Kestrin", "Padding", true);
    store.setString("A \"B\"", "Path", "C:\\x \"y\" \xC3\xA9");
    store.save(file);
    EXPECT_EQ(
        read(),
        "# Kestrin headless host preferences\n"
        "\n[\"A \\\"B\\\"\"]\n\t\"Path\" = \"C:\\\\x \\\"y\\\" \"C3A9\n"
        "\n[\"Kestrin\"]\n\t\"Padding\" = 01\n\t\"PaddingAmount\" = \"12.500000\"\n\t\"Resolution\" = \"2\"\n");
}

TEST_F(PreferencesTest, EveryByteComesBack) {
    Preferences store;
    std::string all;
    for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
    store.setString("sec\ntion\xC3\xA9", all, all + all);
    store.setString("s", "empty", "");
    store.setString("s", "long", std::string(1000, '\\') + std::string(1000, '\xFF'));
    store.setString("s", "looks like hex", "0A");
    store.save(file);
    EXPECT_EQ(Preferences::load(file), store);
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LT(line.size(), 800u) << "only a key may be long";
    }
    const std::string first = read();
    Preferences::load(file).save(file);
    EXPECT_EQ(read(), first);
}

TEST_F(PreferencesTest, ReadsWhatOthersWrote) {
    write(
        "# Header 1\r\n# Header 2\r\n\r\n[\"S\"]\r\n\t\"a\"=\"1\"\r\n# between\r\n\t\"b\" = "
        "00\"A\"ff\\\r\n\t\t\"z\"\r\n"
        "\t\"last\" = \"x\"");
    Preferences store = Preferences::load(file);
    EXPECT_EQ(store.getLong("S", "a"), 1);
    EXPECT_EQ(store.getString("S", "b"), std::string("\0A\xFFz", 4));
    EXPECT_EQ(store.getString("S", "last"), "x");
    store.save(file);
    EXPECT_TRUE(read().starts_with("# Header 1\r\n# Header 2\r\n"));
    EXPECT_EQ(Preferences::load(folder / "missing"), Preferences());
}

TEST_F(PreferencesTest, OnlyWhatWasChangedIsSaved) {
    write("[\"S\"]\n\"a\" = \"1\"\n\"b\" = \"1\"\n");
    Preferences store = Preferences::load(file);
    store.setLong("S", "a", 5);
    store.keepFromFile();
    store.remove("S", "b");
    store.setLong("S", "c", 7);
    write("# new\n[\"S\"]\n\"a\" = \"2\"\n\"b\" = \"2\"\n\"d\" = \"2\"\n");
    store.save(file);
    EXPECT_EQ(read(), "# new\n\n[\"S\"]\n\t\"a\" = \"2\"\n\t\"c\" = \"7\"\n\t\"d\" = \"2\"\n");
    EXPECT_EQ(store.getLong("S", "a"), 5);
    write("not of that form");
    store.setLong("S", "c", 8);
    EXPECT_THROW(store.save(file), std::runtime_error);
    EXPECT_EQ(read(), "not of that form");
}

TEST_F(PreferencesTest, MalformedTextIsNamedByLine) {
    EXPECT_EQ(errorOf("# h\n\t\"a\" = \"1\"\n"), ":2: an entry stands above the first section");
    EXPECT_EQ(errorOf("[\"S\"\n"), ":1: expected ] after the section's name");
    EXPECT_EQ(errorOf("[\"S\"]\n\"a\" \"1\"\n"), ":2: expected = after the key");
    EXPECT_EQ(errorOf("[\"S\"]\n\"a\" = one\n"), ":2: expected a quoted text or hexadecimal bytes");
    EXPECT_EQ(errorOf("[\"S\"]\n\"a\" = \"1\" 2\n"), ":2: expected the end of the line");
    EXPECT_EQ(errorOf("[\"S\"]\n\n\"a\" = \"1\n"), ":3: a quoted text does not end on its line");
    EXPECT_EQ(errorOf("[\"S\"]\n\"a\" = 0\n"), ":2: a hexadecimal byte has two digits");
    EXPECT_EQ(errorOf("[\"S\"]\n\"a\" = \"\\n\"\n"), ":2: only \\\" and \\\\ may follow a backslash");
}

TEST_F(PreferencesTest, AFailedSaveLeavesTheOldFileAndNothingElse) {
    Preferences store;
    fs::create_directories(file / "in the way");
    EXPECT_THROW(store.save(file), std::runtime_error);
    EXPECT_THROW(store.save(folder / "no folder" / "prefs"), std::runtime_error);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
}

}  // namespace
}  // namespace headless::model
