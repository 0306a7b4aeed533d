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

Resources resourcesOf(const std::string& name) {
    const std::string command = "'" KESTRIN_CMAKE "' -DNAME=" + name +
                                " -DFOLDER='" KESTRIN_TEST_FOLDER "' -P '" KESTRIN_WRITER "' 2> /dev/null";
    const int exitCode = std::system(command.c_str());
    return {exitCode, readFile(pathOf(name, ".rsrc")),
            bytesOfWords(std::istringstream(readFile(pathOf(name, ".words"))))};
}

std::string hex(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02x", static_cast<unsigned char>(byte));
        text += digits.data();
    }
    return text;
}

TEST(Resource, BothSystemsGetTheseBytes) {
    const Resources resources = resourcesOf("Kestrin");
    ASSERT_EQ(resources.exitCode, 0);
    const std::string header = "00000100000001ac000000ac00000032";
    EXPECT_EQ(hex(resources.macFile), header + std::string(480, '0') +
                                          "000000a80000000000000006"
                                          "3842494d6b696e64000000000000000441456778"
                                          "3842494d6e616d650000000000000008074b65737472696e"
                                          "3842494d63617467000000000000000f0e47656e6572616c20506c7567696e00"
                                          "3842494d76657273000000000000000400030000"
                                          "3842494d6d613634000000000000000f0e456e747279506f696e7446756e6300"
                                          "3842494d6d693634000000000000000f0e456e747279506f696e7446756e6300" +
                                          header +
                                          "0000000000000000001c003200005069504c0000000a"
                                          "3e80ffff0000000000000000");
    EXPECT_EQ(hex(resources.windows),
              "01000000000005000000"
              "4d494238646e696b000000000400000078674541"
              "4d494238656d616e0000000008000000074b65737472696e"
              "4d494238677461630000000010000000"
              "0e47656e6572616c20506c7567696e00"
              "4d49423873726576000000000400000000000300"
              "4d494238343636380000000010000000"
              "456e747279506f696e7446756e630000");
    EXPECT_NE(outputOf("file --brief '" + pathOf("Kestrin", ".rsrc") + "'")
                  .find("1 type, 0x5069504c 'PiPL' * 1 resource"),
              std::string::npos);
}

TEST(Resource, NamesOfEveryLengthAreReadBack) {
    for (const std::string name : {"Kes", "Kest", "Kestr", "Kestri"}) {
        SCOPED_TRACE(name);
        const Resources resources = resourcesOf(name);
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
