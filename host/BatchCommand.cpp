#include "BatchCommand.h"

#include "GdiplusSession.h"
#include "ThumbnailOptions.h"
#include "batch/BatchReporter.h"
#include "batch/InputFiles.h"
#include "batch/Interruption.h"
#include "batch/LineInputs.h"
#include "batch/ListedInputs.h"
#include "batch/MemoryNeed.h"
#include "batch/OutputNames.h"
#include "batch/Workers.h"

#include <CLI/App.hpp>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <system_error>
#include <thread>
#include <vector>

namespace KestoHost {

namespace {

const std::string standardInput = "-";

struct BatchOptions : ThumbnailOptions {
    std::vector<std::string> inputs;
    std::string outputFolder;
    std::string format = "png";
    std::size_t jobs = 0;                        ///< 0: as many as there are processors
    std::int64_t memory = std::int64_t{1} << 30; ///< for decoded pictures, in bytes

    bool readsLines() const { return inputs.front() == standardInput; }
};

std::size_t jobsFor(const BatchOptions& options) {
    if (options.jobs != 0)
        return options.jobs;
    return std::max(std::thread::hardware_concurrency(), 1U);
}

std::unique_ptr<InputSource> openInputs(const BatchOptions& options, const Interruption& interruption) {
    if (options.readsLines())
        return std::make_unique<LineInputs>(interruption);
    return std::make_unique<ListedInputs>(options.inputs);
}

std::unique_ptr<InputFiles> filesOf(const BatchOptions& options) {
    if (options.readsLines())
        return std::make_unique<StreamedInputFiles>(options.outputFolder);
    return std::make_unique<ListedInputFiles>(options.inputs);
}

void makeThumbnails(const BatchOptions& options, InputSource& inputs, BatchReporter& reporter,
                    const Interruption& interruption) {
    const auto files = filesOf(options);
    OutputNames names(options.outputFolder, options.format, *files);
    Workers workers(
        jobsFor(options), options.memory, [&reporter](const ThumbReport& report) { reporter.tell(report); },
        [&reporter, &interruption] { return interruption.signal() == 0 && reporter.outputError() == 0; });
    while (const auto input = inputs.next()) {
        const OutputNames::Output output = names.nameFor(*input);
        if (output.numbered)
            reporter.tellNumbered(*input, output.path);
        const ThumbnailRequest request = requestFor(options, *input, output.path);
        if (const auto refusal = refusalOf(request)) {
            ThumbReport report = reportFor(request);
            report.failure = refusal;
            reporter.tell(report);
        } else if (!workers.add(request, memoryNeedOf(request.input))) {
            break;
        }
    }
    if (interruption.signal() != 0)
        reporter.tellInterruption();
    workers.finish();
}

ExitStatus runBatch(const BatchOptions& options) {
    // A reader that goes away is a failed write, which lets pictures end that are being written.
    (void)std::signal(SIGPIPE, SIG_IGN);
    const Interruption interruption;
    const GdiplusSession session;
    const auto inputs = openInputs(options, interruption);
    BatchReporter reporter(options.json, inputs->total());
    makeThumbnails(options, *inputs, reporter, interruption);
    reporter.tellSummary(interruption.signal() != 0);
    if (const std::string failure = inputs->failure(); !failure.empty())
        std::fprintf(stderr, "kesto-thumbnail: %s\n", failure.c_str());
    if (const int error = reporter.outputError())
        throw std::system_error(error, std::generic_category(), "standard output");
    if (const int signal = interruption.signal())
        return statusOfSignal(signal);
    return inputs->failure().empty() && reporter.counts().notWritten() == 0 ? ExitStatus::Done
                                                                            : ExitStatus::NoThumbnail;
}

void checkInputs(const std::vector<std::string>& inputs) {
    if (inputs.empty())
        throw CLI::ValidationError("INPUT",
                                   "expected at least one file, or - to read names from standard input");
    const bool readsLines = std::find(inputs.begin(), inputs.end(), standardInput) != inputs.end();
    if (readsLines && inputs.size() != 1)
        throw CLI::ValidationError("INPUT", "expected nothing beside -; a file of that name is ./-");
}

/// A number of inputs that is never reached: where any number is allowed, CLI11 takes "[a,b]" for two.
void addInputs(CLI::App& command, std::vector<std::string>& inputs) {
    constexpr int most = CLI::detail::expected_max_vector_size;
    command.add_option("INPUT", inputs, "The files to show; - alone reads their names from standard input")
        ->expected(most, most)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

} // namespace

void addBatchCommand(CLI::App& program, ExitStatus& status) {
    const auto options = std::make_shared<BatchOptions>();
    CLI::App* command = program.add_subcommand("batch", "Write a thumbnail of each of many inputs");
    addInputs(*command, options->inputs);
    command->add_option("--out-dir", options->outputFolder, "The folder to write into; else the current one")
        ->type_name("DIR")
        ->check(checkFolder);
    command->add_option("--format", options->format, "What to write: png, jpg, jpeg, gif or bmp")
        ->type_name("FORMAT")
        ->capture_default_str()
        ->check(checkFormat);
    const auto takeJobs = [options](const std::string& text) {
        options->jobs = static_cast<std::size_t>(*parseJobs(text));
    };
    command
        ->add_option_function<std::string>("--jobs", takeJobs,
                                           "How many pictures are made at a time; else one a processor")
        ->type_name("N")
        ->check(checkJobs);
    const auto takeMemory = [options](const std::string& text) {
        options->memory = std::int64_t{*parseMemory(text)} << 20;
    };
    command
        ->add_option_function<std::string>(
            "--memory", takeMemory,
            "Mebibytes for the pictures in work at a time; else 1024. One that "
            "is larger is made alone")
        ->type_name("MIB")
        ->check(checkMemory);
    addThumbnailOptions(*command, options, "Report as JSON on standard output, one object a line");
    command->callback([options, &status] {
        checkInputs(options->inputs);
        status = runBatch(*options);
    });
}

} // namespace KestoHost
