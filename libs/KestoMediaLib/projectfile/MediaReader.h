#pragma once

#include "KestoMediaLib/EditableMedia.h"
#include "KestoMediaLib/projectfile/ReadContext.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace KestoMediaLib {

class TrackModel;

}

namespace KestoMediaLib::ProjectReading {

/// What may stand around a media, which decides what its members are.
enum class Role {
    OnTrack,    ///< has a start
    InSequence, ///< a part of stitched media, or an entry of the library: it has a trim and no start
    Inside,     ///< the audio or visual part of unified media: neither trim nor placement
};

/// Reads media, those of the library on first use.
class MediaReader {
public:
    /// No media lies inside more than so many others.
    static constexpr int deepest = 32;

    explicit MediaReader(ReadContext& readContext)
        : context(readContext) {}

    /// `library` must outlive the reader.
    void readLibrary(const JsonPlace& library);
    std::vector<boost::shared_ptr<TrackModel>> readTracks(const JsonPlace& tracks);

private:
    class Kinds;

    /// Grown so far when it holds itself: read, but not whole.
    enum class Progress { Unread, Reading, Whole };

    struct Entry {
        Progress progress = Progress::Unread;
        boost::shared_ptr<Media> media;
        int depth = 0;        ///< of media inside
        std::size_t cost = 0; ///< of one more copy
    };

    boost::shared_ptr<TrackModel> readTrack(const JsonPlace& place);
    boost::shared_ptr<Media> readMedia(const JsonPlace& place, Role role);
    boost::shared_ptr<Media> readNewMedia(ObjectReader& object, Role role);
    void readSpan(ObjectReader& object, Role role, const boost::shared_ptr<Media>& media);
    boost::shared_ptr<Media> readUse(const JsonPlace& name, ObjectReader& object, Role role);
    const Entry* wholeEntry(const JsonPlace& name);
    void readEntry(const JsonPlace& place, const std::string& name, Entry& entry);
    void reportCycle(const JsonPlace& place, const std::string& name);

    ReadContext& context;
    const JsonPlace* libraryPlace = nullptr;
    std::map<std::string, Entry, std::less<>> library;
    std::vector<std::string> beingRead; ///< entries, each used by the one before
    int level = 0;                      ///< of the media that is being read
};

} // namespace KestoMediaLib::ProjectReading
