#pragma once

#include "Report.h"
#include "pack/InputFile.h"

#include <KestoThumbnailer/platform/StructuredStorage.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace KestoHost {

/// A new compound file with streams in its root. After the first failure it takes nothing more.
class CompoundFile {
public:
    /// `bytes` of all streams together: large files want large sectors. `path` is valid UTF-8.
    CompoundFile(const std::string& path, std::uint64_t bytes);

    /// A stream of all bytes of a file, whose number is given; nothing after a failure.
    std::optional<std::uint64_t> addFile(const std::string& name, InputFile& file);
    bool addText(const std::string& name, const std::string& text);
    /// Makes the file appear.
    bool commit();

    /// What went wrong first; nothing when nothing did.
    const std::optional<Failure>& failure() const { return firstFailure; }

private:
    struct ReleaseInterface {
        void operator()(IUnknown* object) const { object->Release(); }
    };
    using StreamPtr = std::unique_ptr<IStream, ReleaseInterface>;

    StreamPtr addStream(const std::string& name);
    bool check(HRESULT result);

    std::string output;
    std::unique_ptr<IStorage, ReleaseInterface> root;
    std::optional<Failure> firstFailure;
};

} // namespace KestoHost
