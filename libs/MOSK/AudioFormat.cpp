#include "platform/MOSK.h"

namespace MOSK {

AudioFormat AudioFormat::create16BitSignedInterleaved(int sampleRate, int channels) {
    return {sampleRate, channels};
}

} // namespace MOSK
