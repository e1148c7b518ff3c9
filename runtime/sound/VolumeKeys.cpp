#include "VolumeKeys.hpp"

#include <algorithm>

namespace port {

bool applyVolumeKey(AudioSystem& audio, int virtualKey) {
    const auto* row = std::ranges::find(kVolumeKeys, virtualKey, &VolumeKey::key);
    if (row == kVolumeKeys.end()) return false;
    (audio.*row->setVolume)((audio.*row->volume)() + row->step);
    return true;
}

}  // namespace port
