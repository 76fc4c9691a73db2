#include "platform/CommandQueueThread.h"

#include "platform/KestoRenderLib.h"
#include "platform/Threading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pthread.h>

#include <array>
#include <atomic>
#include <future>
#include <memory>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto noLimit = KestoRenderLib::CommandQueueThread::noLimit;
constexpr std::chrono::nanoseconds withoutWaiting{0};
constexpr int rounds = 200;

/// What commands note, in the order in which they run.
class Notes {
public:
    void add(int note) KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        notes.push_back(note);
    }
    std::vector<int> all() KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        return notes;
    }

private:
    Mutex lock;
    std::vector<int> notes KESTO_GUARDED_BY(lock);
};

/// Signals `gone` when the last command that holds it is destroyed.
std::shared_ptr<void> signalsItsEnd(Event& gone) {
    return {nullptr, [&gone](void*) { gone.set(); }};
}

class CommandQueueThread : public ::testing::Test {
protected:
    void push(int note, std::size_t limit = noLimit) {
        queue->pushCommand([this, note] { notes.add(note); }, limit);
    }

    /// Keeps the thread inside a command until `opened` is set, and returns when it is there.
    void occupy() {
        queue->pushCommand(
            [this] {
                reached.set();
                opened.wait();
            },
            noLimit);
        reached.wait();
    }

    Notes notes;
    Event reached{EventReset::Automatic};
    Event opened{EventReset::Automatic};
    std::optional<KestoRenderLib::CommandQueueThread> queue{std::in_place, "", nullptr, nullptr, true};
};

TEST_F(CommandQueueThread, RunsCommandsInTheOrderOfTheirPush) {
    for (int note = 0; note < 100; ++note)
        push(note);
    queue->waitUntilAllCommandsAreFinished();
    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(notes.all(), expected);
}

TEST_F(CommandQueueThread, RunsThemOnOneThreadOfItsOwn) {
    std::array<std::thread::id, 2> threads;
    for (auto& thread : threads)
        queue->pushCommand([&thread] { thread = std::this_thread::get_id(); }, noLimit);
    queue->waitUntilAllCommandsAreFinished();
    EXPECT_EQ(threads[0], threads[1]);
    EXPECT_NE(threads[0], std::this_thread::get_id());
}

TEST_F(CommandQueueThread, RefusesAnEmptyCommandAndQueuesNothing) {
    EXPECT_THROW(queue->pushCommand({}, noLimit), std::invalid_argument);
    push(1);
    queue->waitUntilAllCommandsAreFinished();
    EXPECT_THAT(notes.all(), ElementsAre(1));
}

TEST_F(CommandQueueThread, WaitReturnsAtOnceWhenNothingWasPushed) {
    queue->waitUntilAllCommandsAreFinished();
    queue->waitUntilAllCommandsAreFinished();
}

TEST_F(CommandQueueThread, WaitLastsUntilTheRunningCommandHasFinished) {
    occupy();
    auto seen = std::async(std::launch::async, [this] {
        queue->waitUntilAllCommandsAreFinished();
        return notes.all();
    });
    push(1);
    opened.set();
    EXPECT_THAT(seen.get(), ElementsAre(1));
}

TEST_F(CommandQueueThread, WaitLastsUntilACommandsOwnPushesHaveRun) {
    for (int round = 0; round < rounds; ++round) {
        queue->pushCommand([this, round] { push(round); }, noLimit);
        queue->waitUntilAllCommandsAreFinished();
        ASSERT_EQ(notes.all().size(), static_cast<std::size_t>(round) + 1);
    }
}

TEST_F(CommandQueueThread, WhatCommandsHeldIsGoneWhenTheWaitReturns) {
    for (int round = 0; round < rounds; ++round) {
        auto holding = std::make_shared<int>(round);
        const std::weak_ptr<int> watching = holding;
        queue->pushCommand([holding] { (void)*holding; }, noLimit);
        holding.reset();
        queue->waitUntilAllCommandsAreFinished();
        ASSERT_TRUE(watching.expired());
    }
}

TEST_F(CommandQueueThread, ACommandThatWaitsForItsQueueIsRefused) {
    bool refused = false;
    queue->pushCommand(
        [this, &refused] {
            try {
                queue->waitUntilAllCommandsAreFinished();
            } catch (const KestoRenderLib::KestoRenderLibException&) {
                refused = true;
            }
        },
        noLimit);
    queue->waitUntilAllCommandsAreFinished();
    EXPECT_TRUE(refused);
}

