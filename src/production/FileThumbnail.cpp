#include "framegrab/FrameGrabberUtil.h"
#include "framegrab/ProjectFrameGrabber.h"
#include "platform/KestoMediaModel.h"
#include "platform/KestoRenderProject.h"
#include "platform/System.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "scheduling/imagefile/TextConversion.h"

namespace KestoThumbnailer {

Gdiplus::Bitmap*
GdiplusBitmapThumbnailingHelper::GetThumbnailForFile(const std::wstring& path, double time, int width,
                                                     int height,
                                                     const boost::rational<unsigned long>& frameRate) {
    if (path.empty() || GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES)
        return nullptr;
    const boost::shared_ptr<KestoMediaLib::Project> project =
        KestoRenderLib::ProjectGenerator::Create_MediaProject(Utf8FromWide(path), frameRate);
    if (!project) // a file that can't be read is no programming error
        return nullptr;
    ProjectFrameGrabber grabber(project);
    return ScaleToGetThumbnail(FrameAtSeconds(time, grabber), width, height);
}

} // namespace KestoThumbnailer
