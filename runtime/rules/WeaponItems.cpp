#include "WeaponItems.hpp"

#include "ModelFacts.hpp"
#include "TextFields.hpp"

namespace port {

bool isThrowable(const generated::Character& item) {
    return containsFolded(item.subtype, "project") || *item.projectModel != '\0';
}

bool canBePickedUp(const generated::Character& item) {
    return openborTypeBit(&item) == kTypeItem &&
           (item.weaponNumber > 0 || item.reloadAmount > 0 || isThrowable(item) ||
            containsFolded(item.subtype, "weapon"));
}

}  // namespace port
