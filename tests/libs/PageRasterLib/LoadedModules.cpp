#include "platform/PageRasterLib.h"

#include <fstream>
#include <iostream>
#include <string>

// Opens the document that the first argument names, and tells whether the rasteriser was loaded before and
// after.

namespace {

bool isMapped(const std::string& part) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find(part) != std::string::npos)
            return true;
    return false;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2)
        return 2;
    std::cout << isMapped("libpoppler") << isMapped("kesto_pdf.so");
    const PageRasterLib::Pdf pdf(arguments[1]);
    std::cout << ' ' << isMapped("libpoppler") << isMapped("kesto_pdf.so") << " state "
              << static_cast<int>(pdf.State()) << '\n';
    return 0;
}
