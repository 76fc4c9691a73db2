#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>

namespace {

struct ClosePipe {
    void operator()(std::FILE* pipe) const { ::pclose(pipe); }
};

std::string outputOf(const char* program) {
    const std::unique_ptr<std::FILE, ClosePipe> pipe(::popen(program, "r"));
    std::array<char, 256> line{};
    std::string output;
    while (pipe && std::fgets(line.data(), static_cast<int>(line.size()), pipe.get()))
        output += line.data();
    return output;
}

} // namespace

TEST(CalloutModule, IsLoadedByTheFirstCalloutThatDrawsSomething) {
    EXPECT_EQ(outputOf("'" KESTO_LOADED_MODULES "'"), "nothing 00\ndrawn 11\n");
}
