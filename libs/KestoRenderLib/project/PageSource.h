#pragma once

#include "KestoRenderLib/project/PictureSource.h"

#include "platform/PageRasterLib.h"

#include <string>

namespace KestoRenderLib {

/// A page of a document. What was drawn last is kept.
class PageSource : public IPictureSource {
public:
    /// Opens the document, whose `path` is UTF-8; pages count from 1. A page that is not there has no size.
    PageSource(const std::string& path, int page);

    KestoRenderLib::Size size() const override { return natural; }
    boost::shared_ptr<MetaBitmap> picture(const KestoRenderLib::Size& wanted) override;

private:
    PageRasterLib::Pdf document;
    int number;
    KestoRenderLib::Size natural;
    boost::shared_ptr<MetaBitmap> made;
};

} // namespace KestoRenderLib
