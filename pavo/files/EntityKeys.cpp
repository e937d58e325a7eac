#include "files/EntityKeys.h"

namespace pavo::files::entitykeys {

const KeyTable& entityKeys() {
    static const KeyTable keys{"t",   "h",    "l",  "c",   "lt",  "lts",    "lw", "ps", "tr",      "m",
                               "inv", "s",    "e",  "p",   "r",   "sa",     "ea", "v",  "closed",  "elev",
                               "w",   "txt",  "ht", "rot", "tag", "prompt", "b",  "sc", "attribs", "n",
                               "off", "lock", "vc", "vh",  "vt",  "vd",     "tw", "fl"};
    return keys;
}

} // namespace pavo::files::entitykeys
