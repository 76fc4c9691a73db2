#include "scheduling/CalloutThumbnailLoader.h"

#include "scheduling/LoaderFixture.h"

#include "support/renderer/DrawnCallouts.h"
#include "support/renderer/RenderScript.h"
#include "support/renderer/TestCallout.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace KestoThumbnailer {

/// Opens the loader's door for tests.
class CalloutThumbnailLoaderForTesting {
public:
    static std::unique_ptr<CalloutThumbnailLoader> over(boost::shared_ptr<ThumbnailLoader> loader) {
        return std::unique_ptr<CalloutThumbnailLoader>(new CalloutThumbnailLoader(std::move(loader)));
    }
};

namespace {

using KestoMediaLib::Callout;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using TestSupport::burntIn;
using TestSupport::CommandKeeper;
using TestSupport::DrawnCallout;
using TestSupport::makeTestCallout;
using TestSupport::pixelOf;
using CalloutPointer = boost::shared_ptr<const Callout>;

struct Delivered {
    std::string key;
    std::string userData;
    std::shared_ptr<Gdiplus::Bitmap> bitmap;
    std::thread::id thread;
};

/// What came to the callbacks below as long as this lives, one at a time: they are plain functions.
class Deliveries {
public:
    Deliveries() { current = this; }
    ~Deliveries() { current = nullptr; }
    Deliveries(const Deliveries&) = delete;
    Deliveries& operator=(const Deliveries&) = delete;

    static void take(const std::string& key, Gdiplus::Bitmap** bitmap, const std::string& userData) {
        current->add(key, userData, std::shared_ptr<Gdiplus::Bitmap>(*bitmap));
        *bitmap = nullptr;
    }

    static void look(const std::string& key, Gdiplus::Bitmap**, const std::string& userData) {
        current->add("looked at " + key, userData, nullptr);
    }

    std::vector<Delivered> await(std::size_t count) KESTO_EXCLUDES(lock) {
        MutexLock held(lock);
        while (delivered.size() < count)
            arrived.wait(held.native());
        return delivered;
    }

    void awaitKey(const std::string& key) KESTO_EXCLUDES(lock) {
        MutexLock held(lock);
        while (delivered.empty() || delivered.back().key != key)
            arrived.wait(held.native());
    }

    std::vector<std::string> keys() KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        std::vector<std::string> found;
        for (const Delivered& one : delivered)
            found.push_back(one.key);
        return found;
    }

private:
    void add(const std::string& key, const std::string& userData, std::shared_ptr<Gdiplus::Bitmap> bitmap)
        KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        delivered.push_back({key, userData, std::move(bitmap), std::this_thread::get_id()});
        arrived.notify_all();
    }

    static Deliveries* current;

    Mutex lock;
    std::condition_variable arrived;
    std::vector<Delivered> delivered KESTO_GUARDED_BY(lock);
};

Deliveries* Deliveries::current = nullptr;

/// Declared before the loader in each test, so that the loader goes first.
class CalloutLoader : public ::testing::Test {
protected:
    void load(CalloutThumbnailLoader& loader, const std::string& key) {
        loader.LoadThumbnailForCallout(key, callout, 40, 40, "data of " + key);
    }

    /// Has the worker stay with the callout that is drawn next, and returns when it is there.
    void occupy(CalloutThumbnailLoader& loader) {
        callouts.draw = [this](const DrawnCallout& overlay) {
            if (std::exchange(mustWait, false)) {
                drawing.set();
                goOn.wait();
            }
            auto frame = KestoRenderLib::MetaBitmap::Create(overlay.size,
                                                            KestoRenderLib::PixelFormat::Premultiplied32);
            TestSupport::fill(*frame, burntIn(overlay.time));
            return frame;
        };
        load(loader, "gate");
        drawing.wait();
    }

    /// Returns when all has run that was asked for so far.
    void drain(CalloutThumbnailLoader& loader) {
        loader.SetCallbacks(Deliveries::take);
        load(loader, "last");
        deliveries.awaitKey("last");
    }

    TestSupport::GdiplusUser gdiplus;
    Deliveries deliveries;
    CalloutPointer callout = makeTestCallout({.width = 400, .height = 200});
    TestSupport::DrawnCallouts callouts;
    Event drawing{EventReset::Automatic};
    Event goOn{EventReset::Automatic};
    bool mustWait = true; // only the worker asks
};

} // namespace

