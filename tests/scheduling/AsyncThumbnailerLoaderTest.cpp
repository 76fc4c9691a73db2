#include "scheduling/AsyncThumbnailerLoader.h"

#include "platform/Threading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace KestoThumbnailer {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Time = boost::rational<__int64>;
using Frame = boost::shared_ptr<KestoRenderLib::MetaBitmap>;

constexpr std::chrono::nanoseconds withoutWaiting{0};
constexpr KestoRenderLib::Size anySize{160, 90};

/// Outlives the loader and its grabber. Without a lock: the queue thread writes, and the test reads when it
/// has waited.
struct Grabbed {
    std::vector<Time> times;
    std::vector<bool> keptOrientations;
    std::vector<KestoRenderLib::Size> sizes;
    std::vector<Frame> frames;
    std::vector<std::thread::id> threads;
    std::atomic<int> atOnce = 0;
    std::atomic<int> mostAtOnce = 0;
    Event gone{EventReset::Manual};
};

/// Gives a frame of the size that was asked for, and none for a time below 0.
class FakeGrabber final : public IFrameGrabber {
public:
    explicit FakeGrabber(Grabbed& record)
        : grabbed(record) {}
    ~FakeGrabber() override { grabbed.gone.set(); }

    Frame frameAtTime(Time time, bool keepOrientation, KestoRenderLib::Size size) override {
        grabbed.mostAtOnce = std::max(grabbed.mostAtOnce.load(), ++grabbed.atOnce);
        grabbed.times.push_back(time);
        grabbed.keptOrientations.push_back(keepOrientation);
        grabbed.sizes.push_back(size);
        grabbed.threads.push_back(std::this_thread::get_id());
        if (time >= Time(0))
            grabbed.frames.push_back(
                KestoRenderLib::MetaBitmap::Create(size, KestoRenderLib::PixelFormat::Premultiplied32));
        else
            grabbed.frames.emplace_back();
        --grabbed.atOnce;
        return grabbed.frames.back();
    }

private:
    Grabbed& grabbed;
};

class ThrowingGrabber final : public IFrameGrabber {
public:
    Frame frameAtTime(Time, bool, KestoRenderLib::Size) override {
        throw std::runtime_error("from a grabber");
    }
};

class AsyncThumbnailerLoaderTest : public ::testing::Test {
protected:
    /// Asks for a frame that is noted among the answers.
    void load(Time time) {
        loader->load(time, true, anySize, [this](const Frame& frame) { answers.push_back(frame); });
    }

    /// Keeps the queue thread inside a callback until `opened` is set, and returns when it is there.
    void occupy() {
        loader->load(0, true, anySize, [this](const Frame&) {
            reached.set();
            opened.wait();
        });
        reached.wait();
    }

    Grabbed grabbed;
    std::vector<Frame> answers; // of the queue thread, until it was waited for
    Event reached{EventReset::Automatic};
    Event opened{EventReset::Automatic};
    std::optional<AsyncThumbnailerLoader> loader{std::in_place, std::make_unique<FakeGrabber>(grabbed)};
};

/// Signals `gone` when the last callback that holds it is destroyed.
std::shared_ptr<void> signalsItsEnd(Event& gone) {
    return {nullptr, [&gone](void*) { gone.set(); }};
}

std::string refusalOf(AsyncThumbnailerLoader& loader, std::function<void(Frame)> callback) {
    try {
        loader.load(1, true, anySize, std::move(callback));
    } catch (const std::invalid_argument& refusal) {
        return refusal.what();
    }
    return "none";
}

} // namespace

TEST_F(AsyncThumbnailerLoaderTest, AnEmptyCallbackIsRefusedAndQueuesNothing) {
    EXPECT_EQ(refusalOf(*loader, {}), "AsyncThumbnailerLoader requires a valid callback");
    loader->waitUntilFinished();
    EXPECT_THAT(grabbed.times, IsEmpty());
}

