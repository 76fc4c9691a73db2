#pragma once

#include <unistd.h>

#include <utility>

namespace SystemBackend {

/// Owns a file descriptor; -1 is none.
class FileDescriptor {
public:
    explicit FileDescriptor(int owned = -1)
        : descriptor(owned) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor(std::exchange(other.descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor, other.descriptor);
        return *this;
    }
    ~FileDescriptor() {
        if (descriptor >= 0)
            ::close(descriptor);
    }

    bool isOpen() const { return descriptor >= 0; }
    int get() const { return descriptor; }
    int release() { return std::exchange(descriptor, -1); }

private:
    int descriptor;
};

} // namespace SystemBackend
