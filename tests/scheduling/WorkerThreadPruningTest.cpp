#include "scheduling/WorkerThreadManager.h"

#include "scheduling/CommandRecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace KestoThumbnailer {

namespace {

using ::testing::ElementsAre;
using TestSupport::command;
using TestSupport::CommandRecorder;
using TestSupport::RanCommand;

class WorkerThreadPruning : public ::testing::Test {
protected:
    void start() { manager.Start(CommandRecorder::handle, &recorder, "Test"); }
    void start(bool enabled, PruneFunction function) {
        start();
        manager.SetPruning(enabled, function);
    }

    CommandRecorder recorder;
    WorkerThreadManager manager;
};

bool neverFolds(THUMB_THREADCMD&, THUMB_THREADCMD&) {
    return false;
}

bool alwaysFolds(THUMB_THREADCMD&, THUMB_THREADCMD&) {
    return true;
}

/// Adds numbers up, over the kinds 1 to 3.
bool foldsSmallKinds(THUMB_THREADCMD& taken, THUMB_THREADCMD& queued) {
    if (taken.kind > 3 || queued.kind > 3)
        return false;
    *boost::any_cast<int>(&taken.data) += *boost::any_cast<int>(&queued.data);
    return true;
}

/// Writes each number that it is shown behind those before it, as decimal digits, and folds even ones.
bool writesDigitsAndFoldsEven(THUMB_THREADCMD& taken, THUMB_THREADCMD& queued) {
    if (taken.kind != 1 || queued.kind != 1)
        return false;
    int& digits = *boost::any_cast<int>(&taken.data);
    const int digit = *boost::any_cast<int>(&queued.data);
    digits = digits * 10 + digit;
    return digit % 2 == 0;
}

/// Counts its copies.
struct CountsCopies {
    explicit CountsCopies(int& counter)
        : copies(&counter) {}
    CountsCopies(const CountsCopies& other)
        : copies(other.copies) {
        ++*copies;
    }
    CountsCopies(CountsCopies&&) = default;
    CountsCopies& operator=(const CountsCopies&) = delete;
    CountsCopies& operator=(CountsCopies&&) = delete;
    ~CountsCopies() = default;

    int* copies; // touched only where nothing else runs, or with the queue locked
};

} // namespace

TEST_F(WorkerThreadPruning, PendingCommandsOfOneKindBecomeOneWithTheLastDataAndTheFirstTag) {
    start();
    recorder.runTogether(manager, {command(1, 10, 100), command(1, 20, 200), command(1, 30, 300)});
    EXPECT_THAT(recorder.ran(), ElementsAre(RanCommand{1, 30, 100}));
}

TEST_F(WorkerThreadPruning, WithoutAFunctionOtherKindsStayInTheirOrder) {
    start();
    recorder.runTogether(manager, {command(1, 1, 1), command(2, 2, 2), command(1, 3, 3), command(3, 4, 4),
                                   command(2, 5, 5), command(1, 6, 6)});
    EXPECT_THAT(recorder.ran(), ElementsAre(RanCommand{1, 6, 1}, RanCommand{2, 5, 2}, RanCommand{3, 4, 4}));
}

TEST_F(WorkerThreadPruning, WithoutAFunctionAnEmptyPayloadReplacesOneToo) {
    start();
    recorder.runTogether(manager, {command(1, 10), {1, {}, 0}});
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(0));
}

TEST_F(WorkerThreadPruning, HappensWhenACommandIsTakenAndNotBefore) {
    start();
    manager.PushCommand(command(1, 10));
    recorder.drain(manager);
    manager.PushCommand(command(1, 20));
    recorder.drain(manager);
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(10, 20));
}

TEST_F(WorkerThreadPruning, CanBeTurnedOff) {
    start(false, nullptr);
    recorder.runTogether(manager, {command(1, 1), command(1, 2)});
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(1, 2));
}

TEST_F(WorkerThreadPruning, TurnedOffAsksNoFunction) {
    start(false, alwaysFolds);
    recorder.runTogether(manager, {command(1, 1), command(1, 2)});
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(1, 2));
}

TEST_F(WorkerThreadPruning, TheFunctionDecidesInPlaceOfTheKinds) {
    start(true, neverFolds);
    recorder.runTogether(manager, {command(1, 1), command(1, 2)});
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(1, 2));
}

TEST_F(WorkerThreadPruning, TheFunctionMayFoldOtherKindsIntoTheOneTaken) {
    start(true, foldsSmallKinds);
    recorder.runTogether(manager, {command(1, 1, 9), command(2, 20), command(5, 50), command(3, 300)});
    EXPECT_THAT(recorder.ran(), ElementsAre(RanCommand{1, 321, 9}, RanCommand{5, 50, 0}));
}

TEST_F(WorkerThreadPruning, TheFunctionSeesEachPendingCommandOnceInOrder) {
    start(true, writesDigitsAndFoldsEven);
    recorder.runTogether(manager, {command(1, 0), command(1, 2), command(1, 4), command(1, 3), command(1, 6),
                                   command(1, 8), command(1, 5)});
    EXPECT_THAT(recorder.ranNumbers(), ElementsAre(243685, 35, 5));
}

TEST_F(WorkerThreadPruning, ComparesOrFoldsWithoutCopyingAPayload) {
    int copies = 0;
    start(true, neverFolds);
    recorder.occupy(manager);
    for (int number = 0; number < 10; ++number)
        manager.PushCommand({1, CountsCopies(copies), 0});
    EXPECT_EQ(copies, 10); // one for each push
    recorder.open();
    recorder.drain(manager);
    EXPECT_EQ(recorder.ran().size(), 10U);
    EXPECT_EQ(copies, 10);
}

#if defined(KESTO_CHECK_LOCK_ORDER)

namespace {

/// Against its contract. The command holds its manager.
bool stopsItsManager(THUMB_THREADCMD& taken, THUMB_THREADCMD&) {
    boost::any_cast<WorkerThreadManager*>(taken.data)->Stop(false);
    return false;
}

} // namespace

TEST(WorkerThreadPruningDeathTest, AFunctionThatStopsItsManagerBreaksTheLockOrder) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            CommandRecorder recorder;
            WorkerThreadManager manager;
            manager.SetPruning(true, stopsItsManager);
            manager.PushCommand({1, &manager, 0});
            manager.PushCommand({1, &manager, 0});
            manager.Start(CommandRecorder::handle, &recorder, "Test");
            recorder.drain(manager);
        },
        "WorkerThreadManager::lifecycleLock must be taken before the lock that is held, "
        "WorkerThreadManager::queueLock");
}

#endif

} // namespace KestoThumbnailer
