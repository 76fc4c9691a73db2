#pragma once

namespace KestoHost {

/// While one lives, the first SIGINT, SIGTERM or SIGHUP is remembered instead of ending the process. A second
/// one of the same kind ends it at once. A signal that the process was started to ignore stays ignored. One
/// at a time, and made before any other thread, since it changes the process's handlers.
class Interruption {
public:
    /// Throws std::system_error when the system has no pipe to give.
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// The signal that came; 0 without any. Any thread.
    int signal() const noexcept;

    /// Readable from the first signal on, for waiting on it together with other files.
    int descriptor() const noexcept;
};

} // namespace KestoHost
