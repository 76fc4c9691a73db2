#include "PageRasterLib/poppler/PageTree.h"

#include <Object.h>
#include <PDFDoc.h>
#include <XRef.h>

#include <algorithm>
#include <vector>

namespace PageRasterLib {

namespace {

// Trees have a handful of levels and nodes with a handful to some hundred children; steps are counted on top
// of the pages that must be passed.
constexpr int stepsBesidePages = 20'000;
constexpr std::size_t deepestTree = 1'000;

struct Node {
    Object kids;
    int next = 0;
    int number = 0; ///< of the object
};

Object rootOf(PDFDoc& document) {
    Object catalog = document.getXRef()->getCatalog();
    return catalog.isDict() ? catalog.dictLookup("Pages") : Object(objNull);
}

bool isInner(const Object& node) {
    return node.isDict() && !node.isDict("Page") && node.getDict()->hasKey("Kids");
}

/// Passes to the next child; null for one that is met again on the way down, as poppler skips it.
Object takeChild(std::vector<Node>& path, int& number) {
    Node& node = path.back();
    const int index = node.next++;
    const Object& reference = node.kids.arrayGetNF(index);
    number = reference.isRef() ? reference.getRefNum() : -1;
    const bool isLoop =
        std::any_of(path.begin(), path.end(), [number](const Node& above) { return above.number == number; });
    return isLoop ? Object(objNull) : node.kids.arrayGet(index);
}

} // namespace

bool pageIsInReach(PDFDoc& document, int page) {
    Object root = rootOf(document);
    if (!root.isDict())
        return false;
    if (root.isDict("Page"))
        return page == 1;
    std::vector<Node> path;
    path.push_back({root.dictLookup("Kids"), 0, -1});
    int pages = 0;
    for (int steps = 0; steps < stepsBesidePages + pages && !path.empty(); ++steps) {
        Node& node = path.back();
        if (!node.kids.isArray() || node.next >= node.kids.arrayGetLength()) {
            path.pop_back();
            continue;
        }
        int number = 0;
        Object child = takeChild(path, number);
        if (isInner(child)) {
            if (path.size() >= deepestTree)
                return false;
            path.push_back({child.dictLookup("Kids"), 0, number});
        } else if (child.isDict() && ++pages == page) {
            return true;
        }
    }
    return false;
}

bool saysNoPages(PDFDoc& document) {
    Object root = rootOf(document);
    if (!root.isDict())
        return false;
    const Object count = root.dictLookup("Count");
    return count.isInt() && count.getInt() == 0;
}

} // namespace PageRasterLib
