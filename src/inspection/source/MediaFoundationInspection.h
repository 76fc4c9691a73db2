#pragma once

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

class WindowsVersionProvider;

/// Whether Media Foundation is to tell what a file holds, rather than a filter graph. `reserved1` is not
/// read. A null `versionProvider` means no, but for `.mov` files of PNG pictures, whose headers are read for
/// this.
bool UseMediaFoundationInspection(const std::wstring& path, std::int32_t reserved1,
                                  const boost::shared_ptr<WindowsVersionProvider>& versionProvider);
