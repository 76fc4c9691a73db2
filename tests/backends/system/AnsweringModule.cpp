#include "platform/Export.h"

/// What the tests look for in a module that they load.
extern "C" KESTO_EXPORT int kestoAnswer() {
    return 42;
}
