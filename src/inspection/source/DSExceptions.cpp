#include "inspection/source/DSExceptions.h"

DSMediaDetException::DSMediaDetException(const std::string& message)
    : text(message) {}

const char* DSMediaDetException::what() const noexcept {
    return text.c_str();
}

DSInvalidParameterException::DSInvalidParameterException(const std::string& message)
    : DSMediaDetException("DSInvalidParameterException: " + message) {}

DSPointerException::DSPointerException(const std::string& message)
    : DSMediaDetException("DSPointerException: " + message) {}

DSHresultException::DSHresultException(const std::string& message, HRESULT result)
    : DSMediaDetException("DSHresultException: " + message + " ErrorMessage(" + std::to_string(result) +
                          ")") {}

DSGdiPlusStatusException::DSGdiPlusStatusException(const std::string& message, int status)
    : DSMediaDetException("DSGdiPlusStatusException: " + message +
                          " (Gdiplus Status: " + std::to_string(status) + ")") {}

const char* MP4ParseException::what() const noexcept {
    return "";
}
