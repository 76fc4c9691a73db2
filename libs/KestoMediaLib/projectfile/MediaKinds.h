#pragma once

#include "KestoMediaLib/projectfile/MediaReader.h"

#include <span>
#include <string_view>

namespace KestoMediaLib::ProjectReading {

/// The kinds of media, and the reading of what each has that others have not.
class MediaReader::Kinds {
public:
    enum class Extent {
        Required,
        Optional, ///< the file's own, or the first part's
        None,     ///< for what cannot be seen, or has that of its visual part
    };

    struct Kind {
        std::string_view name;
        boost::shared_ptr<Media> (*read)(MediaReader& reader, ObjectReader& object);
        Extent extent;
        bool inSequenceAlone = false;
    };

    /// Null, and an error, for another name.
    static const Kind* find(const JsonPlace& name, FirstError& errors);

    static void readExtent(ObjectReader& object, ReadContext& context, Extent rule, EditableVisual& visual);

private:
    static std::span<const Kind> all();
    static boost::shared_ptr<Media> readAudio(MediaReader& reader, ObjectReader& object);
    static boost::shared_ptr<Media> readDocument(MediaReader& reader, ObjectReader& object);
    static boost::shared_ptr<Media> readFreezeFrame(MediaReader& reader, ObjectReader& object);
    static boost::shared_ptr<Media> readColor(MediaReader& reader, ObjectReader& object);
    static boost::shared_ptr<Media> readUnified(MediaReader& reader, ObjectReader& object);
    static boost::shared_ptr<Media> readStitched(MediaReader& reader, ObjectReader& object);
    static boost::shared_ptr<Media> readGroup(MediaReader& reader, ObjectReader& object);
};

} // namespace KestoMediaLib::ProjectReading
