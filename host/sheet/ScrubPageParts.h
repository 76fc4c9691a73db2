#pragma once

namespace KestoHost {

/// The fixed text of a page, in the order in which it stands there. The first and the third are formats of
/// {fmt}, so that their braces stand twice.

/// With the title.
extern const char* const scrubPageHead;
extern const char* const scrubPageStyle;
/// With the title, the number of tiles, and the width, height and media type of the sheet, whose base64
/// follows.
extern const char* const scrubPageBody;
/// The tiles follow, as JSON.
extern const char* const scrubPageAfterPicture;
extern const char* const scrubPageScript;

} // namespace KestoHost
