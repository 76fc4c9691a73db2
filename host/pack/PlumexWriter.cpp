#include "pack/PlumexWriter.h"

#include "WholeFiles.h"
#include "pack/CompoundFile.h"
#include "pack/InputFile.h"
#include "pack/Manifest.h"

#include <KestoThumbnailer/platform/RecordingWriter.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <optional>

namespace KestoHost {

namespace {

namespace fs = std::filesystem;

struct Member {
    const char* role;
    const char* name;
    std::optional<MOSK::MemberContainer> container; ///< none for what is taken as it is
};

constexpr std::array<Member, 5> members = {{{"screen", "Screen_Stream.avi", MOSK::MemberContainer::Avi},
                                            {"camera", "Camera_Stream.wmv", MOSK::MemberContainer::Asf},
                                            {"microphone", "Audio.wav", MOSK::MemberContainer::Wav},
                                            {"system-audio", "SysAudio.wav", MOSK::MemberContainer::Wav},
                                            {"events", "Events.dat", std::nullopt}}};
constexpr const char* manifestName = "manifest.plumxml";

const Member& memberOf(const PackPart& part) {
    return *std::find_if(members.begin(), members.end(),
                         [&part](const Member& member) { return part.role == member.role; });
}

/// What is to become a member, in the member's container.
struct Ready {
    PackedPart packed;
    std::unique_ptr<InputFile> file; ///< null after a failure
};

/// Nobody has asked for the member's own file: what is wrong with it is wrong with the output.
std::string withOutputFor(const std::string& file, const std::string& message, const std::string& output) {
    return message.starts_with(file) ? output + message.substr(file.size()) : message;
}

/// Puts the input into the member's container, in a file that has lost its name already: however the program
/// ends, nothing of it stays.
std::unique_ptr<InputFile> convert(const PackPart& part, const Member& member, const std::string& output,
                                   std::optional<Failure>& failure) {
    WholeFiles temporary; // never commits
    const std::string file = temporary.pathFor((fs::path(output).parent_path() / member.name).string());
    const MOSK::WriteResult result = MOSK::WriteMemberFile(part.input, *member.container, file);
    if (result.isWritten)
        return std::make_unique<InputFile>(file);
    failure = Failure{result.reason, withOutputFor(file, result.message, output)};
    return nullptr;
}

/// A failure goes into `failure`.
Ready makeReady(const PackPart& part, const std::string& output, std::optional<Failure>& failure) {
    const Member& member = memberOf(part);
    const bool isCopied = !member.container || MOSK::IsMemberFile(part.input, *member.container);
    Ready ready = {{part, member.name, isCopied},
                   isCopied ? std::make_unique<InputFile>(part.input)
                            : convert(part, member, output, failure)};
    if (ready.file && ready.file->failure())
        failure = ready.file->failure();
    return ready;
}

std::optional<Failure> fill(CompoundFile& file, const std::vector<Ready>& all) {
    std::vector<ManifestStream> streams;
    for (const Ready& ready : all) {
        const auto bytes = file.addFile(ready.packed.member, *ready.file);
        if (!bytes)
            return file.failure();
        streams.push_back({ready.packed.part.role, ready.packed.member, *bytes});
    }
    if (!file.addText(manifestName, manifestText(streams)) || !file.commit())
        return file.failure();
    return std::nullopt;
}

} // namespace

void writePlumex(const std::vector<PackPart>& parts, PackReport& report) {
    std::vector<Ready> all;
    for (const PackPart& part : parts) {
        all.push_back(makeReady(part, report.output, report.failure));
        if (report.failure)
            return;
        report.parts.push_back(all.back().packed);
    }
    std::uint64_t bytes = 0;
    for (const Ready& ready : all)
        bytes += ready.file->size();
    CompoundFile file(report.output, bytes);
    report.failure = fill(file, all);
}

} // namespace KestoHost
