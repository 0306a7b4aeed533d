// The preference store: conversions by text, and its file.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <iterator>

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

    fs::path folder, file;
};

TEST_F(PreferencesTest, ReadersConvertByTheText) {
    Preferences store;
    for (const auto& [text, values] : {std::pair("12.500000", "12 12.500000 on"),
                                       {"-12.9px", "-12 -12.900000 on"},
                                       {" 3e2e", "300 300.000000 on"},
                                       {"7e", "7 7.000000 on"},
                                       {"0", "0 0.000000 off"},
                                       {"99999999999", "2147483647 99999999999.000000 on"},
                                       {"-1e999", "-2147483648 -"},
                                       {"abc", "0 0.000000 on no number"},
                                       {".", "0 0.000000 on no number"},
                                       {"", "0 0.000000 off no number"}}) {
        store.setString("S", "k", text);
        const std::string read = std::to_string(store.getLong("S", "k").value()) + ' ' +
                                 std::to_string(store.getFloat("S", "k").value()) +
                                 (store.getBool("S", "k").value() ? " on" : " off") +
                                 (store.getLongIfNumber("S", "k") ? "" : " no number");
        EXPECT_EQ(read.substr(0, std::string(text) == "-1e999" ? 13 : read.npos), values) << text;
    }
    store.setFloat("S", "k", -0.1234567);
    EXPECT_EQ(store.getString("S", "k"), "-0.123457");
    store.setBool("S", "k", false);
    EXPECT_EQ(store.getData("S", "k"), std::vector<std::uint8_t>{0});
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

TEST_F(PreferencesTest, MalformedTextIsNamedByLineAndStays) {
    for (const auto& [text, error] :
         {std::pair("# h\n\t\"a\" = \"1\"\n", ":2: an entry stands above the first section"),
          {"[\"S\"\n", ":1: expected ] after the section's name"},
          {"[\"S\"]\n\"a\" \"1\"\n", ":2: expected = after the key"},
          {"[\"S\"]\n\"a\" = one\n", ":2: expected a quoted text or hexadecimal bytes"},
          {"[\"S\"]\n\"a\" = \"1\" 2\n", ":2: expected the end of the line"},
          {"[\"S\"]\n\n\"a\" = \"1\n", ":3: a quoted text does not end on its line"},
          {"[\"S\"]\n\"a\" = 0\n", ":2: a hexadecimal byte has two digits"},
          {"[\"S\"]\n\"a\" = \"\\n\"\n", ":2: only \\\" and \\\\ may follow a backslash"}}) {
        write(text);
        try {
            Preferences::load(file);
            ADD_FAILURE() << text;
        } catch (const std::runtime_error& thrown) {
            EXPECT_EQ(thrown.what(), file.string() + error);
        }
        Preferences store;
        store.setLong("S", "c", 8);
        EXPECT_THROW(store.save(file), std::runtime_error);
        EXPECT_EQ(read(), text);
    }
}

}  // namespace
}  // namespace headless::model
