#include "scheduling/LoaderFixture.h"

#include "support/PngFile.h"
#include "support/renderer/TestProject.h"

#include <boost/any.hpp>

#include <utility>

namespace KestoThumbnailer {

std::unique_ptr<ThumbnailLoader>
ThumbnailLoaderForTesting::over(boost::shared_ptr<IWorkerThreadManager> manager) {
    return std::unique_ptr<ThumbnailLoader>(new ThumbnailLoader(std::move(manager)));
}

} // namespace KestoThumbnailer

namespace TestSupport {

using KestoThumbnailer::ThumbnailLoader;
using KestoThumbnailer::ThumbnailLoaderJob;

void PictureRecorder::OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap,
                                                     const ThumbnailLoaderJob& job) {
    const MutexLock held(lock);
    pictures.push_back({job, std::shared_ptr<Gdiplus::Bitmap>(*bitmap), std::this_thread::get_id()});
    *bitmap = nullptr;
    arrived.notify_all();
}

std::vector<Arrival> PictureRecorder::arrivals() {
    const MutexLock held(lock);
    return pictures;
}

std::vector<std::string> PictureRecorder::keys() {
    std::vector<std::string> found;
    for (const Arrival& arrival : arrivals())
        found.push_back(arrival.job.thumbnailKey);
    return found;
}

std::vector<Arrival> PictureRecorder::await(std::size_t count) {
    MutexLock held(lock);
    while (pictures.size() < count)
        arrived.wait(held.native());
    return pictures;
}

void PictureRecorder::clear() {
    const MutexLock held(lock);
    pictures.clear();
}

void WorkerGate::OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap**, const ThumbnailLoaderJob&) {
    reached.set();
    opened.wait();
}

std::vector<std::int32_t> CommandKeeper::kinds() const {
    std::vector<std::int32_t> found;
    for (const auto& command : commands)
        found.push_back(command.kind);
    return found;
}

const ThumbnailLoaderJob& CommandKeeper::job(std::size_t index) const {
    return boost::any_cast<const ThumbnailLoaderJob&>(commands.at(index).data);
}

std::vector<std::string> CommandKeeper::paths() const {
    std::vector<std::string> found;
    for (std::size_t index = 0; index < commands.size(); ++index)
        found.push_back(job(index).outputFilePath);
    return found;
}

LoaderFixture::LoaderFixture()
    : imagePath(
          folder
              .write(
                  "blue.png",
                  PngFile{.width = 8, .height = 4, .pixelAt = [](int, int) { return 0xFF0000FFU; }}.bytes())
              .string()) {}

ThumbnailLoaderJob LoaderFixture::projectJob(std::string key, std::vector<double> times) {
    ThumbnailLoaderJob job;
    job.project = makeTestProject(8, 4);
    job.callback = &pictures;
    job.thumbnailKey = std::move(key);
    job.times = std::move(times);
    return job;
}

ThumbnailLoaderJob LoaderFixture::imageJob(std::string key, std::vector<double> times) {
    ThumbnailLoaderJob job;
    job.mediaPath = imagePath;
    job.sourceKind = KestoThumbnailer::SourceImage;
    job.callback = &pictures;
    job.thumbnailKey = std::move(key);
    job.times = std::move(times);
    return job;
}

void LoaderFixture::occupy(ThumbnailLoader& loader) {
    ThumbnailLoaderJob job = imageJob("gate");
    job.callback = &gate;
    loader.GetThumbnailAsync(job);
    gate.awaitWorker();
}

void LoaderFixture::drain(ThumbnailLoader& loader) {
    ThumbnailLoaderJob job = imageJob("last");
    job.callback = &last;
    loader.GetThumbnailAsync(job);
    last.await(++drained);
}

} // namespace TestSupport
