#pragma once

#include "platform/Export.h"
#include "platform/KestoMediaGeometry.h"
#include "platform/KestoMediaModel.h"
#include "platform/KestoRenderLib.h"
#include "platform/WinTypes.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <list>
#include <string>

namespace QRLVST {

class IVSTLibrary;

}

namespace KestoRenderLib {

/// In pixels.
struct SizeF {
    float width = 0;
    float height = 0;
};

/// By its edges, in pixels; right and bottom lie outside.
struct Rect {
    Rect() = default;
    Rect(int leftEdge, int topEdge, int rightEdge, int bottomEdge)
        : left(leftEdge)
        , top(topEdge)
        , right(rightEdge)
        , bottom(bottomEdge) {}

    friend bool operator==(const Rect&, const Rect&) = default;

    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

/// The rectangle of that size at 0, 0.
KESTO_EXPORT KestoMediaLib::Rect<int> toKestoMLRectInt(const Size& size);
/// The same rectangle by corner and size.
KESTO_EXPORT KestoMediaLib::Rect<double> toKestoMLRectDouble(const Rect& rect);

/// How a pipeline renders. Carried along; this renderer has one way, so that no field changes a pixel.
struct RendererInfo {
    std::int64_t windowHandle = 0;
    bool offScreen = true;
    int deviceIndex = 0;
    int quality = 2;
    int sampleCount = 1;
    bool highQualityScaling = true;

    friend bool operator==(const RendererInfo&, const RendererInfo&) = default;
};

using MediaList = std::list<boost::shared_ptr<const KestoMediaLib::Media>>;

/// What a render pass has to know besides the project.
class KESTO_EXPORT IRenderState {
public:
    virtual ~IRenderState() = default;

    /// Only these are drawn; with an empty list, everything is.
    virtual void setMediaToRender(MediaList media) = 0;
    virtual const MediaList& mediaToRender() const = 0;

    virtual void setRendererInfo(const RendererInfo& info) = 0;
    virtual const RendererInfo& rendererInfo() const = 0;
};

class KESTO_EXPORT RenderState : public IRenderState {
public:
    void setMediaToRender(MediaList media) override;
    const MediaList& mediaToRender() const override;
    void setRendererInfo(const RendererInfo& info) override;
    const RendererInfo& rendererInfo() const override;

private:
    MediaList media;
    RendererInfo info;
};

/// What a pipeline draws into. One thread at a time.
class KESTO_EXPORT IDrawingManager {
public:
    virtual ~IDrawingManager() = default;

    /// In pixels.
    virtual KestoRenderLib::Size size() const = 0;
    virtual void setSize(const KestoRenderLib::Size& size) = 0;
};

/// Draws off screen, into memory that is allocated when something is drawn. Made with a size of 0 by 0 it has
/// that of a large screen, 3840 by 2160 pixels, until `setSize` gives it another one.
class KESTO_EXPORT GdiDrawingManager : public IDrawingManager {
public:
    GdiDrawingManager(const RendererInfo& info, bool offScreen, KestoRenderLib::Size size);

    KestoRenderLib::Size size() const override;
    void setSize(const KestoRenderLib::Size& size) override;

    /// What was rendered last, for reading alone: it may be a decoder's own picture. Empty before the first
    /// pass, for a size below 1, and beyond the pixel budget.
    virtual boost::shared_ptr<MetaBitmap> currentFrame() const;
    virtual void setCurrentFrame(boost::shared_ptr<MetaBitmap> frame);

    const RendererInfo& rendererInfo() const { return info; }

private:
    RendererInfo info;
    KestoRenderLib::Size extent;
    boost::shared_ptr<MetaBitmap> frame;
};

/// Makes and keeps what draws each media of one project, decoders among it. One thread at a time.
class KESTO_EXPORT RenderObjectFactory {
public:
    /// `effects` may be empty.
    RenderObjectFactory(boost::shared_ptr<IDrawingManager> drawingManager,
                        boost::shared_ptr<const KestoMediaLib::Project> project,
                        boost::shared_ptr<IRenderState> renderState,
                        boost::shared_ptr<QRLVST::IVSTLibrary> effects);
    ~RenderObjectFactory();
    RenderObjectFactory(const RenderObjectFactory&) = delete;
    RenderObjectFactory& operator=(const RenderObjectFactory&) = delete;

    class Objects;
    Objects& objects() const { return *made; }

private:
    boost::shared_ptr<Objects> made;
};

/// A project's timeline as something that can be rendered. One thread at a time.
class KESTO_EXPORT WRTimeline {
public:
    static boost::shared_ptr<WRTimeline> create(boost::shared_ptr<const KestoMediaLib::Project> project,
                                                boost::shared_ptr<IDrawingManager> drawingManager,
                                                boost::shared_ptr<RenderObjectFactory> factory,
                                                boost::shared_ptr<IRenderState> renderState);
    virtual ~WRTimeline() = default;

    /// `viewport` is the part of the drawing manager that is drawn into. `transform` carries canvas points,
    /// counted from the middle of the canvas, to points counted from the middle of the viewport.
    virtual void setViewport(const KestoMediaLib::Rect<int>& viewport,
                             const KestoMediaLib::TransformMatrix& transform) = 0;
    virtual KestoMediaLib::Rect<int> viewport() const = 0;

    /// Draws frame `frame` of the project into the drawing manager.
    virtual void renderFrame(__int64 frame) = 0;

    /// What counts as inside, on screen; what lies outside is left out with `clipToCanvas`, and drawn with
    /// `outsideOpacity` of 255 without it.
    KestoRenderLib::Rect canvasRect{0, 0, 99999, 99999};
    bool clipToCanvas = true;
    std::int32_t outsideOpacity = 255;
};

/// A project, or why there is none: a sentence for people that names the file, the place in it, and what was
/// expected there. One of the two is empty.
struct ProjectOutcome {
    boost::shared_ptr<KestoMediaLib::Project> project;
    std::string problem;
};

/// Makes projects of files. Paths and texts are UTF-8. An empty pointer means that no project can be made.
/// Any thread; the process must have started GDI+.
class KESTO_EXPORT ProjectGenerator {
public:
    ProjectGenerator() = delete;

    /// A project file as it is; any other media file as a project of its own frame rate and display size.
    static boost::shared_ptr<KestoMediaLib::Project>
    CreateProjectFromMediaOrQrlprojFullPathName(const std::string& path);

    /// Paths in the text are relative to `basePath`.
    static boost::shared_ptr<KestoMediaLib::Project>
    CreateProjectFromQrlprojJsonContent(const std::string& json, const std::string& basePath);

    /// The file as the one media of a project of that frame rate.
    static boost::shared_ptr<KestoMediaLib::Project>
    Create_MediaProject(const std::string& path, const boost::rational<unsigned long>& frameRate);

    // The same, for callers that want to know why there is no project.
    static ProjectOutcome TryProjectFromFile(const std::string& path);
    static ProjectOutcome TryProjectFromJson(const std::string& json, const std::string& basePath);
    static ProjectOutcome TryMediaProject(const std::string& path,
                                          const boost::rational<unsigned long>& frameRate);
};

/// A frame behind plain types; copies share it. It may hold none.
class KESTO_EXPORT SimpleMetaBitmap {
public:
    explicit SimpleMetaBitmap(boost::shared_ptr<MetaBitmap> frame);

    boost::shared_ptr<MetaBitmap> metaBitmap() const { return frame; }

private:
    boost::shared_ptr<MetaBitmap> frame;
};

} // namespace KestoRenderLib