TEST_F(CommandQueueThread, ManyThreadsMayPushAndWait) {
    std::atomic<int> missing = 0;
    const auto pushAndWait = [this, &missing] {
        for (int round = 0; round < rounds; ++round) {
            std::atomic<bool> ran = false;
            queue->pushCommand([&ran] { ran = true; }, noLimit);
            queue->waitUntilAllCommandsAreFinished();
            missing += ran ? 0 : 1;
        }
    };
    {
        const std::array<std::jthread, 3> threads{std::jthread(pushAndWait), std::jthread(pushAndWait),
                                                  std::jthread(pushAndWait)};
    }
    EXPECT_EQ(missing, 0);
}

TEST_F(CommandQueueThread, APushAtItsLimitWaitsUntilACommandHasBegun) {
    for (int round = 0; round < rounds; ++round) {
        occupy();
        push(1, 1);
        std::atomic<bool> mayBegin = false;
        auto begunBefore = std::async(std::launch::async, [this, &mayBegin] {
            reached.set();
            push(2, 1);
            return mayBegin.load();
        });
        reached.wait();
        mayBegin = true;
        opened.set();
        ASSERT_TRUE(begunBefore.get());
    }
    queue->waitUntilAllCommandsAreFinished();
    EXPECT_EQ(notes.all().size(), 2U * rounds);
}

TEST_F(CommandQueueThread, NoCommandIsLostToALimit) {
    for (int note = 0; note < rounds; ++note)
        push(note, static_cast<std::size_t>(note % 3));
    queue->waitUntilAllCommandsAreFinished();
    EXPECT_EQ(notes.all().size(), static_cast<std::size_t>(rounds));
}

TEST_F(CommandQueueThread, ACommandPushesBeyondTheLimit) {
    queue->pushCommand(
        [this] {
            push(1, 1);
            push(2, 1);
        },
        1);
    queue->waitUntilAllCommandsAreFinished();
    EXPECT_THAT(notes.all(), ElementsAre(1, 2));
}

TEST_F(CommandQueueThread, DestructionDropsWhatHasNotBegunAndWaitsForTheRest) {
    occupy();
    Event dropped(EventReset::Automatic);
    queue->pushCommand([this, watched = signalsItsEnd(dropped)] { notes.add(1); }, noLimit);
    std::atomic<bool> destroyed = false;
    std::jthread destroyer([this, &destroyed] {
        queue.reset();
        destroyed = true;
    });
    dropped.wait();
    EXPECT_FALSE(destroyed);
    opened.set();
    destroyer.join();
    EXPECT_THAT(notes.all(), IsEmpty());
}

TEST_F(CommandQueueThread, DestructionDropsWhatTheLastCommandPushes) {
    Event dropped(EventReset::Automatic);
    queue->pushCommand(
        [this, &dropped, &own = *queue] {
            reached.set();
            dropped.wait();
            own.pushCommand([this] { notes.add(1); }, noLimit);
            notes.add(2);
        },
        noLimit);
    reached.wait();
    queue->pushCommand([watched = signalsItsEnd(dropped)] {}, noLimit);
    queue.reset();
    EXPECT_THAT(notes.all(), ElementsAre(2));
}

TEST_F(CommandQueueThread, NothingRunsOnceDestructionHasReturned) {
    for (int round = 0; round < rounds; ++round) {
        std::atomic<bool> gone = false;
        std::atomic<bool> ranAfterwards = false;
        std::optional<KestoRenderLib::CommandQueueThread> dying(std::in_place, "", nullptr, nullptr, true);
        for (int command = 0; command < 5; ++command)
            dying->pushCommand([&gone, &ranAfterwards] { ranAfterwards = ranAfterwards || gone; }, noLimit);
        dying.reset();
        gone = true;
        ASSERT_FALSE(ranAfterwards);
    }
}

