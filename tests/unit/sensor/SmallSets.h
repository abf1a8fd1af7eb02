// A controller with two small user schemes, whose windows can be stored, and what there is of them on flash.
#pragma once

#include "tests/unit/sensor/ControllerTest.h"

#include <cstring>
#include <string>
#include <vector>

class SmallSets : public ControllerTest {
protected:
    static constexpr u32 kFactory = 2;  // the number of user schemes is that of the factory set

    static std::vector<KeyVal> records() {
        return {{KEY_SCHEME_MODE, 0},      {KEY_SCHEME_START_HOUR, 8}, {KEY_SCHEME_START_MIN, 0},
                {KEY_SCHEME_END_HOUR, 20}, {KEY_SCHEME_END_MIN, 30},   {KEY_BRIGHTNESS, 50},
                {KEY_CONTRAST, 128},       {KEY_MAX_SHUTTER, 200},     {KEY_IRIS_UP, 0}};
    }
    // These records as text.
    static std::string text() { return "(8000,0)(8001,8)(8002,0)(8003,20)(8004,30)(34,50)(2353,128)(49,200)(17,0)"; }

    SmallSets() { build(kFactory, records()); }

    // As if the host had chosen no scheme yet.
    void applyNoScheme() { probe.setCurScheme(-1); }

    void cached(u32 p_nScheme, u32 p_nKey, u32 p_nValue) {
        ASSERT_NE(-1, probe.setKeyValToCache(p_nScheme, p_nKey, p_nValue, true));
    }

    static std::vector<KeyVal> with(std::vector<KeyVal> p_vecRecords, u32 p_nKey, u32 p_nValue) {
        for (KeyVal& stRecord : p_vecRecords) {
            stRecord.value = stRecord.key == p_nKey ? p_nValue : stRecord.value;
        }
        return p_vecRecords;
    }

    // A parameter file, byte for byte: each record's key and value, the lowest byte first.
    static std::string fileOf(const std::vector<KeyVal>& p_vecRecords) {
        std::string strFile;
        for (const KeyVal& stRecord : p_vecRecords) {
            for (const u32 nWord : {stRecord.key, stRecord.value}) {
                for (int nShift = 0; nShift < 32; nShift += 8) {
                    strFile += static_cast<char>(static_cast<unsigned char>(nWord >> nShift));
                }
            }
        }
        return strFile;
    }

    // What a scheme's set holds in memory, as the file that would be stored.
    std::string setAsFile(u32 p_nScheme) {
        return fileOf({probe.set(p_nScheme), probe.set(p_nScheme) + probe.keyValSum()});
    }

    static std::string parameterFile(u32 p_nScheme, const std::string& p_strKind = "sensor") {
        return "/mnt/mtd/code/config_file/" + p_strKind + std::to_string(p_nScheme) + ".cfg";
    }

    // Fills the scratch set with a value of its own in every record, under the keys of the sets.
    void fillScratch(u32 p_nValue) {
        for (u32 i = 0; i < probe.keyValSum(); ++i) {
            probe.scratch()[i] = {probe.set(0)[i].key, p_nValue};
        }
    }

    // What a controller says, at level 6, to an operation that needs its sets and finds none.
    static std::string refused(const std::string& p_strOperation) {
        return messages::error(in("isReady"), p_strOperation + ": the controller is not initialised\n");
    }

    // What a driver does that takes a number for one of its records: it fills the largest of them.
    static int fillLargestRecord(int, void* p_pData) {
        std::memset(p_pData, 0x5A, sizeof(ia_dynamic_params_attr_st));
        return IA_OK;
    }
    static constexpr int kFilled = 0x5A5A5A5A;

    void lockLens() {
        SensorZoomFocusParam objParam;
        objParam.setLockZoomFocusEnable(true);
        controller.setSensorZoomFocusParam(objParam);
    }

    // What the second lock of one thread makes the process say before it ends.
    static constexpr char kLockedTwice[] =
        "QVMutex: locked a second time at ISensorController.cpp:[0-9]+ by the thread that locked it at the test:7";
};
