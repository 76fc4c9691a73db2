#include "ls/ContainerReport.h"

#include "Paths.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <span>

namespace KestoHost {

namespace {

using Json = nlohmann::ordered_json;
using Row = std::vector<std::string>;

enum class Align { Left, Right };
struct Column {
    const char* title;
    Align align;
};

constexpr Column memberColumns[] = {{"NAME", Align::Left},
                                    {"KIND", Align::Left},
                                    {"ROLE", Align::Left},
                                    {"FORMAT", Align::Left},
                                    {"SIZE", Align::Right}};
constexpr Column trackColumns[] = {{"TRACK", Align::Right},  {"KIND", Align::Left},
                                   {"ROLE", Align::Left},    {"FORMAT", Align::Left},
                                   {"PICTURE", Align::Left}, {"DURATION", Align::Right}};

const char* wordFor(ContainerKind kind) {
    switch (kind) {
    case ContainerKind::Compound:
        return "plumex";
    case ContainerKind::Recording:
        return "mosk";
    case ContainerKind::Movie:
        return "mp4";
    }
    return "";
}

bool hasPicture(const ContainerPart& part) {
    return part.width > 0 && part.height > 0;
}

/// What a terminal may show.
std::string printable(const std::string& text) {
    std::wstring shown = wideWithReplacements(text);
    const auto isControl = [](wchar_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); };
    std::replace_if(shown.begin(), shown.end(), isControl, L'\uFFFD');
    return utf8FromWide(shown);
}

std::string orDash(const std::string& text) {
    return text.empty() ? "-" : printable(text);
}

Row memberRow(const ContainerPart& part) {
    return {orDash(part.name), orDash(part.kind), orDash(part.role), orDash(part.format),
            part.size ? std::to_string(*part.size) : "-"};
}

Row trackRow(const ContainerPart& part, std::size_t index) {
    return {std::to_string(index),
            orDash(part.kind),
            orDash(part.role),
            orDash(part.format),
            hasPicture(part) ? fmt::format("{}x{}", part.width, part.height) : "-",
            part.seconds ? fmt::format("{:.3f}", *part.seconds) : "-"};
}

/// In characters; combining ones and wide ones are not told apart.
std::size_t widthOf(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string lineOf(const Row& row, std::span<const Column> columns, const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t column = 0; column < row.size(); ++column) {
        const std::string padding(widths[column] - widthOf(row[column]), ' ');
        const bool isRight = columns[column].align == Align::Right;
        line += isRight ? padding + row[column] : row[column] + padding;
        line += "  ";
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

std::string tableOf(std::span<const Column> columns, const std::vector<Row>& rows) {
    Row titles;
    std::vector<std::size_t> widths;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        titles.emplace_back(columns[column].title);
        widths.push_back(titles.back().size());
        for (const Row& row : rows)
            widths[column] = std::max(widths[column], widthOf(row[column]));
    }
    std::string text = lineOf(titles, columns, widths);
    for (const Row& row : rows)
        text += lineOf(row, columns, widths);
    return text;
}

Json textOrNull(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

Json memberObject(const ContainerPart& part) {
    return {{"name", part.name},
            {"kind", part.kind},
            {"role", textOrNull(part.role)},
            {"format", textOrNull(part.format)},
            {"size", part.size ? Json(*part.size) : Json()}};
}

Json trackObject(const ContainerPart& part, std::size_t index) {
    return {{"index", index},
            {"kind", part.kind},
            {"role", textOrNull(part.role)},
            {"format", textOrNull(part.format)},
            {"width", hasPicture(part) ? Json(part.width) : Json()},
            {"height", hasPicture(part) ? Json(part.height) : Json()},
            {"duration", part.seconds ? Json(std::round(*part.seconds * 1e6) / 1e6) : Json()}};
}

} // namespace

std::string tableText(const ContainerContents& contents) {
    std::vector<Row> rows;
    const bool hasMembers = contents.kind == ContainerKind::Compound;
    for (const ContainerPart& part : contents.parts)
        rows.push_back(hasMembers ? memberRow(part) : trackRow(part, rows.size()));
    return hasMembers ? tableOf(memberColumns, rows) : tableOf(trackColumns, rows);
}

std::string jsonText(const ContainerContents& contents) {
    Json object = {{"input", contents.input}};
    if (contents.failure) {
        object["reason"] = contents.failure->reason;
        object["message"] = contents.failure->message;
    } else {
        const bool hasMembers = contents.kind == ContainerKind::Compound;
        Json parts = Json::array();
        for (const ContainerPart& part : contents.parts)
            parts.push_back(hasMembers ? memberObject(part) : trackObject(part, parts.size()));
        object["container"] = wordFor(contents.kind);
        object[hasMembers ? "members" : "tracks"] = std::move(parts);
    }
    return object.dump(2, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

} // namespace KestoHost
