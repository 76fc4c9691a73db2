#include "PdfBuilder.h"

#include <cstdio>

namespace {

std::string tableLine(std::size_t offset) {
    char line[32];
    std::snprintf(line, sizeof line, "%010zu 00000 n \n", offset);
    return line;
}

} // namespace

std::string stream(const std::string& dictionaryEntries, const std::string& content) {
    return "<< /Length " + std::to_string(content.size()) + " " + dictionaryEntries + " >>\nstream\n" +
           content + "\nendstream";
}

std::string reference(int number) {
    return std::to_string(number) + " 0 R";
}

std::string mediaBox(int width, int height) {
    return "/MediaBox [0 0 " + std::to_string(width) + " " + std::to_string(height) + "]";
}

int PdfBuilder::add(std::string object) {
    others.push_back(std::move(object));
    return static_cast<int>(others.size()) + 2;
}

int PdfBuilder::addStream(const std::string& dictionaryEntries, const std::string& content) {
    return add(stream(dictionaryEntries, content));
}

PdfBuilder& PdfBuilder::page(const std::string& entries, const std::string& content,
                             const std::string& resources) {
    const int contents = addStream("", content);
    pages.push_back(add("<< /Type /Page /Parent 2 0 R /Contents " + reference(contents) + " /Resources << " +
                        resources + " >> " + entries + " >>"));
    return *this;
}

PdfBuilder& PdfBuilder::pageTreeRoot(std::string object) {
    rootObject = std::move(object);
    return *this;
}

PdfBuilder& PdfBuilder::catalog(std::string object) {
    catalogObject = std::move(object);
    return *this;
}

std::string PdfBuilder::bytes() const {
    std::string kids;
    for (const int page : pages)
        kids += reference(page) + " ";
    std::vector<std::string> objects = {catalogObject, !rootObject.empty()
                                                           ? rootObject
                                                           : "<< /Type /Pages /Kids [ " + kids + "] /Count " +
                                                                 std::to_string(pages.size()) + " >>"};
    objects.insert(objects.end(), others.begin(), others.end());

    std::string file = "%PDF-1.7\n";
    std::string table = "0000000000 65535 f \n";
    for (std::size_t index = 0; index < objects.size(); ++index) {
        table += tableLine(file.size());
        file += std::to_string(index + 1) + " 0 obj\n" + objects[index] + "\nendobj\n";
    }
    const std::string count = std::to_string(objects.size() + 1);
    const std::string tableStart = std::to_string(file.size());
    return file + "xref\n0 " + count + "\n" + table + "trailer\n<< /Size " + count +
           " /Root 1 0 R >>\nstartxref\n" + tableStart + "\n%%EOF\n";
}
