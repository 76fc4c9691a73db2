#include "inspection/source/StreamTypes.h"

#include "inspection/source/DSExceptions.h"
#include "inspection/source/FileReader.h"
#include "inspection/source/MP4ParserFindStreamTypes.h"

std::vector<StreamTypeRecord> FindStreamTypes(const std::wstring& path) {
    MP4ParserFindStreamTypes parser(std::make_unique<FileReader>());
    try {
        parser.parse(path);
    } catch (const MP4ParseException&) {
        // What was found until then is the answer.
    }
    return parser.streamTypes();
}
