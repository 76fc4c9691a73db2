#include "scheduling/WorkerThreadManager.h"

#include "platform/KestoRenderLib.h"
#include "scheduling/CommandRecorder.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>

namespace KestoThumbnailer {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using TestSupport::command;
using TestSupport::CommandRecorder;

constexpr auto refusal = "Invalid command type pushed into worker thread manager";

// NOLINTNEXTLINE(performance-unnecessary-value-param): a handler owns its command
void throwOutOfHandler(void*, THUMB_THREADCMD) {
    throw std::runtime_error("out of the handler");
}

class WorkerThread : public ::testing::Test {
protected:
    void start() {
        manager.SetPruning(false, nullptr); // first, since some tests have pushed already
        manager.Start(CommandRecorder::handle, &recorder, "Test");
    }

    std::string refusalOf(std::int32_t kind) {
        try {
            manager.PushCommand(command(kind));
        } catch (const KestoRenderLib::KestoRenderLibException& exception) {
            return exception.what();
        }
        return "accepted";
    }

    CommandRecorder recorder;
    WorkerThreadManager manager;
};

} // namespace

TEST_F(WorkerThread, CommandsRunInTheOrderOfTheirPushes) {
    start();
    recorder.runTogether(manager, {command(3, 1), command(2, 2), command(3, 3), command(1, 4)});
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(1, 2, 3, 4));
}

TEST_F(WorkerThread, ACommandArrivesWithItsKindDataAndTag) {
    start();
    manager.PushCommand(command(7, 42, 0xFEDCBA9876543210U));
    recorder.drain(manager);
    EXPECT_THAT(recorder.ran(), ElementsAre(TestSupport::RanCommand{7, 42, 0xFEDCBA9876543210U}));
}

TEST_F(WorkerThread, ACommandMayHaveNoPayload) {
    start();
    manager.PushCommand({5, {}, 0});
    recorder.drain(manager);
    EXPECT_THAT(recorder.ranKinds(), ElementsAre(5));
}

TEST_F(WorkerThread, ThePayloadIsCopiedByThePush) {
    start();
    auto mine = command(1, 10);
    recorder.occupy(manager);
    manager.PushCommand(mine);
    *boost::any_cast<int>(&mine.data) = 20;
    recorder.open();
    recorder.drain(manager);
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(10));
}

TEST_F(WorkerThread, EachPushWakesASleepingWorker) {
    start();
    for (int round = 0; round < 200; ++round) {
        manager.PushCommand(command(1, round));
        recorder.drain(manager);
        ASSERT_EQ(recorder.ran().size(), static_cast<std::size_t>(round) + 1);
    }
}

TEST_F(WorkerThread, SeveralPushesBeforeItWakesAllRun) {
    start();
    recorder.occupy(manager);
    for (int number = 1; number <= 3; ++number)
        manager.PushCommand(command(1, number));
    // The worker has not waited since: the event holds one signal for the three.
    EXPECT_TRUE(manager.GetCommandEvent()->waitFor(std::chrono::nanoseconds(0)));
    EXPECT_FALSE(manager.GetCommandEvent()->waitFor(std::chrono::nanoseconds(0)));
    recorder.open();
    recorder.drain(manager);
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(1, 2, 3));
}

TEST_F(WorkerThread, ASignalWithoutACommandOnlyMakesItLook) {
    start();
    manager.GetCommandEvent()->set();
    recorder.drain(manager);
    manager.GetCommandEvent()->set();
    manager.PushCommand(command(1, 5));
    recorder.drain(manager);
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(5));
}

TEST_F(WorkerThread, CommandsPushedBeforeStartRunAfterIt) {
    manager.PushCommand(command(1, 1));
    manager.PushCommand(command(2, 2));
    start();
    recorder.drain(manager);
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(1, 2));
}

TEST_F(WorkerThread, AllCommandsRunOnOneThreadOfItsOwn) {
    start();
    manager.PushCommand(command(1));
    recorder.drain(manager);
    const std::thread::id first = recorder.worker();
    manager.PushCommand(command(1));
    recorder.drain(manager);
    EXPECT_EQ(recorder.worker(), first);
    EXPECT_NE(first, std::this_thread::get_id());
}

TEST_F(WorkerThread, KindZeroIsRefusedAndNothingIsQueued) {
    start();
    recorder.occupy(manager);
    EXPECT_EQ(refusalOf(0), refusal);
    recorder.open();
    recorder.drain(manager);
    EXPECT_THAT(recorder.ran(), IsEmpty());
}

TEST_F(WorkerThread, TheExitKindIsRefusedAndPendingCommandsStay) {
    start();
    recorder.occupy(manager);
    manager.PushCommand(command(1, 1));
    EXPECT_EQ(refusalOf(-1), refusal);
    recorder.open();
    recorder.drain(manager);
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(1));
}

