// Files of a script, all below the folder that stands for the home folder.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "script/Call.h"

namespace headless::script {
namespace {

namespace fs = std::filesystem;

// Where "~" is replaced; relative paths are below the home folder too.
fs::path resolved(const Call& call) {
    const fs::path home = call.host().homeFolder();
    const std::string path = call.text(0);
    if (path == "~") return home;
    return (home / fs::path(path.starts_with("~/") ? path.substr(2) : path)).lexically_normal();
}

// Nothing else on this machine is a script's business.
std::optional<fs::path> reachable(const Call& call) {
    const fs::path home = fs::path(call.host().homeFolder()).lexically_normal();
    const fs::path path = resolved(call);
    const fs::path below = path.lexically_relative(home);
    if (home.empty() || below.empty() || below == "." || *below.begin() == "..") return std::nullopt;
    return path;
}

void resolve(const Call& call) {
    call.result(resolved(call).string());
}

void exists(const Call& call) {
    const auto path = reachable(call);
    std::error_code ignored;
    call.result(path && fs::exists(*path, ignored));
}

void create(const Call& call) {
    const auto path = reachable(call);
    std::error_code ignored;
    if (path) fs::create_directories(path->parent_path(), ignored);  // a home has a desktop
    call.result(path && std::ofstream(*path, std::ios::binary).is_open());
}

void append(const Call& call) {
    std::ofstream out;
    if (const auto path = reachable(call)) out.open(*path, std::ios::binary | std::ios::app);
    out << call.text(1) << std::flush;
    call.result(out.is_open() && out.good());
}

void remove(const Call& call) {
    const auto path = reachable(call);
    std::error_code ignored;
    call.result(path && !fs::is_directory(*path, ignored) && fs::remove(*path, ignored));
}

void execute(const Call& call) {
    const auto path = reachable(call);
    std::error_code ignored;
    if (!path || !fs::is_regular_file(*path, ignored)) {
        call.result(false);
        return;
    }
    std::ifstream in(*path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(in), {}};
    call.host().executed(path->string(), content);
    call.result(true);
}

constexpr duk_function_list_entry functions[] = {
    {"resolvePath", native<resolve>, 1},
    {"fileExists", native<exists>, 1},
    {"createFile", native<create>, 1},
    {"appendFile", native<append>, 2},
    {"removeFile", native<remove>, 1},
    {"executeFile", native<execute>, 1},
    {nullptr, nullptr, 0},
};

}  // namespace

void addFileFunctions(duk_context* context) {
    duk_put_function_list(context, -1, functions);
}

}  // namespace headless::script
