#include "platform/Threading.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace {

#if defined(KESTO_CHECK_LOCK_ORDER)

constexpr LockRank outerRank{1, "outer"};
constexpr LockRank besideRank{1, "beside"};
constexpr LockRank innerRank{2, "inner"};

class LockOrder : public ::testing::Test {
protected:
    /// Ends the process unless this thread holds nothing that comes after `outer` or in its place.
    void takeOuter() { const MutexLock held(outer); }

    Mutex outer{outerRank};
    Mutex beside{besideRank};
    Mutex inner{innerRank};
    RecursiveMutex recursive{innerRank};
    Mutex unranked;
};

class LockOrderDeathTest : public LockOrder {
protected:
    LockOrderDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(LockOrder, TakesLocksByRisingPlace) {
    for (int round = 0; round < 2; ++round) {
        const MutexLock first(outer);
        const MutexLock second(inner);
    }
}

TEST_F(LockOrder, TakesLocksOfOnePlaceOneAfterTheOther) {
    { const MutexLock held(outer); }
    { const MutexLock held(beside); }
    { const MutexLock held(outer); }
}

TEST_F(LockOrder, TakesARecursiveLockAgainAlsoUnderALaterOne) {
    Mutex innermost{LockRank{3, "innermost"}};
    const RecursiveMutexLock first(recursive);
    const MutexLock last(innermost);
    const RecursiveMutexLock again(recursive);
}

TEST_F(LockOrder, LeavesUnrankedLocksAlone) {
    const MutexLock held(unranked);
    const MutexLock first(outer);
    const MutexLock second(inner);
    Mutex other;
    const MutexLock last(other);
}

TEST_F(LockOrder, IsEachThreadsOwn) {
    const MutexLock held(inner);
    std::async(std::launch::async, [this] { takeOuter(); }).get();
}

TEST_F(LockOrder, LetsATriedLockBeTakenAnyhow) {
    const MutexLock held(inner);
    const bool taken = outer.try_lock();
    EXPECT_TRUE(taken);
    if (taken)
        outer.unlock();
}

TEST_F(LockOrder, ForgetsALockThatWasNotFree) KESTO_NO_THREAD_SAFETY_ANALYSIS {
    std::promise<void> tried;
    std::promise<void> held;
    const std::jthread holder([this, &held, done = tried.get_future()]() mutable {
        const MutexLock lock(inner);
        held.set_value();
        done.wait();
    });
    held.get_future().wait();
    EXPECT_FALSE(inner.try_lock());
    takeOuter();
    tried.set_value();
}

TEST_F(LockOrder, ForgetsLocksThatAreLeftInAnyOrder) KESTO_NO_THREAD_SAFETY_ANALYSIS {
    outer.lock();
    inner.lock();
    outer.unlock();
    inner.unlock();
    takeOuter();
}

TEST_F(LockOrder, LetsCallbacksTakeLocksAgainstTheOrder) {
    const MutexLock held(inner);
    const CallbackUnderLocks callback;
    takeOuter();
}

TEST_F(LockOrder, IsForgottenAfterAWait) {
    bool ready = false;
    std::condition_variable changed;
    {
        MutexLock held(inner);
        const std::jthread setter([this, &ready, &changed] {
            const MutexLock settersLock(inner);
            ready = true;
            changed.notify_one();
        });
        while (!ready)
            changed.wait(held.native());
    }
    takeOuter();
}

TEST_F(LockOrderDeathTest, RefusesAnEarlierLockAndNamesBoth) {
    const MutexLock held(inner);
    EXPECT_DEATH(takeOuter(), "Lock order: outer must be taken before the lock that is held, inner");
}

TEST_F(LockOrderDeathTest, RefusesTwoLocksOfOnePlace) {
    const MutexLock held(beside);
    EXPECT_DEATH(takeOuter(), "Lock order: outer must never be held together with beside");
}

TEST_F(LockOrderDeathTest, RefusesALockThatTheThreadHolds) {
    const MutexLock held(outer);
    EXPECT_DEATH(takeOuter(), "Lock order: outer is taken again by the thread that holds it");
}

TEST_F(LockOrderDeathTest, RefusesALockThatTheThreadHoldsAlsoInACallback) {
    const MutexLock held(outer);
    const CallbackUnderLocks callback;
    EXPECT_DEATH(takeOuter(), "Lock order: outer is taken again by the thread that holds it");
}

TEST_F(LockOrderDeathTest, KeepsALockWhenAnEarlierOneIsLeft) KESTO_NO_THREAD_SAFETY_ANALYSIS {
    outer.lock();
    inner.lock();
    outer.unlock();
    EXPECT_DEATH(takeOuter(), "outer must be taken before the lock that is held, inner");
    inner.unlock();
}

TEST_F(LockOrderDeathTest, RefusesAnEarlierLockUnderOneThatWasTried) KESTO_NO_THREAD_SAFETY_ANALYSIS {
    ASSERT_TRUE(inner.try_lock());
    EXPECT_DEATH(takeOuter(), "outer must be taken before the lock that is held, inner");
    inner.unlock();
}

TEST_F(LockOrderDeathTest, HoldsARecursiveLockUntilTheOutermostLockIsLeft) {
    const RecursiveMutexLock held(recursive);
    { const RecursiveMutexLock again(recursive); }
    EXPECT_DEATH(takeOuter(), "outer must be taken before the lock that is held, inner");
}

TEST_F(LockOrderDeathTest, RefusesWhatItCannotRecord) KESTO_NO_THREAD_SAFETY_ANALYSIS {
    for (int depth = 0; depth < 32; ++depth)
        recursive.lock();
    EXPECT_DEATH(recursive.lock(), "inner is more than a thread's record of locks can take");
    for (int depth = 0; depth < 32; ++depth)
        recursive.unlock();
}

TEST_F(LockOrderDeathTest, ChecksAgainAfterACallback) {
    const MutexLock held(inner);
    { const CallbackUnderLocks callback; }
    EXPECT_DEATH(takeOuter(), "outer must be taken before the lock that is held, inner");
}

TEST_F(LockOrderDeathTest, ChecksTheLocksOfACallbackAmongThemselves) {
    const CallbackUnderLocks callback;
    const MutexLock held(inner);
    EXPECT_DEATH(takeOuter(), "outer must be taken before the lock that is held, inner");
}

TEST_F(LockOrderDeathTest, RefusesAWaitWithALockThatIsNotTheLast) {
    MutexLock waiting(outer);
    const MutexLock held(inner);
    EXPECT_DEATH(waiting.native(),
                 "Lock order: outer is waited with under a lock that was taken later, inner");
}

TEST_F(LockOrderDeathTest, HoldsALockAfterItWasWaitedWith) {
    std::condition_variable changed;
    MutexLock held(inner);
    changed.wait_until(held.native(), std::chrono::steady_clock::time_point::min());
    EXPECT_DEATH(takeOuter(), "outer must be taken before the lock that is held, inner");
}

#else

TEST(LockOrder, TakesNoRoomWhereItIsNotChecked) {
    EXPECT_EQ(sizeof(Mutex), sizeof(std::mutex));
    EXPECT_EQ(sizeof(RecursiveMutex), sizeof(std::recursive_mutex));
    EXPECT_EQ(sizeof(MutexLock), sizeof(std::unique_lock<std::mutex>));
    EXPECT_EQ(sizeof(RecursiveMutexLock), sizeof(std::lock_guard<std::recursive_mutex>));
}

#endif

} // namespace
