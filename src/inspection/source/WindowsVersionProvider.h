#pragma once

/// Which version of Windows the platform stands for; made where it is asked, and shared. Any thread.
class WindowsVersionProvider {
public:
    virtual ~WindowsVersionProvider() = default;

    /// Whether it is 6.2 or later.
    virtual bool IsWindows8OrLater() const;
};
