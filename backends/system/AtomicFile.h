#pragma once

#include "platform/Export.h"

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace SystemBackend {

/// A file that appears under its name whole or not at all: `commit` puts it in the place of the target, and
/// nothing changes without it. Until then the file has no name at all where the system can do that, so that a
/// killed process leaves nothing behind; else it lies beside the target under a name of its own, which the
/// destructor removes. Whether it outlasts a power cut is not waited for.
///
/// A file that is replaced gives its permissions to the new one. A symbolic link stays, and what it leads to
/// is replaced. What is there already but no regular file (a pipe, a device, a standard stream by its name in
/// /dev) is written directly, at its end. One thread at a time.
class KESTO_EXPORT AtomicFile {
public:
    enum class Writing {
        InOrder,  ///< with `write` alone
        AtPlaces, ///< what has no places fails with ESPIPE, unopened: a pipe would wait for its reader
    };

    /// Opens the file to be written. `path` is a resolved one; see `resolvePathForWriting`. A folder fails
    /// with EISDIR.
    explicit AtomicFile(const std::string& path, Writing writing = Writing::InOrder);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// False once anything has failed; `error` then has the errno of the first failure.
    bool good() const { return firstError == 0; }
    int error() const { return firstError; }

    /// All of `bytes`, or a failure. A pipe without readers raises SIGPIPE as any writing does.
    bool write(std::span<const std::byte> bytes);
    /// At a place of the new file, counted from its beginning; the place of `write` stays where it is. What
    /// is written directly has no places: it fails with ESPIPE.
    bool writeAt(std::int64_t offset, std::span<const std::byte> bytes);
    /// All of `into`, from what was written so far; false for less.
    bool readAt(std::int64_t offset, std::span<std::byte> into);
    /// Makes the file appear, and closes it. False: nothing appeared.
    bool commit();

private:
    enum class Place { Target, Beside, Unnamed };

    void openDirectly();
    void openWorking(mode_t permissions);
    bool linkAs(const std::string& name) const;
    bool giveName();
    bool close();
    bool check(bool succeeded);

    std::string target;  ///< where links lead to
    std::string working; ///< the name that the new file has so far, removed unless it is committed
    Place place = Place::Target;
    int file = -1;
    int firstError = 0;
};

} // namespace SystemBackend
