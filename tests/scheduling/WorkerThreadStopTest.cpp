#include "scheduling/WorkerThreadManager.h"

#include "scheduling/CommandRecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <thread>

namespace KestoThumbnailer {

namespace {

using ::testing::IsEmpty;
using TestSupport::command;
using TestSupport::CommandRecorder;

constexpr std::chrono::nanoseconds withoutWaiting{0};

class WorkerThreadStop : public ::testing::Test {
protected:
    void start() { manager->Start(CommandRecorder::handle, &recorder, "Test"); }

    /// A command of no further use that tells by `dropped` when it is destroyed.
    THUMB_THREADCMD watched() { return {1, TestSupport::signalsItsEnd(dropped), 0}; }

    CommandRecorder recorder;
    Event dropped{EventReset::Manual};
    std::optional<WorkerThreadManager> manager{std::in_place};
};

} // namespace

TEST_F(WorkerThreadStop, RunsNoneOfThePendingCommands) {
    start();
    recorder.occupy(*manager);
    manager->PushCommand(command(2));
    manager->PushCommand(watched());
    auto stopped = std::async(std::launch::async, [&queue = *manager] { return queue.Stop(true); });
    dropped.wait();
    recorder.open();
    EXPECT_EQ(stopped.get(), 0U);
    EXPECT_THAT(recorder.ran(), IsEmpty());
}

TEST_F(WorkerThreadStop, WaitsForTheRunningHandler) {
    start();
    recorder.occupy(*manager);
    manager->PushCommand(watched());
    auto leftGateBefore = std::async(std::launch::async, [&queue = *manager, &commands = recorder] {
        queue.Stop(true);
        return commands.hasLeftGate() && commands.threadEnded.waitFor(withoutWaiting);
    });
    dropped.wait();
    EXPECT_FALSE(recorder.hasLeftGate());
    recorder.open();
    EXPECT_TRUE(leftGateBefore.get());
}

TEST_F(WorkerThreadStop, WithoutWaitingLeavesTheHandlerRunning) {
    start();
    recorder.occupy(*manager);
    manager->PushCommand(command(2));
    EXPECT_EQ(manager->Stop(false), 0U);
    EXPECT_FALSE(recorder.hasLeftGate());
    recorder.open();
    recorder.threadEnded.wait();
    EXPECT_THAT(recorder.ran(), IsEmpty());
}

TEST_F(WorkerThreadStop, TheSecondTimeDoesNothing) {
    start();
    EXPECT_EQ(manager->Stop(true), 0U);
    manager->PushCommand(watched());
    EXPECT_EQ(manager->Stop(true), 0U);
    EXPECT_FALSE(dropped.waitFor(withoutWaiting));
}

TEST_F(WorkerThreadStop, TheSecondTimeDoesNotWaitForAThreadLeftRunning) {
    start();
    recorder.occupy(*manager);
    manager->Stop(false);
    EXPECT_EQ(manager->Stop(true), 0U);
    EXPECT_FALSE(recorder.hasLeftGate());
    recorder.open();
}

TEST_F(WorkerThreadStop, BeforeStartDoesNothing) {
    manager->PushCommand(watched());
    EXPECT_EQ(manager->Stop(true), 0U);
    EXPECT_FALSE(dropped.waitFor(withoutWaiting));
}

TEST_F(WorkerThreadStop, CommandsPushedAfterwardsNeverRun) {
    start();
    recorder.drain(*manager);
    manager->Stop(true);
    manager->PushCommand(watched());
    EXPECT_FALSE(dropped.waitFor(withoutWaiting));
    manager.reset();
    EXPECT_TRUE(dropped.waitFor(withoutWaiting));
    EXPECT_THAT(recorder.ran(), IsEmpty());
}

TEST_F(WorkerThreadStop, CommandsPushedBehindTheExitNeverRun) {
    start();
    recorder.occupy(*manager);
    manager->Stop(false);
    manager->PushCommand(command(2));
    recorder.open();
    recorder.threadEnded.wait();
    EXPECT_THAT(recorder.ran(), IsEmpty());
}

TEST_F(WorkerThreadStop, DestructionDropsWhatIsPendingAndWaitsForTheHandler) {
    start();
    recorder.occupy(*manager);
    manager->PushCommand(watched());
    auto ended = std::async(std::launch::async, [&queue = manager, &commands = recorder] {
        queue.reset();
        return commands.threadEnded.waitFor(withoutWaiting);
    });
    dropped.wait();
    EXPECT_FALSE(recorder.hasLeftGate());
    recorder.open();
    EXPECT_TRUE(ended.get());
    EXPECT_THAT(recorder.ran(), IsEmpty());
}

TEST_F(WorkerThreadStop, DestructionWaitsForAThreadLeftRunning) {
    start();
    recorder.occupy(*manager);
    manager->Stop(false);
    auto ended = std::async(std::launch::async, [&queue = manager, &commands = recorder] {
        queue.reset();
        return commands.threadEnded.waitFor(withoutWaiting);
    });
    recorder.open();
    EXPECT_TRUE(ended.get());
}

TEST_F(WorkerThreadStop, DestructionWithoutStartDestroysWhatWasPushed) {
    manager->PushCommand(watched());
    manager.reset();
    EXPECT_TRUE(dropped.waitFor(withoutWaiting));
}

TEST_F(WorkerThreadStop, MayMeetPushesOfOtherThreads) {
    start();
    recorder.drain(*manager);
    Event pushing(EventReset::Automatic);
    std::jthread pusher([&queue = *manager, &pushing] {
        for (int number = 0; number < 1000; ++number) {
            queue.PushCommand(command(1, number));
            pushing.set();
        }
    });
    pushing.wait();
    manager->Stop(true);
    const auto ranAtStop = recorder.ran();
    pusher.join();
    EXPECT_EQ(recorder.ran(), ranAtStop);
}

} // namespace KestoThumbnailer
