// The file of preferences: what is read is kept when it is written.

#include "fuzz/Fuzz.h"
#include "model/Preferences.h"

void tryInput(const std::string& text) {
    using headless::model::Preferences;
    Preferences read;
    try {
        read = Preferences::parse(text, "file");
    } catch (const std::runtime_error&) {
        return;
    }
    require(Preferences::parse(read.text(), "file") == read, "what is written is read again");
    for (const char* key : {"a", "PaddingAmount"}) {
        read.getLong("Kestrin", key);
        read.getFloat("Kestrin", key);
        read.getBool("Kestrin", key);
    }
}
