#include "cli/PluginFile.h"

#include <system_error>

#include "cli/ExitCode.h"

namespace headless::cli {

namespace fs = std::filesystem;

fs::path pluginFile(const fs::path& named) {
    std::error_code error;
    if (!named.empty()) {
        if (!fs::is_regular_file(named, error)) {
            throw Stop(ExitCode::BadInput, "there is no plug-in " + named.string());
        }
        return named;
    }
    const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    for (const fs::path& file : {folder / "Kestrin.so", folder / "../lib/kestrin/Kestrin.so"}) {
        if (fs::is_regular_file(file, error)) {
            return file;
        }
    }
    throw Stop(ExitCode::BadInput, "the plug-in Kestrin.so is not beside the program in " + folder.string() +
                                       "; say where it is with --plugin");
}

}  // namespace headless::cli