TEST_F(CalloutLoader, AThumbnailComesWithKeyAndUserDataAsTheyWereGiven) {
    CalloutThumbnailLoader loader;
    loader.SetCallbacks(Deliveries::take);
    loader.LoadThumbnailForCallout("the key", callout, 40, 40, "the data");
    const Delivered arrived = deliveries.await(1)[0];
    EXPECT_EQ(arrived.key, "the key");
    EXPECT_EQ(arrived.userData, "the data");
    EXPECT_EQ(arrived.bitmap->GetWidth(), 40U);
    EXPECT_EQ(arrived.bitmap->GetHeight(), 20U);
    EXPECT_EQ(pixelOf(*arrived.bitmap, 20, 10), burntIn(0));
    EXPECT_EQ(callouts.drawn().at(0).callout, callout);
}

TEST_F(CalloutLoader, AThumbnailNeverComesOnTheCallersThread) {
    CalloutThumbnailLoader loader;
    loader.SetCallbacks(Deliveries::take);
    load(loader, "first");
    load(loader, "second");
    const auto arrived = deliveries.await(2);
    EXPECT_NE(arrived[0].thread, std::this_thread::get_id());
    EXPECT_EQ(arrived[0].thread, arrived[1].thread);
}

TEST_F(CalloutLoader, TheJobAsksForOnePictureOfTheCalloutAndForNothingElse) {
    const auto queue = boost::make_shared<CommandKeeper>();
    const auto loader = CalloutThumbnailLoaderForTesting::over(
        boost::shared_ptr<ThumbnailLoader>(ThumbnailLoaderForTesting::over(queue).release()));
    loader->LoadThumbnailForCallout("the key", callout, 30, 20, "the data");

    ThumbnailLoaderJob expected;
    expected.sourceKind = SourceCallout;
    expected.width = 30;
    expected.height = 20;
    expected.callback = loader.get();
    expected.times = {0.0};
    expected.mediaToRender = {callout};
    expected.userData = "the data";
    expected.thumbnailKey = "the key";
    EXPECT_THAT(queue->kinds(), ElementsAre(ThumbCmdCallout));
    EXPECT_TRUE(queue->job(0) == expected);
    EXPECT_TRUE(queue->job(0).useSpriteSheet);
}

TEST_F(CalloutLoader, WithoutAWorkerNothingHappens) {
    const auto loader = CalloutThumbnailLoaderForTesting::over({});
    load(*loader, "key");
    EXPECT_THAT(callouts.drawn(), IsEmpty());
}

TEST_F(CalloutLoader, ANullCallbackLeavesTheOneBefore) {
    CalloutThumbnailLoader loader;
    loader.SetCallbacks(Deliveries::take);
    loader.SetCallbacks(nullptr);
    load(loader, "key");
    EXPECT_EQ(deliveries.await(1)[0].key, "key");
}

TEST_F(CalloutLoader, ANewCallbackTakesThePlaceOfTheOneBefore) {
    CalloutThumbnailLoader loader;
    loader.SetCallbacks(Deliveries::take);
    loader.SetCallbacks(Deliveries::look);
    load(loader, "key");
    EXPECT_EQ(deliveries.await(1)[0].key, "looked at key");
}

TEST_F(CalloutLoader, AThumbnailThatIsDoneAfterTheCallbackWasClearedIsThrownAway) {
    auto loader = std::make_unique<CalloutThumbnailLoader>();
    loader->SetCallbacks(Deliveries::take);
    occupy(*loader);
    loader->ClearCallbacks();
    goOn.set();
    loader.reset(); // waits for what runs
    EXPECT_THAT(deliveries.keys(), IsEmpty());
}

TEST_F(CalloutLoader, WithoutACallbackTheCalloutIsDrawnAllTheSame) {
    CalloutThumbnailLoader loader;
    occupy(loader);
    EXPECT_EQ(callouts.drawn().size(), 1U);
    goOn.set();
}

TEST_F(CalloutLoader, WithoutACallbackTheBitmapIsDeletedAndTheCallerSeesThatItIsGone) {
    CalloutThumbnailLoader loader;
    auto* bitmap = new Gdiplus::Bitmap(4, 4, PixelFormat32bppARGB);
    loader.OnLoadedGdiPlusBitmapThumbnail(&bitmap, {});
    EXPECT_EQ(bitmap, nullptr);
}