TEST_F(AsyncThumbnailerLoaderTest, AnEmptyCallbackLeavesTheRequestsInTheQueueAlone) {
    occupy();
    load(1);
    EXPECT_THROW(loader->load(2, true, anySize, {}), std::invalid_argument);
    load(3);
    opened.set();
    loader->waitUntilFinished();
    EXPECT_THAT(grabbed.times, ElementsAre(Time(0), Time(1), Time(3)));
}

TEST_F(AsyncThumbnailerLoaderTest, ThreeRequestsAreAnsweredInTheirOrderBeforeTheWaitReturns) {
    for (int round = 0; round < 100; ++round) {
        std::vector<int> answered;
        for (int request = 0; request < 3; ++request)
            loader->load(request, true, anySize,
                         [&answered, request](const Frame&) { answered.push_back(request); });
        loader->waitUntilFinished();
        ASSERT_THAT(answered, ElementsAre(0, 1, 2));
    }
}

TEST_F(AsyncThumbnailerLoaderTest, WaitOnAnIdleLoaderReturnsAtOnce) {
    loader->waitUntilFinished();
    load(1);
    loader->waitUntilFinished();
    loader->waitUntilFinished();
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(AsyncThumbnailerLoaderTest, HandsItsArgumentsToTheGrabberAsTheyStand) {
    loader->load({3, 2}, false, {64, 0}, [](const Frame&) {});
    loader->load({-7, 5}, true, {0, 0}, [](const Frame&) {});
    loader->waitUntilFinished();
    EXPECT_THAT(grabbed.times, ElementsAre(Time(3, 2), Time(-7, 5)));
    EXPECT_THAT(grabbed.keptOrientations, ElementsAre(false, true));
    EXPECT_THAT(grabbed.sizes, ElementsAre(KestoRenderLib::Size{64, 0}, KestoRenderLib::Size{0, 0}));
}

TEST_F(AsyncThumbnailerLoaderTest, TheCallbackGetsTheGrabbersOwnFrame) {
    load(1);
    loader->waitUntilFinished();
    ASSERT_THAT(answers, ElementsAre(grabbed.frames.front()));
    EXPECT_EQ(answers.front()->Size(), anySize);
}

TEST_F(AsyncThumbnailerLoaderTest, AnEmptyFrameIsHandedOnAsItIs) {
    load(-1);
    loader->waitUntilFinished();
    EXPECT_THAT(answers, ElementsAre(Frame()));
}

TEST_F(AsyncThumbnailerLoaderTest, EqualRequestsAreNotFolded) {
    occupy();
    load(1);
    load(1);
    load(1);
    opened.set();
    loader->waitUntilFinished();
    EXPECT_EQ(answers.size(), 3U);
}

TEST_F(AsyncThumbnailerLoaderTest, GrabsAndCallsBackOnOneThreadThatIsNotTheCallers) {
    std::array<std::thread::id, 2> callbacks;
    for (auto& thread : callbacks)
        loader->load(1, true, anySize, [&thread](const Frame&) { thread = std::this_thread::get_id(); });
    loader->waitUntilFinished();
    EXPECT_NE(callbacks[0], std::this_thread::get_id());
    EXPECT_EQ(callbacks[1], callbacks[0]);
    EXPECT_THAT(grabbed.threads, ElementsAre(callbacks[0], callbacks[0]));
}

TEST_F(AsyncThumbnailerLoaderTest, LoadReturnsWhileTheThreadIsBusy) {
    occupy();
    load(1);
    EXPECT_THAT(answers, IsEmpty());
    opened.set();
    loader->waitUntilFinished();
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(AsyncThumbnailerLoaderTest, ACallbackMayAskForMore) {
    loader->load(1, true, anySize, [this](const Frame&) { load(2); });
    loader->waitUntilFinished();
    EXPECT_THAT(grabbed.times, ElementsAre(Time(1), Time(2)));
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(AsyncThumbnailerLoaderTest, ACallbackThatWaitsIsRefused) {
    bool refused = false;
    loader->load(1, true, anySize, [this, &refused](const Frame&) {
        try {
            loader->waitUntilFinished();
        } catch (const KestoRenderLib::KestoRenderLibException&) {
            refused = true;
        }
    });
    loader->waitUntilFinished();
    EXPECT_TRUE(refused);
}

TEST_F(AsyncThumbnailerLoaderTest, RequestsOfManyThreadsReachTheGrabberOneAtATime) {
    std::atomic<int> missing = 0;
    const auto askAndWait = [this, &missing] {
        for (int round = 0; round < 100; ++round) {
            std::atomic<bool> answered = false;
            loader->load(round, true, anySize, [&answered](const Frame&) { answered = true; });
            loader->waitUntilFinished();
            missing += answered ? 0 : 1;
        }
    };
    {
        const std::array<std::jthread, 3> threads{std::jthread(askAndWait), std::jthread(askAndWait),
                                                  std::jthread(askAndWait)};
    }
    EXPECT_EQ(missing, 0);
    EXPECT_EQ(grabbed.times.size(), 300U);
    EXPECT_EQ(grabbed.mostAtOnce, 1);
}

TEST_F(AsyncThumbnailerLoaderTest, TheThreadEndsBeforeTheGrabberGoes) {
    bool goneBeforeTheEnd = true;
    loader->load(1, true, anySize, [this, &goneBeforeTheEnd](const Frame&) {
        reached.set();
        opened.wait();
        goneBeforeTheEnd = grabbed.gone.waitFor(withoutWaiting);
    });
    reached.wait();
    Event dropped(EventReset::Automatic);
    loader->load(2, true, anySize, [watched = signalsItsEnd(dropped)](const Frame&) {});
    const std::jthread opener([this, &dropped] {
        dropped.wait(); // the destructor is under way
        opened.set();
    });
    loader.reset();
    EXPECT_FALSE(goneBeforeTheEnd);
    EXPECT_TRUE(grabbed.gone.waitFor(withoutWaiting));
}

TEST_F(AsyncThumbnailerLoaderTest, DestructionDropsTheRequestsThatHaveNotBegun) {
    occupy();
    Event dropped(EventReset::Automatic);
    loader->load(2, true, anySize,
                 [this, watched = signalsItsEnd(dropped)](const Frame& frame) { answers.push_back(frame); });
    const std::jthread opener([this, &dropped] {
        dropped.wait();
        opened.set();
    });
    loader.reset();
    EXPECT_THAT(grabbed.times, ElementsAre(Time(0)));
    EXPECT_THAT(answers, IsEmpty());
}

TEST_F(AsyncThumbnailerLoaderTest, NoCallbackRunsOnceDestructionHasReturned) {
    for (int round = 0; round < 100; ++round) {
        Grabbed own;
        std::atomic<bool> gone = false;
        std::atomic<bool> calledAfterwards = false;
        std::optional<AsyncThumbnailerLoader> dying(std::in_place, std::make_unique<FakeGrabber>(own));
        for (int request = 0; request < 5; ++request)
            dying->load(request, true, anySize, [&gone, &calledAfterwards](const Frame&) {
                calledAfterwards = calledAfterwards || gone;
            });
        dying.reset();
        gone = true;
        ASSERT_FALSE(calledAfterwards);
    }
}

TEST(AsyncThumbnailerLoaderWithoutAGrabber, RefusesEveryRequest) {
    AsyncThumbnailerLoader loader(nullptr);
    EXPECT_EQ(refusalOf(loader, [](const Frame&) {}), "AsyncThumbnailerLoader requires a frame grabber");
    loader.waitUntilFinished();
}

TEST(AsyncThumbnailerLoaderDeathTest, WhatACallbackThrowsEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            Grabbed grabbed;
            AsyncThumbnailerLoader loader(std::make_unique<FakeGrabber>(grabbed));
            loader.load(1, true, anySize, [](const Frame&) { throw std::runtime_error("from a callback"); });
            loader.waitUntilFinished();
        },
        "from a callback");
}

TEST(AsyncThumbnailerLoaderDeathTest, WhatTheGrabberThrowsEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            AsyncThumbnailerLoader loader(std::make_unique<ThrowingGrabber>());
            loader.load(1, true, anySize, [](const Frame&) {});
            loader.waitUntilFinished();
        },
        "from a grabber");
}

} // namespace KestoThumbnailer
