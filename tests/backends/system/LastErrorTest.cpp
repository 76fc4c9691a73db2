#include "platform/LastError.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(LastError, IsWhatWasSetLast) {
    SetLastError(ERROR_ACCESS_DENIED);
    SetLastError(ERROR_NEGATIVE_SEEK);
    EXPECT_EQ(GetLastError(), ERROR_NEGATIVE_SEEK);
}

TEST(LastError, IsEachThreadsOwn) {
    SetLastError(ERROR_ACCESS_DENIED);
    DWORD atFirst = ERROR_GEN_FAILURE;
    std::thread other([&atFirst] {
        atFirst = GetLastError();
        SetLastError(ERROR_NEGATIVE_SEEK);
    });
    other.join();
    EXPECT_EQ(atFirst, NO_ERROR);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
}

} // namespace
