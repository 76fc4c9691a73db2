#include "support/PdfFile.h"

#include <cstdio>
#include <vector>

namespace TestSupport {

namespace {

std::string tenDigits(std::size_t number) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%010zu", number);
    return digits;
}

} // namespace

std::string PdfFile::text() const {
    std::vector<std::string> objects = {
        "<< /Type /Catalog /Pages 2 0 R >>",
        pages == 0 ? "<< /Type /Pages /Kids [] /Count 0 >>" : "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 " + std::to_string(widthInPoints) + ' ' +
            std::to_string(heightInPoints) + "] /Resources << >> /Contents 4 0 R >>",
        "<< /Length " + std::to_string(content.size()) + " >>\nstream\n" + content + "\nendstream",
    };
    std::string trailer = " /Root 1 0 R";
    if (encrypted) {
        // Keys that no password of the usual kind yields.
        objects.push_back("<< /Filter /Standard /V 1 /R 2 /P -4 /O <" + std::string(64, 'A') + "> /U <" +
                          std::string(64, 'B') + "> >>");
        trailer += " /Encrypt 5 0 R /ID [<0123456789ABCDEF> <0123456789ABCDEF>]";
    }

    std::string file = "%PDF-1.4\n";
    std::string table = "0000000000 65535 f \n";
    for (std::size_t index = 0; index < objects.size(); ++index) {
        table += tenDigits(file.size()) + " 00000 n \n";
        file += std::to_string(index + 1) + " 0 obj\n" + objects[index] + "\nendobj\n";
    }
    const std::string size = std::to_string(objects.size() + 1);
    const std::size_t tableStart = file.size();
    return file + "xref\n0 " + size + '\n' + table + "trailer\n<< /Size " + size + trailer +
           " >>\nstartxref\n" + std::to_string(tableStart) + "\n%%EOF\n";
}

} // namespace TestSupport
