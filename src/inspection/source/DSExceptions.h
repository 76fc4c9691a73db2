#pragma once

#include "platform/WinTypes.h"

#include <exception>
#include <string>

/// What reading and decoding of media fails with. All are thrown by value; the text is composed once.
class DSMediaDetException : public std::exception {
public:
    explicit DSMediaDetException(const std::string& message);

    const char* what() const noexcept override;

private:
    std::string text;
};

class DSInvalidParameterException : public DSMediaDetException {
public:
    explicit DSInvalidParameterException(const std::string& message);
};

class DSPointerException : public DSMediaDetException {
public:
    explicit DSPointerException(const std::string& message);
};

class DSHresultException : public DSMediaDetException {
public:
    DSHresultException(const std::string& message, HRESULT result);
};

class DSGdiPlusStatusException : public DSMediaDetException {
public:
    /// `status` is a `Gdiplus::Status`.
    DSGdiPlusStatusException(const std::string& message, int status);
};

/// A signal within the readers of MP4 files, whose callers catch it: it has no text and is none of the
/// family.
class MP4ParseException : public std::exception {
public:
    const char* what() const noexcept override;
};
