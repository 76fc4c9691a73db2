#pragma once

#include "support/TempFolder.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

/// A folder of the test's own, open to every user, with paths as the calls under test take them.
class TempFolder {
public:
    TempFolder() { std::filesystem::permissions(root, std::filesystem::perms::all); }

    const std::string& path() const { return root; }
    std::string operator/(const std::string& name) const { return root + '/' + name; }

    /// Creates a file with the folders that it lies in; gives its path.
    std::string file(const std::string& name, const std::string& text = "content") const {
        std::string whole = *this / name;
        std::filesystem::create_directories(std::filesystem::path(whole).parent_path());
        std::ofstream(whole, std::ios::binary) << text;
        return whole;
    }
    std::string folder(const std::string& name) const {
        std::filesystem::create_directories(*this / name);
        return *this / name;
    }
    std::string link(const std::string& name, const std::string& destination) const {
        std::filesystem::create_symlink(destination, *this / name);
        return *this / name;
    }

    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(root))
            found.insert(entry.path().filename().string());
        return found;
    }

private:
    const TestSupport::TempFolder owned;
    const std::string root = (owned / "").parent_path().string();
};

/// Makes `folder` the current one for a scope.
class CurrentFolder {
public:
    explicit CurrentFolder(const std::string& folder)
        : before(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~CurrentFolder() {
        std::error_code ignored;
        std::filesystem::current_path(before, ignored);
    }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

private:
    std::filesystem::path before;
};

/// Lets permissions count for a scope even when the tests run as the superuser.
class OrdinaryUser {
public:
    OrdinaryUser()
        : before(::geteuid()) {
        constexpr uid_t nobody = 65534;
        if (before == 0 && ::seteuid(nobody) != 0)
            throw std::runtime_error("cannot lay down privileges");
    }
    ~OrdinaryUser() { ignored = ::seteuid(before); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    uid_t before;
    int ignored = 0;
};

/// Sets an environment variable for a scope; null unsets it.
class EnvironmentVariable {
public:
    EnvironmentVariable(std::string variable, const char* value)
        : name(std::move(variable)) {
        if (const char* old = std::getenv(name.c_str())) { // NOLINT(concurrency-mt-unsafe): one thread
            wasSet = true;
            before = old;
        }
        assign(value);
    }
    ~EnvironmentVariable() { assign(wasSet ? before.c_str() : nullptr); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    // NOLINTBEGIN(concurrency-mt-unsafe): one thread
    void assign(const char* value) const {
        if (value)
            ::setenv(name.c_str(), value, 1);
        else
            ::unsetenv(name.c_str());
    }
    // NOLINTEND(concurrency-mt-unsafe)

    std::string name;
    std::string before;
    bool wasSet = false;
};
