#include "CalloutCommand.h"

#include "Arguments.h"
#include "callout/CalloutArguments.h"
#include "callout/CalloutMaker.h"
#include "callout/CalloutWords.h"

#include <CLI/App.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

namespace KestoHost {

namespace {

struct CalloutOptions {
    std::string kind = "remix";
    std::string shape = "rectangle";
    std::string style = "plain";
    std::string text;
    std::string svg;
    std::vector<std::string> params;
    std::string paramsJson;
    std::vector<std::string> edges;
    std::string natural = "320x200";
    std::string scale = "1,1";
    std::string size = "0x92";
    std::string output;
    bool json = false;
    bool list = false;
};

std::string contentOf(const std::string& path) {
    std::error_code error; // what can't be looked at can't be read
    if (!std::filesystem::is_regular_file(path, error))
        throw CLI::ValidationError("--svg", fmt::format("\"{}\" is not a file that is there", path));
    constexpr std::size_t largest = 1'000'000; // of texts in a project
    std::ifstream file(path, std::ios::binary);
    std::string content(largest + 1, '\0');
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    content.resize(static_cast<std::size_t>(file.gcount()));
    if (content.size() > largest)
        throw CLI::ValidationError("--svg",
                                   fmt::format("\"{}\" has more than {} bytes; a larger file may be given as "
                                               "--param SvgFile={}",
                                               path, largest, path));
    if (content.empty())
        throw CLI::ValidationError("--svg", fmt::format("\"{}\" can't be read, or is empty", path));
    if (const std::string problem = checkUtf8(content); !problem.empty())
        throw CLI::ValidationError("--svg", problem);
    return content;
}

/// What stands by itself wins over `--param`, and that over `--params`.
nlohmann::json paramsOf(const CalloutOptions& options, const CLI::App& command) {
    auto params =
        options.paramsJson.empty() ? nlohmann::json::object() : nlohmann::json::parse(options.paramsJson);
    for (const std::string& text : options.params) {
        const auto param = *parseParam(text);
        params[param.first] = param.second;
    }
    if (command.count("--text") > 0)
        params["Text"] = options.text;
    if (command.count("--svg") > 0)
        params["Svg"] = contentOf(options.svg);
    return params;
}

CalloutRequest requestFor(const CalloutOptions& options, const CLI::App& command) {
    CalloutRequest request{.kind = options.kind,
                           .shape = options.shape,
                           .style = options.style,
                           .params = paramsOf(options, command),
                           .edges = {},
                           .natural = *parseBounds(options.natural),
                           .scale = *parseScale(options.scale),
                           .bounds = *parseBounds(options.size),
                           .output = options.output};
    for (const std::string& edge : options.edges)
        request.edges.push_back(*parseEdge(edge));
    return request;
}

ExitStatus runCallout(const CalloutOptions& options, const CLI::App& command) {
    if (options.list) {
        std::fputs((options.json ? jsonOfWords() + '\n' : listOfWords()).c_str(), stdout);
        return ExitStatus::Done;
    }
    if (options.output.empty())
        throw CLI::RequiredError("--output");
    const CalloutReport report = makeCallout(requestFor(options, command));
    if (options.json)
        std::puts(jsonText(report).c_str());
    if (!report.failure)
        return ExitStatus::Done;
    std::fprintf(stderr, "kesto-thumbnail: %s\n", report.failure->message.c_str());
    return ExitStatus::NoThumbnail;
}

void addDrawing(CLI::App& command, CalloutOptions& options) {
    command.add_option("--kind", options.kind, "What draws it")
        ->type_name("KIND")
        ->capture_default_str()
        ->check(checkKind);
    command.add_option("--shape", options.shape, "What is drawn")
        ->type_name("SHAPE")
        ->capture_default_str()
        ->check(checkShape);
    command.add_option("--style", options.style, "How it is drawn")
        ->type_name("STYLE")
        ->capture_default_str()
        ->check(checkCalloutStyle);
    command.add_option("--text", options.text, "The text in it")->type_name("TEXT")->check(checkUtf8);
    command.add_option("--svg", options.svg, "The drawing of TypeWinSVG and MacSVG, a file")
        ->type_name("FILE");
    command.add_option("--param", options.params, "One parameter of the drawing; may be given several times")
        ->type_name("NAME=VALUE")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->check(checkParam);
    command.add_option("--params", options.paramsJson, "Parameters of the drawing, as in a project file")
        ->type_name("JSON")
        ->check(checkParams);
    command
        .add_option("--edge", options.edges,
                    "What happens at the start, such as DrawPercentageFade; may be given several times")
        ->type_name("NAME=SECONDS")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->check(checkEdge);
}

void addSizes(CLI::App& command, CalloutOptions& options) {
    command.add_option("--natural", options.natural, "The callout's own size, in pixels")
        ->type_name("WxH")
        ->capture_default_str()
        ->check(checkNaturalSize);
    command.add_option("--scale", options.scale, "How much larger than that it is")
        ->type_name("X,Y")
        ->capture_default_str()
        ->check(checkScale);
    command.add_option("--size", options.size, "The box to fit, in pixels; 0 is no bound")
        ->type_name("WxH")
        ->capture_default_str()
        ->check(checkBounds);
}

} // namespace

void addCalloutCommand(CLI::App& program, ExitStatus& status) {
    const auto options = std::make_shared<CalloutOptions>();
    CLI::App* command = program.add_subcommand("callout", "Write a picture of a callout");
    addDrawing(*command, *options);
    addSizes(*command, *options);
    command
        ->add_option("-o,--output", options->output, "The picture to write: .png, .jpg, .jpeg, .gif or .bmp")
        ->type_name("FILE")
        ->check(checkOutputName);
    command->add_flag("--list", options->list,
                      "Show the kinds, shapes, styles and parameters that there are");
    command->add_flag("--json", options->json, "Report as one JSON object on standard output");
    command->callback([options, command, &status] { status = runCallout(*options, *command); });
}

} // namespace KestoHost