TEST_F(WorkerThread, AnyNegativeKindEndsTheThread) {
    start();
    recorder.occupy(manager);
    manager.PushCommand(command(1, 1));
    manager.PushCommand(command(-2));
    manager.PushCommand(command(1, 2));
    recorder.open();
    recorder.threadEnded.wait();
    EXPECT_EQ(manager.Stop(true), 0U);
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(1));
}

TEST_F(WorkerThread, ACommandIsDestroyedBeforeTheNextIsTaken) {
    start();
    Event gone(EventReset::Automatic);
    manager.PushCommand({1, TestSupport::signalsItsEnd(gone), 0});
    gone.wait(); // nothing else is pushed that could push it out
    recorder.drain(manager);
    EXPECT_THAT(recorder.ranKinds(), ElementsAre(1));
}

TEST_F(WorkerThread, WithoutAHandlerCommandsAreTakenAndDropped) {
    manager.Start(nullptr, nullptr, "Test");
    Event gone(EventReset::Automatic);
    for (int round = 0; round < 2; ++round) {
        manager.PushCommand({1, TestSupport::signalsItsEnd(gone), 0});
        EXPECT_TRUE(gone.waitFor(std::chrono::seconds(60)));
    }
}

TEST_F(WorkerThread, AHandlerThatPushesBackRunsThatCommandAfterEverythingQueued) {
    struct Context {
        CommandRecorder& recorder;
        WorkerThreadManager& manager;
    } context{recorder, manager};
    const auto pushesBackOnce = [](void* own, THUMB_THREADCMD taken) {
        auto& [commands, queue] = *static_cast<Context*>(own);
        if (taken.kind == 1 && taken.tag == 0) {
            taken.tag = 1;
            queue.PushCommand(taken);
            return;
        }
        CommandRecorder::handle(&commands, std::move(taken));
    };
    manager.SetPruning(false, nullptr);
    manager.PushCommand(command(1));
    manager.PushCommand(command(2));
    manager.PushCommand(command(3));
    manager.Start(pushesBackOnce, &context, "Test");
    while (recorder.ran().size() < 3)
        recorder.drain(manager);
    manager.Stop(true); // the context goes before the manager
    EXPECT_THAT(recorder.ranKinds(), ElementsAre(2, 3, 1));
}

TEST_F(WorkerThread, AnyThreadMayPushAndEachKeepsItsOrder) {
    constexpr int threads = 4;
    constexpr int perThread = 500;
    start();
    {
        std::vector<std::jthread> pushers;
        for (int thread = 1; thread <= threads; ++thread)
            pushers.emplace_back([&queue = manager, thread] {
                for (int number = 0; number < perThread; ++number)
                    queue.PushCommand(command(thread, number));
            });
    }
    recorder.drain(manager);
    std::vector<int> next(threads + 1, 0);
    for (const auto& ran : recorder.ran()) {
        int& expected = next[static_cast<std::size_t>(ran.kind)];
        ASSERT_EQ(ran.number, expected);
        ++expected;
    }
    EXPECT_THAT(next, ElementsAre(0, perThread, perThread, perThread, perThread));
}

TEST_F(WorkerThread, TheEventExistsFromStartToTheEnd) {
    EXPECT_EQ(manager.GetCommandEvent(), nullptr);
    start();
    Event* const event = manager.GetCommandEvent();
    EXPECT_NE(event, nullptr);
    manager.Stop(true);
    EXPECT_EQ(manager.GetCommandEvent(), event);
}

TEST_F(WorkerThread, EveryPushSignalsTheEvent) {
    start();
    manager.Stop(true); // nobody else waits any more
    Event& event = *manager.GetCommandEvent();
    event.reset();
    for (int round = 0; round < 2; ++round) {
        manager.PushCommand(command(1));
        EXPECT_TRUE(event.waitFor(std::chrono::nanoseconds(0)));
    }
}

TEST_F(WorkerThread, APointerToTheInterfaceDestroysItAsWhatItIs) {
    static_assert(!std::has_virtual_destructor_v<IWorkerThreadManager>);
    boost::shared_ptr<IWorkerThreadManager> held = boost::make_shared<WorkerThreadManager>();
    held->Start(CommandRecorder::handle, &recorder, "Test");
    recorder.drain(*held);
    held.reset();
    EXPECT_TRUE(recorder.threadEnded.waitFor(std::chrono::nanoseconds(0)));
}

TEST(WorkerThreadDeathTest, AnExceptionOutOfAHandlerEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto dieInHandler = [] {
        Event never(EventReset::Manual);
        WorkerThreadManager manager;
        manager.Start(throwOutOfHandler, nullptr, "Test");
        manager.PushCommand(command(1));
        never.waitFor(std::chrono::seconds(60));
    };
    EXPECT_DEATH(dieInHandler(), "out of the handler");
}

} // namespace KestoThumbnailer
