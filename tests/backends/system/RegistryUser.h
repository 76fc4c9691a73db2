#pragma once

#include "backends/system/TempFolder.h"

#include <string>

/// A user whose configuration holds this text as the registry file.
class RegistryUser {
public:
    explicit RegistryUser(const std::string& text)
        : configuration("XDG_CONFIG_HOME", folder.path().c_str()) {
        write(text);
    }

    void write(const std::string& text) const { folder.file("kesto-thumbnailer/registry.ini", text); }
    void remove() const { std::filesystem::remove(folder / "kesto-thumbnailer/registry.ini"); }

private:
    TempFolder folder;
    EnvironmentVariable configuration;
};

/// What the platform says of itself when the version is this.
inline std::string versionText(const std::string& major, const std::string& minor) {
    return "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion]\n"
           "CurrentMajorVersionNumber=dword:" +
           major + "\nCurrentMinorVersionNumber=dword:" + minor + "\n";
}
