// The keys that a style may name, as the tests of the sample device tree know them: a list of their own, so that a slip
// in the library's table does not excuse one in a document.
#pragma once

#include <vector>

enum class Route {
    kWord,     // the value goes to the driver as one 32-bit word
    kRecord,   // the driver gets a record made of several keys
    kNothing,  // the driver never sees it
};

enum class Use {
    kStored,     // a setting: part of every scheme, so its element carries "value"
    kMomentary,  // an action or a position: sent when asked for, in no scheme, so no "value"
    kNotice,     // stands in the document while a function is not offered; no "value"
    kInternal,   // not for a user: in no document
};

struct KeyRow {
    int key;
    int command;  // 0 where the driver never sees the key
    Route route;
    Use use;
    const char* name;
};

const std::vector<KeyRow>& allKeys();

// Null when there is no such key.
const KeyRow* findKey(int p_nKey);

// A light key and the key that takes its place while the light is intelligent.
struct LightPair {
    int base;
    int intelligent;
};
const std::vector<LightPair>& lightPairs();

// The commands whose choices and default the driver decides when it is asked.
const std::vector<int>& dynamicKeys();
