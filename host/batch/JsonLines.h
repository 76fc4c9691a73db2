#pragma once

#include <KestoThumbnailer/platform/Threading.h>

#include <atomic>
#include <string>

namespace KestoHost {

/// Lines on standard output, each written through, so that the reader of a pipe sees it at once. Any thread;
/// one that prints may wait for that reader.
class JsonLines {
public:
    /// Nothing more is printed after a failure.
    void print(const std::string& object) KESTO_EXCLUDES(lock);

    /// The errno of the failure; 0 without one.
    int error() const { return firstError; }

private:
    Mutex lock;                      // held while a line is written, so that each stays whole
    std::atomic<int> firstError = 0; // asked for also while a line waits to be written
};

} // namespace KestoHost
