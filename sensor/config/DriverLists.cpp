#include "sensor/config/DriverLists.h"

#include "sensor/diag/Message.h"

namespace {

constexpr char kSourceFile[] = "DriverLists.cpp";

int contained(int p_nClaimed, int p_nMost, const char* p_szWhat) {
    if (p_nClaimed >= 0 && p_nClaimed <= p_nMost) {
        return p_nClaimed;
    }
    SENSOR_ERR("driver claims %d %s, the record holds 0 to %d\n", p_nClaimed, p_szWhat, p_nMost);
    return p_nClaimed < 0 ? 0 : p_nMost;
}

}  // namespace

int dynamicCommandCount(const ia_dynamic_params_cmds_st& p_stList) {
    return contained(p_stList.cmd_cnt, IA_DYNAMIC_CMDS_MAX, "dynamic commands");
}

int dynamicItemCount(const ia_dynamic_params_attr_st& p_stRange) {
    return contained(p_stRange.items_cnt, IA_DYNAMIC_ITEMS_MAX, "range items");
}
