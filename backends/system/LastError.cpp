#include "platform/LastError.h"

namespace {

constinit thread_local DWORD lastError = NO_ERROR;

} // namespace

extern "C" {

DWORD GetLastError() {
    return lastError;
}

void SetLastError(DWORD error) {
    lastError = error;
}

} // extern "C"
