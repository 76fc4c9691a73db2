#pragma once

#include "platform/Export.h"
#include "platform/Gdiplus.h"
#include "platform/KestoMediaLib.h"
#include "platform/KestoRenderLib.h"

#include <boost/rational.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace KestoThumbnailer {

/// Turns one source into one bitmap that fits into a box. Without state: any thread, several at a time; the
/// process must have started GDI+.
///
/// `width` and `height` bound the result in pixels, which is never enlarged and keeps its shape: 0 in one of
/// them is no bound in that direction, 0 in both or a negative one keeps the size. The caller owns a bitmap
/// that is returned; null means no thumbnail. Nothing is thrown but what the application's libraries throw,
/// and std::bad_alloc.
class KESTO_EXPORT GdiplusBitmapThumbnailingHelper {
public:
    GdiplusBitmapThumbnailingHelper() = delete;

    /// A new bitmap also when `source` fits already: in the format of `source`, or in `32bppARGB` for an
    /// indexed one. `source` stays the caller's. Null for a null or empty source, for one in `32bppCMYK`,
    /// which nothing can be drawn into, and without memory; a source that fails to decode leaves the new
    /// bitmap blank.
    static Gdiplus::Bitmap* GenerateThumbnailBitmap(Gdiplus::Bitmap* source, int width, int height);

    /// The frame on opaque black. Null for an empty pointer.
    static Gdiplus::Bitmap* ScaleToGetThumbnail(boost::shared_ptr<KestoRenderLib::MetaBitmap> bitmap,
                                                int width, int height);

    /// A picture of any kind that GDI+ reads, upright by its orientation tag and with its colour profile
    /// honoured; or the first page of a file whose extension is "pdf", in any case. Null for a file that is
    /// missing, no regular file, or not to be read to its end; see `DiagnoseStillImage`.
    static Gdiplus::Bitmap* GetThumbnailForImage(const std::wstring& path, int width, int height);

    /// The frame of a video at `time`, in seconds. The first that applies decides how it is made, and nothing
    /// else is tried when that fails: by the extension, in any case, a "plumex" file has none, and a "gif"
    /// file goes to `GetThumbnailForAnimatedGIF`; a "mosk" file, or a member of one, goes to
    /// `GetThumbnailForMosk`; a "mov" file with a track of PNG files shows the still of that time, or null
    /// behind its end; a stream inside a "plumex" file has none as yet; any other file is that of
    /// `GetThumbnailForFile`. `trackIndex` is -1 where the path alone tells what is wanted.
    static Gdiplus::Bitmap* GetThumbnailForVideo(const std::wstring& path, double time, int width, int height,
                                                 const boost::rational<unsigned long>& frameRate,
                                                 int trackIndex);

    /// The frame at `time`, in seconds and cut to whole milliseconds, of a project of `frameRate` whose one
    /// media is the file. Builds a project and a renderer for this call. Null for a file that is missing or
    /// not to be read, or that shows nothing then.
    static Gdiplus::Bitmap* GetThumbnailForFile(const std::wstring& path, double time, int width, int height,
                                                const boost::rational<unsigned long>& frameRate);

    /// The frame of a recording at `time`, in seconds: the screen, with the camera over its bottom-right
    /// quarter; the only one of them as it is. A path that names a member, or a `trackIndex` other than -1,
    /// restricts that to the screen or to the camera; null for any other member or track. Null, too, for a
    /// file that is no recording. A frame that can't be decoded is transparent.
    static Gdiplus::Bitmap* GetThumbnailForMosk(const std::wstring& path, double time, int width, int height,
                                                int trackIndex);

    /// The frame of a GIF file, whatever its extension, at `time`, in seconds from the start of its first
    /// pass; at 0 exactly, the second frame. Drawn on the file's own background colour. Null for a file that
    /// is no GIF, or that has no such frame.
    static Gdiplus::Bitmap* GetThumbnailForAnimatedGIF(const std::wstring& path, double time, int width,
                                                       int height);

    /// A callout on transparent ground, at the size and moment at which its kind shows best. Null for an
    /// empty pointer, and for a callout that draws nothing.
    static Gdiplus::Bitmap* GetThumbnailForCallout(boost::shared_ptr<const KestoMediaLib::Callout> callout,
                                                   int width, int height);

    /// Null, whatever the path: a broken source has no thumbnail and no picture in its place.
    static Gdiplus::Bitmap* LoadErrorImage(const std::wstring& path);

    /// Null, whatever the path: the same for a source that is not at hand.
    static Gdiplus::Bitmap* GetThumbnailForOffline(const std::wstring& path);
};

} // namespace KestoThumbnailer
