// kestrin report: a page to look at, of what a crop did.

#include "cli/Output.h"
#include "cli/Print.h"
#include "cli/ReportPage.h"
#include "cli/Verbs.h"

namespace headless::cli {

namespace {

struct Options {
    VersionsOptions versions;
    std::string output;
    ReadOnly readOnly = ReadOnly::Stays;
    bool json = false;
};

void requireOther(const std::string& page, const std::string& project) {
    std::error_code error;
    if (std::filesystem::equivalent(page, project, error)) {
        throw Stop(ExitCode::BadInput, "the page " + page + " is one of the two projects; name another file");
    }
}

ExitCode run(const Options& options) {
    const std::string& firstFile = options.versions.before;
    const std::string& secondFile = options.versions.after;
    const int mostFrames = options.versions.mostFrames;
    if (options.output.empty() && !options.json) {
        throw Stop(ExitCode::BadInput, "say where the page goes with -o, or ask for its facts with --json");
    }
    if (!options.output.empty()) {
        requireWritable(options.output, options.readOnly);
        requireOther(options.output, firstFile);
        requireOther(options.output, secondFile);
    }
    const auto [first, second] = openVersions(options.versions);
    ReportedProject before{firstFile, *first};
    ReportedProject after{secondFile, *second};
    const model::Json report = reportOf(before, after, mostFrames);
    if (!options.output.empty()) {
        writeResult(options.output, reportPage(report, before, after), options.readOnly);
    }
    if (options.json) {
        printJson(report);
    } else {
        Line() << report["conclusion"].get<std::string>();
        Line() << "wrote " << options.output;
    }
    return report["verdict"] == word(Verdict::Shifted) ? ExitCode::Differs : ExitCode::Done;
}

}  // namespace

void addReport(CLI::App& program, Action& action) {
    auto options = std::make_shared<Options>();
    CLI::App* verb = program.add_subcommand("report", "Make a page that shows what a crop did");
    verb->add_option("-o,--output", options->output, "Page to write, one file that needs no other")
        ->type_name("HTML");
    addForce(*verb, options->readOnly);
    verb->add_flag("--json", options->json, "Print what the page says as one JSON document");
    addVersions(*verb, options->versions,
                "Example: kestrin report examples/lanterns.json cropped.json -o report.html");
    verb->callback([&action, options] { action = [options] { return run(*options); }; });
}

}  // namespace headless::cli