TEST(CommandQueueThreadStart, RunsItsTwoFunctionsAroundTheCommands) {
    Notes notes;
    std::optional<KestoRenderLib::CommandQueueThread> queue(
        std::in_place, "", [&notes] { notes.add(1); }, [&notes] { notes.add(3); }, true);
    queue->pushCommand([&notes] { notes.add(2); }, noLimit);
    queue->waitUntilAllCommandsAreFinished();
    EXPECT_THAT(notes.all(), ElementsAre(1, 2));
    queue.reset();
    EXPECT_THAT(notes.all(), ElementsAre(1, 2, 3));
}

TEST(CommandQueueThreadStart, RunsBothFunctionsOnTheThreadOfTheCommands) {
    std::array<std::thread::id, 3> threads;
    const auto note = [&threads](std::size_t index) {
        return [&threads, index] { threads.at(index) = std::this_thread::get_id(); };
    };
    {
        KestoRenderLib::CommandQueueThread queue("", note(0), note(2), true);
        queue.pushCommand(note(1), noLimit);
        queue.waitUntilAllCommandsAreFinished();
    }
    EXPECT_NE(threads[1], std::thread::id());
    EXPECT_THAT(threads, ElementsAre(threads[1], threads[1], threads[1]));
}

TEST(CommandQueueThreadStart, AtOnceNeedsNoCommand) {
    Event started(EventReset::Automatic);
    Event ended(EventReset::Manual);
    {
        const KestoRenderLib::CommandQueueThread queue(
            "", [&started] { started.set(); }, [&ended] { ended.set(); }, true);
        started.wait();
    }
    EXPECT_TRUE(ended.waitFor(withoutWaiting));
}

TEST(CommandQueueThreadStart, NotAtOnceComesWithTheFirstPush) {
    Notes notes;
    KestoRenderLib::CommandQueueThread queue(
        "", [&notes] { notes.add(1); }, nullptr, false);
    queue.waitUntilAllCommandsAreFinished();
    EXPECT_THAT(notes.all(), IsEmpty());
    queue.pushCommand([&notes] { notes.add(2); }, noLimit);
    queue.pushCommand([&notes] { notes.add(3); }, noLimit);
    queue.waitUntilAllCommandsAreFinished();
    EXPECT_THAT(notes.all(), ElementsAre(1, 2, 3));
}

TEST(CommandQueueThreadStart, WithoutAnyPushRunsNothing) {
    Notes notes;
    {
        const KestoRenderLib::CommandQueueThread queue(
            "", [&notes] { notes.add(1); }, [&notes] { notes.add(2); }, false);
    }
    EXPECT_THAT(notes.all(), IsEmpty());
}

std::string nameInside(const std::string& name) {
    std::array<char, 32> told{};
    KestoRenderLib::CommandQueueThread queue(name, nullptr, nullptr, true);
    queue.pushCommand([&told] { pthread_getname_np(pthread_self(), told.data(), told.size()); }, noLimit);
    queue.waitUntilAllCommandsAreFinished();
    return told.data();
}

TEST(CommandQueueThreadName, IsGivenToTheThread) {
    EXPECT_EQ(nameInside("Frame queue"), "Frame queue");
}

TEST(CommandQueueThreadName, IsCutToWhatTheSystemTakes) {
    EXPECT_EQ(nameInside("A name of more than 15 bytes"), "A name of more ");
}

TEST(CommandQueueThreadName, LeftEmptyKeepsThatOfTheMaker) {
    std::array<char, 32> own{};
    pthread_getname_np(pthread_self(), own.data(), own.size());
    EXPECT_EQ(nameInside(""), own.data());
}

TEST(CommandQueueThreadDeathTest, WhatACommandThrowsEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            KestoRenderLib::CommandQueueThread queue("", nullptr, nullptr, true);
            queue.pushCommand([] { throw std::runtime_error("from a command"); }, noLimit);
            queue.waitUntilAllCommandsAreFinished();
        },
        "from a command");
}

#if defined(KESTO_CHECK_LOCK_ORDER)

TEST(CommandQueueThreadDeathTest, ItsLockIsCheckedAgainstThoseOfOtherLibraries) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    KestoRenderLib::CommandQueueThread queue("", nullptr, nullptr, false);
    Mutex later{LockRanks::chain};
    const MutexLock held(later);
    EXPECT_DEATH(queue.waitUntilAllCommandsAreFinished(),
                 "CommandQueueThread's lock must be taken before the lock that is held, DSChain::lock");
}

#endif

} // namespace
