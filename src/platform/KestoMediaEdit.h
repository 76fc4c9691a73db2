#pragma once

#include "platform/KestoMediaLib.h"
#include "platform/WinTypes.h"

#include <boost/rational.hpp>
#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace KestoMediaLib {

/// One edit. Nothing happens before it is executed.
class KESTO_EXPORT Command : public KestoObject {
public:
    /// Called by the project that executes the command, once.
    virtual void execute() = 0;
};

/// How a project is edited: by one thread, while nobody reads.
class KESTO_EXPORT ICommandInterface {
public:
    virtual ~ICommandInterface() = default;

    /// Throws std::invalid_argument for an empty command, and what the command throws; the project is then as
    /// it was.
    virtual void executeCommand(const boost::shared_ptr<Command>& command) = 0;
};

/// Media cut out of one mixer, to be pasted into another. It shares them; pasting makes copies.
class KESTO_EXPORT Clipping : public KestoObject {
public:
    /// `mixer` is the one that `media` lie in. `name` may be empty. Throws std::invalid_argument for an empty
    /// pointer.
    Clipping(const boost::shared_ptr<const Mixer>& mixer, const boost::rational<unsigned long>& frameRate,
             const std::vector<boost::shared_ptr<const Media>>& media, const std::string& name);

    const boost::shared_ptr<const Mixer>& mixer() const { return source; }
    const boost::rational<unsigned long>& frameRate() const { return rate; }
    const std::vector<boost::shared_ptr<const Media>>& media() const { return content; }
    const std::string& name() const { return label; }

private:
    boost::shared_ptr<const Mixer> source;
    boost::rational<unsigned long> rate;
    std::vector<boost::shared_ptr<const Media>> content;
    std::string label;
};

/// Puts copies of a clipping's media into a mixer of a project.
class KESTO_EXPORT PasteClippingCmd : public Command {
public:
    /// The earliest media comes to start at `position`, in model time, and the others keep their distance.
    /// `track` is that of all copies, counted from 0 at the bottom. -1 makes new tracks on top: one for each
    /// track that the media came from, in their order.
    /// `mixer` must be that of `project`. Throws std::invalid_argument for an empty pointer, another mixer,
    /// or a track below -1, or a position beyond a hundred years; `execute` throws it for a track that is not
    /// there.
    static boost::shared_ptr<PasteClippingCmd> create(const boost::shared_ptr<const Clipping>& clipping,
                                                      const boost::shared_ptr<Project>& project,
                                                      const boost::shared_ptr<const Mixer>& mixer,
                                                      __int64 position, int track);
};

} // namespace KestoMediaLib
