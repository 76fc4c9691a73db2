#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Writes a PDF document (ISO 32000-1) object by object. Objects 1 and 2 are the catalog and the page tree's
/// root; `add` numbers the others from 3.
class PdfBuilder {
public:
    /// Appends an object and gives its number.
    int add(std::string object);
    int addStream(const std::string& dictionaryEntries, const std::string& content);
    /// The page is the last one so far. `entries` are further entries of its dictionary, such as its boxes.
    PdfBuilder& page(const std::string& entries, const std::string& content = "",
                     const std::string& resources = "");
    /// In place of the page tree's root that the pages would make.
    PdfBuilder& pageTreeRoot(std::string object);
    PdfBuilder& catalog(std::string object);

    std::string bytes() const;

private:
    std::string catalogObject = "<< /Type /Catalog /Pages 2 0 R >>";
    std::string rootObject;
    std::vector<std::string> others;
    std::vector<int> pages;
};

std::string stream(const std::string& dictionaryEntries, const std::string& content);
/// `2 0 R`
std::string reference(int number);
/// A page of that size in points, 1/72 inch each.
std::string mediaBox(int width, int height);
