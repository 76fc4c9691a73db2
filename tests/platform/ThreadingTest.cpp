#include "platform/Threading.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;

constexpr auto withoutWaiting = 0ns;
constexpr auto longEnough = 60s;

struct Counter {
    Mutex lock;
    int value KESTO_GUARDED_BY(lock) = 0;

    void add() KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        addLocked();
    }
    void addLocked() KESTO_REQUIRES(lock) { ++value; }
    int read() KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        return value;
    }
};

/// What another thread gets from `try_lock`, which it gives back at once.
template <class Lock>
bool isFreeForOthers(Lock& mutex) KESTO_NO_THREAD_SAFETY_ANALYSIS { // the outcome decides, not the scope
    return std::async(std::launch::async,
                      [&mutex]() KESTO_NO_THREAD_SAFETY_ANALYSIS {
                          const bool taken = mutex.try_lock();
                          if (taken)
                              mutex.unlock();
                          return taken;
                      })
        .get();
}

template <class Work>
std::vector<std::jthread> fourThreads(Work work) {
    std::vector<std::jthread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back(work);
    return threads;
}

TEST(Mutex, KeepsThreadsApart) {
    Counter counter;
    fourThreads([&counter] {
        for (int turn = 0; turn < 2000; ++turn)
            counter.add();
    }).clear();
    EXPECT_EQ(counter.read(), 8000);
}

TEST(MutexLock, HoldsTheMutexForItsScope) {
    Mutex mutex;
    {
        const MutexLock held(mutex);
        EXPECT_FALSE(isFreeForOthers(mutex));
    }
    EXPECT_TRUE(isFreeForOthers(mutex));
}

TEST(MutexLock, CanBeWaitedWithOnAConditionVariable) {
    Mutex mutex;
    std::condition_variable changed;
    bool ready = false;
    const std::jthread setter([&mutex, &changed, &ready] {
        const MutexLock held(mutex);
        ready = true;
        changed.notify_one();
    });
    MutexLock held(mutex);
    while (!ready)
        changed.wait(held.native());
    EXPECT_TRUE(ready);
    EXPECT_TRUE(held.native().owns_lock());
}

TEST(RecursiveMutexLock, MayBeNestedAndHoldsUntilTheOutermostEnds) {
    RecursiveMutex mutex;
    const auto nested = [&mutex] {
        const RecursiveMutexLock inner(mutex);
        EXPECT_FALSE(isFreeForOthers(mutex));
    };
    {
        const RecursiveMutexLock outer(mutex);
        nested();
        EXPECT_FALSE(isFreeForOthers(mutex));
    }
    EXPECT_TRUE(isFreeForOthers(mutex));
}

TEST(Event, IsNotSignalledAtFirst) {
    Event automatic(EventReset::Automatic);
    Event manual(EventReset::Manual);
    EXPECT_FALSE(automatic.waitFor(withoutWaiting));
    EXPECT_FALSE(manual.waitFor(withoutWaiting));
}

TEST(Event, RemembersASignalThatNobodyWaitedFor) {
    Event event(EventReset::Automatic);
    event.set();
    event.wait();
    EXPECT_FALSE(event.waitFor(withoutWaiting));
}

TEST(Event, AutomaticResetLetsOneWaitThroughHoweverOftenItWasSet) {
    Event event(EventReset::Automatic);
    event.set();
    event.set();
    EXPECT_TRUE(event.waitFor(withoutWaiting));
    EXPECT_FALSE(event.waitFor(withoutWaiting));
}

TEST(Event, ManualResetLetsEveryWaitThroughUntilReset) {
    Event event(EventReset::Manual);
    event.set();
    EXPECT_TRUE(event.waitFor(withoutWaiting));
    event.wait();
    EXPECT_TRUE(event.waitFor(withoutWaiting));
    event.reset();
    EXPECT_FALSE(event.waitFor(withoutWaiting));
}

TEST(Event, ResetTakesBackASignal) {
    Event event(EventReset::Automatic);
    event.set();
    event.reset();
    EXPECT_FALSE(event.waitFor(withoutWaiting));
}

TEST(Event, WakesAThreadThatWaitsAlready) {
    Event asked(EventReset::Automatic);
    Event answered(EventReset::Automatic);
    int answer = 0; // handed over by the events alone
    const std::jthread other([&asked, &answered, &answer] {
        asked.wait();
        answer = 42;
        answered.set();
    });
    asked.set();
    ASSERT_TRUE(answered.waitFor(longEnough));
    EXPECT_EQ(answer, 42);
}

TEST(Event, ManualResetWakesEveryThread) {
    Event start(EventReset::Manual);
    std::atomic<int> awake = 0;
    auto threads = fourThreads([&start, &awake] {
        start.wait();
        ++awake;
    });
    start.set();
    threads.clear();
    EXPECT_EQ(awake, 4);
}

TEST(Event, AutomaticResetHandsEachSignalToOneThread) {
    Event turn(EventReset::Automatic);
    Event taken(EventReset::Automatic);
    int turns = 0; // only the thread whose turn it is touches it
    const auto threads = fourThreads([&turn, &taken, &turns] {
        turn.wait();
        ++turns;
        taken.set();
    });
    for (int expected = 1; expected <= 4; ++expected) {
        turn.set();
        taken.wait();
        EXPECT_EQ(turns, expected);
    }
}

TEST(Event, WaitForGivesUpAfterItsTime) {
    Event event(EventReset::Automatic);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(event.waitFor(5ms));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 5ms);
}

TEST(Event, WaitForTakesTheLongestAndTheShortestDuration) {
    Event event(EventReset::Automatic);
    EXPECT_FALSE(event.waitFor(std::chrono::nanoseconds::min()));
    const std::jthread setter([&event] { event.set(); });
    EXPECT_TRUE(event.waitFor(std::chrono::nanoseconds::max()));
}

// A `set` that touches the event after its wait has returned is what the sanitizers report here.
TEST(Event, MayBeDestroyedAsSoonAsTheWaitReturns) {
    for (int round = 0; round < 200; ++round) {
        auto event = std::make_unique<Event>(EventReset::Automatic);
        const std::jthread setter([&signalled = *event] { signalled.set(); });
        EXPECT_TRUE(event->waitFor(longEnough));
        event.reset();
    }
}

} // namespace
