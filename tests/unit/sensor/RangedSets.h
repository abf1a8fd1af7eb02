// A controller whose driver offers ranges.
#pragma once

#include "tests/unit/sensor/SmallSets.h"

#include <numeric>
#include <vector>

class RangedSets : public SmallSets {
protected:
    static constexpr u32 kRange = IA_CMD_OPT_GET_PARAM_RNAGE;

    void driverOffers(u32 p_nCmd, int p_nDefault, const std::vector<int>& p_vecItems) {
        camera.dynamicCommands({34, p_nCmd});
        camera.range(p_nCmd, RecordingCamera::rangeOf(p_nDefault, p_vecItems));
    }

    static std::vector<int> counting(std::size_t p_nItems) {
        std::vector<int> vecItems(p_nItems);
        std::iota(vecItems.begin(), vecItems.end(), 1000);
        return vecItems;
    }
};