TEST_F(CalloutLoader, ABitmapThatTheCallbackLeavesStaysTheWorkers) {
    CalloutThumbnailLoader loader;
    loader.SetCallbacks(Deliveries::look);
    const auto bitmap = std::make_unique<Gdiplus::Bitmap>(4, 4, PixelFormat32bppARGB);
    Gdiplus::Bitmap* handed = bitmap.get();
    loader.OnLoadedGdiPlusBitmapThumbnail(&handed, {});
    EXPECT_EQ(handed, bitmap.get());
    EXPECT_EQ(deliveries.keys().size(), 1U);
}

TEST_F(CalloutLoader, WhereThereIsNoBitmapNobodyIsCalled) {
    CalloutThumbnailLoader loader;
    loader.SetCallbacks(Deliveries::look);
    Gdiplus::Bitmap* none = nullptr;
    loader.OnLoadedGdiPlusBitmapThumbnail(&none, {});
    loader.OnLoadedGdiPlusBitmapThumbnail(nullptr, {});
    EXPECT_THAT(deliveries.keys(), IsEmpty());
}

TEST_F(CalloutLoader, ACalloutThatDrawsNothingIsPassedOverInSilence) {
    CalloutThumbnailLoader loader;
    loader.SetCallbacks(Deliveries::take);
    callouts.draw = [this](const DrawnCallout& overlay) {
        return overlay.callout == callout
                   ? KestoRenderLib::MetaBitmap::Create({4, 4}, KestoRenderLib::PixelFormat::Premultiplied32)
                   : nullptr;
    };
    loader.LoadThumbnailForCallout("blank", makeTestCallout({}), 40, 40, "");
    loader.LoadThumbnailForCallout("none", {}, 40, 40, "");
    load(loader, "shown");
    EXPECT_EQ(deliveries.await(1)[0].key, "shown");
    EXPECT_EQ(callouts.drawn().size(), 2U);
}

TEST_F(CalloutLoader, EqualRequestsThatArePendingMakeOneThumbnail) {
    CalloutThumbnailLoader loader;
    loader.SetCallbacks(Deliveries::take);
    occupy(loader);
    load(loader, "twice");
    load(loader, "twice");
    goOn.set();
    drain(loader);
    EXPECT_THAT(deliveries.keys(), ElementsAre("gate", "twice", "last"));
}

TEST_F(CalloutLoader, RequestsThatDifferInAnythingMakeThumbnailsOfTheirOwn) {
    CalloutThumbnailLoader loader;
    loader.SetCallbacks(Deliveries::take);
    occupy(loader);
    loader.LoadThumbnailForCallout("key", callout, 40, 40, "data");
    loader.LoadThumbnailForCallout("other", callout, 40, 40, "data");
    loader.LoadThumbnailForCallout("key", callout, 41, 40, "data");
    loader.LoadThumbnailForCallout("key", callout, 40, 41, "data");
    loader.LoadThumbnailForCallout("key", callout, 40, 40, "other");
    loader.LoadThumbnailForCallout("key", makeTestCallout({.width = 400, .height = 200}), 40, 40, "data");
    goOn.set();
    EXPECT_EQ(deliveries.await(7).size(), 7U);
}

TEST_F(CalloutLoader, TheDestructorDropsWhatIsPendingAndWaitsForWhatRuns) {
    auto loader = std::make_unique<CalloutThumbnailLoader>();
    loader->SetCallbacks(Deliveries::take);
    occupy(*loader);
    Event dropped{EventReset::Automatic};
    loader->LoadThumbnailForCallout(
        "pending", CalloutPointer(callout.get(), [&dropped](const Callout*) { dropped.set(); }), 40, 40, "");
    std::thread destroying([&loader] { loader.reset(); });
    dropped.wait();
    goOn.set();
    destroying.join();
    EXPECT_THAT(deliveries.keys(), ElementsAre("gate"));
}

TEST_F(CalloutLoader, CallbacksMayChangeWhileThumbnailsCome) {
    CalloutThumbnailLoader loader;
    for (int request = 0; request < 50; ++request) {
        load(loader, std::to_string(request));
        if (request % 2 == 0)
            loader.SetCallbacks(Deliveries::take);
        else
            loader.ClearCallbacks();
    }
    drain(loader);
    EXPECT_EQ(deliveries.keys().back(), "last");
}

} // namespace KestoThumbnailer
