#include "pack/Manifest.h"

#include <fmt/format.h>

namespace KestoHost {

std::string manifestText(const std::vector<ManifestStream>& streams) {
    // Roles and names are this program's own, without a letter that XML would want escaped.
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<recording version=\"1\">\n";
    for (const ManifestStream& stream : streams)
        text += fmt::format("  <stream role=\"{}\" name=\"{}\" bytes=\"{}\"/>\n", stream.role, stream.name,
                            stream.bytes);
    return text + "</recording>\n";
}

} // namespace KestoHost
