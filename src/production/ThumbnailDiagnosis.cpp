#include "production/ThumbnailDiagnosis.h"

#include "platform/Gdiplus.h"
#include "platform/PageRasterLib.h"
#include "platform/System.h"
#include "production/PdfPage.h"
#include "scheduling/imagefile/TextConversion.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <optional>
#include <utility>

namespace KestoThumbnailer {

namespace {

using enum NoThumbnailReason;

struct ReasonText {
    NoThumbnailReason reason;
    const char* word;
    const char* predicate; // what follows the file's name in the sentence
};

constexpr std::array<ReasonText, 12> texts = {{
    {NothingWrong, "nothing-wrong", "reads well now; it may have changed, or memory was short"},
    {Missing, "missing", "does not exist"},
    {NotAFile, "not-a-file", "is not a regular file"},
    {Unreadable, "unreadable", "can't be opened for reading"},
    {Empty, "empty", "is an empty file"},
    {UnknownFormat, "unknown-format", "is of no kind that can be read"},
    {Truncated, "truncated", "ends before its picture does"},
    {Damaged, "damaged", "is damaged"},
    {TooLarge, "too-large", "has more pixels than the budget (KESTO_PIXEL_BUDGET) or the memory allows"},
    {Encrypted, "encrypted", "asks for a password"},
    {NoPages, "no-pages", "has no pages"},
    {Unavailable, "unavailable", "needs a part that is not installed or not started"},
}};

template <typename Key, std::size_t count>
using MeaningTable = std::array<std::pair<Key, NoThumbnailReason>, count>;

// See the comment at `Status`. Any other status is damage.
constexpr MeaningTable<Gdiplus::Status, 8> meaningOfStatus = {{
    {Gdiplus::Ok, NothingWrong},
    {Gdiplus::InvalidParameter, Missing},
    {Gdiplus::FileNotFound, Missing},
    {Gdiplus::AccessDenied, Unreadable},
    {Gdiplus::UnknownImageFormat, UnknownFormat},
    {Gdiplus::Aborted, Truncated},
    {Gdiplus::OutOfMemory, TooLarge},
    {Gdiplus::GdiplusNotInitialized, Unavailable},
}};

constexpr MeaningTable<PageRasterLib::PdfState, 7> meaningOfPdfState = {{
    {PageRasterLib::PdfState::Readable, NothingWrong},
    {PageRasterLib::PdfState::Unreadable, Unreadable},
    {PageRasterLib::PdfState::Empty, NoPages},
    {PageRasterLib::PdfState::NotAPdf, UnknownFormat},
    {PageRasterLib::PdfState::Damaged, Damaged},
    {PageRasterLib::PdfState::Encrypted, Encrypted},
    {PageRasterLib::PdfState::Unavailable, Unavailable},
}};

template <typename Key, std::size_t count>
NoThumbnailReason MeaningOf(Key key, const MeaningTable<Key, count>& table) {
    const auto row =
        std::find_if(table.begin(), table.end(), [=](const auto& meaning) { return meaning.first == key; });
    return row == table.end() ? Damaged : row->second;
}

// The kind of file in `st_mode`, in the C runtime's published values.
constexpr WORD fileKindMask = 0xF000;
constexpr WORD regularFile = 0x8000;

const ReasonText& TextFor(NoThumbnailReason reason) {
    return *std::find_if(texts.begin(), texts.end(), [=](const ReasonText& t) { return t.reason == reason; });
}

/// What the directory entry alone tells; nothing for a regular file with content.
std::optional<NoThumbnailReason> DiagnoseEntry(const std::wstring& path) {
    struct _stat64i32 status = {};
    if (path.empty())
        return Missing;
    if (_stat64i32(Utf8FromWide(path).c_str(), &status) != 0)
        return errno == EACCES ? Unreadable : Missing; // whether it is there is not to be learnt
    if ((status.st_mode & fileKindMask) != regularFile)
        return NotAFile;
    if (status.st_size == 0)
        return Empty;
    return std::nullopt;
}

NoThumbnailReason DiagnosePicture(const std::wstring& path) {
    Gdiplus::Bitmap bitmap(path.c_str(), /*useEmbeddedColorManagement=*/TRUE);
    const Gdiplus::Status opened = bitmap.GetLastStatus();
    return MeaningOf(opened == Gdiplus::Ok ? bitmap.ForceValidation() : opened, meaningOfStatus);
}

NoThumbnailReason DiagnosePdf(const std::wstring& path) {
    const PageRasterLib::Pdf document(Utf8FromWide(path));
    if (document.State() != PageRasterLib::PdfState::Readable)
        return MeaningOf(document.State(), meaningOfPdfState);
    int width = 0;
    int height = 0;
    if (!document.DefaultDimensions(1, width, height))
        return Damaged;
    Gdiplus::Bitmap page(width, height, PixelFormat32bppPARGB);
    if (const Gdiplus::Status made = page.GetLastStatus(); made != Gdiplus::Ok)
        return MeaningOf(made, meaningOfStatus);
    const std::unique_ptr<Gdiplus::Bitmap> drawn(GetThumbnailForPdf(path));
    return drawn ? NothingWrong : Damaged;
}

} // namespace

const char* WordForReason(NoThumbnailReason reason) {
    return TextFor(reason).word;
}

ThumbnailDiagnosis DiagnoseStillImage(const std::wstring& path) {
    std::optional<NoThumbnailReason> reason = DiagnoseEntry(path);
    if (!reason)
        reason = HasPdfExtension(path) ? DiagnosePdf(path) : DiagnosePicture(path);
    return {.reason = *reason,
            .sentence = '"' + Utf8FromWide(path) + "\" " + TextFor(*reason).predicate + '.'};
}

} // namespace KestoThumbnailer
