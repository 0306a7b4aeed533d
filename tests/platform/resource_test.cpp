#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "Pipl.h"

namespace {

struct Resources {
    int exitCode;
    std::string macFile, windows;
};

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string pathOf(const std::string& name, const char* ending) {
    return KESTRIN_TEST_FOLDER "/" + name + ending;
}

std::string outputOf(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    std::array<char, 256> part{};
    while (std::fgets(part.data(), part.size(), pipe) != nullptr) {
        output += part.data();
    }
    return pclose(pipe) == 0 ? output : "";
}

// A resource script's numbers are stored as little-endian words.
std::string bytesOfWords(std::istream&& words) {
    std::string bytes;
    unsigned word = 0;
    for (char comma = ','; words >> std::hex >> word; words >> comma) {
        bytes += static_cast<char>(word & 0xFF);
        bytes += static_cast<char>(word >> 8);
    }
    return bytes;
}

std::string bigEndian(std::initializer_list<std::size_t> numbers) {
    std::string bytes;
    for (const std::size_t number : numbers) {
        for (const int shift : {24, 16, 8, 0}) {
            bytes += static_cast<char>(number >> shift & 0xFF);
        }
    }
    return bytes;
}

Resources resourcesOf(const std::string& name) {
    const std::string command = "'" KESTRIN_CMAKE "' -DNAME=" + name +
                                " -DFOLDER='" KESTRIN_TEST_FOLDER "' -P '" KESTRIN_WRITER "' 2> /dev/null";
    const int exitCode = std::system(command.c_str());
    return {exitCode, readFile(pathOf(name, ".rsrc")),
            bytesOfWords(std::istringstream(readFile(pathOf(name, ".words"))))};
}

TEST(Resource, NamesOfEveryLengthAreReadBack) {
    for (const std::string name : {"Kestrin", "Kes", "Kest", "Kestr", "Kestri"}) {
        SCOPED_TRACE(name);
        const Resources resources = resourcesOf(name);
        EXPECT_NE(outputOf("file --brief '" + pathOf(name, ".rsrc") + "'")
                      .find("1 type, 0x5069504c 'PiPL' * 1 resource"),
                  std::string::npos);
        // Where the data begins, where the map does, and how long each is; the map begins with the same.
        const std::size_t map = resources.macFile.size() - 50;
        const std::string header = bigEndian({256, map, map - 256, 50});
        EXPECT_EQ(resources.macFile.substr(0, 16), header);
        EXPECT_EQ(resources.macFile.substr(map, 16), header);
        const Pipl mac(resources.macFile.substr(260, resources.macFile.size() - 260 - 50));
        const Pipl windows(resources.windows);
        EXPECT_EQ(mac.keys(), "kind name catg vers ma64 mi64 ");
        EXPECT_EQ(windows.keys(), "kind name catg vers 8664 ");
        for (const Pipl* pipl : {&mac, &windows}) {
            EXPECT_EQ(pipl->code("kind"), "AEgx");
            EXPECT_EQ(pipl->pascalString("name"), name);
            EXPECT_EQ(pipl->pascalString("catg"), "General Plugin");
            EXPECT_EQ(pipl->value("vers"), 0x00030000U);
        }
        EXPECT_EQ(mac.pascalString("ma64"), "EntryPointFunc");
        EXPECT_EQ(mac.pascalString("mi64"), "EntryPointFunc");
        EXPECT_EQ(windows.cString("8664"), "EntryPointFunc");
    }
}

TEST(Resource, ANameTooLongToShowIsRefused) {
    EXPECT_EQ(resourcesOf(std::string(47, 'k')).exitCode, 0);
    EXPECT_NE(resourcesOf(std::string(48, 'k')).exitCode, 0);
}

}  // namespace
