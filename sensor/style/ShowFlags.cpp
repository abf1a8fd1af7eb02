#include "sensor/style/ShowFlags.h"

std::atomic<bool> g_bShoWBeawayFalg{true};

void setshowBeawayFalg(bool p_bShow) {
    g_bShoWBeawayFalg.store(p_bShow, std::memory_order_relaxed);
}

bool getshowBeawayFalg() {
    return g_bShoWBeawayFalg.load(std::memory_order_relaxed);
}
