// The documents against the simulated driver: what they offer is legal there, so that applying a scheme never stops
// on the way.
#include "platform/Clock.h"
#include "platform/ImageAdjust.h"
#include "simcam/Camera.h"
#include "simcam/Commands.h"
#include "tests/unit/rootfs/Devices.h"
#include "tests/unit/rootfs/Documents.h"
#include "tests/unit/rootfs/KeyTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace {

using Values = std::map<int, int>;

// A camera on a clock that stands still: what starts moving goes on moving, which is the hardest case.
class SampleDriver : public testing::Test {
protected:
    SampleDriver() { platform::Clock::hold({}); }
    ~SampleDriver() override { platform::Clock::release(); }

    simcam::Camera m_camera;
};

int send(int p_nChannel, const KeyRow& p_stRow, int p_nValue, const Values& p_mapValues) {
    const auto companion = [&](int key) {
        const auto found = p_mapValues.find(key);
        return static_cast<u32>(key == p_stRow.key ? p_nValue : p_mapValues.end() == found ? 0 : found->second);
    };
    const u32 command = static_cast<u32>(p_stRow.command);
    if (Route::kWord == p_stRow.route) {
        return ia_ioctrl_v2(p_nChannel - 1, command, IA_CMD_OPT_SET, &p_nValue);
    }
    if (154 == p_stRow.key) {
        dn_thr_st record = {0, 0, companion(154)};
        return ia_ioctrl_v2(p_nChannel - 1, command, IA_CMD_OPT_SET, &record);
    }
    if (145 == p_stRow.key || 146 == p_stRow.key) {
        dn_thr_st record = {companion(145), companion(146), 0};
        return ia_ioctrl_v2(p_nChannel - 1, command, IA_CMD_OPT_SET, &record);
    }
    dn_time_st record = {companion(149), companion(150), companion(151), companion(152)};
    return ia_ioctrl_v2(p_nChannel - 1, command, IA_CMD_OPT_SET, &record);
}

// The factory set as the driver and the document make it together.
std::vector<std::pair<int, int>> factorySet(const Channel& p_stChannel) {
    std::vector<std::pair<int, int>> records;
    for (const Parameter& parameter : mergeFor(p_stChannel).style.parameters()) {
        if (!parameter.hasValue) {
            continue;
        }
        int value = parameter.value;
        const auto& dynamic = dynamicKeys();
        if (dynamic.end() != std::find(dynamic.begin(), dynamic.end(), parameter.id)) {
            ia_dynamic_params_attr_st range = {};
            EXPECT_EQ(IA_OK, ia_ioctrl_v2(p_stChannel.number - 1, static_cast<u32>(parameter.id),
                                          IA_CMD_OPT_GET_PARAM_RNAGE, &range));
            const std::vector<int> legal(range.item, range.item + range.items_cnt);
            const bool listed =
                82 != parameter.id && 100 != value && 0 != std::count(legal.begin(), legal.end(), value);
            value = 49 == parameter.id && 199 < value ? value - 200 : listed ? value : range.default_val;
        }
        records.emplace_back(parameter.id, value);
    }
    return records;
}

// Every value that the page can send for a parameter: its choices, or the ends and the middle of its range.
std::vector<int> valuesOf(const Parameter& p_stParameter) {
    std::vector<int> values;
    for (const Choice& choice : p_stParameter.choices) {
        values.push_back(numberIn(choice.index).value_or(-1));
    }
    for (const char* name : {"min", "max", "send"}) {
        if (p_stParameter.number(name)) {
            values.push_back(*p_stParameter.number(name));
        }
    }
    if ("switch" == p_stParameter.type) {
        values = {0, 1};
    }
    return values;
}

TEST_F(SampleDriver, TakesTheWholeFactorySetOfEveryChannel) {
    for (const Channel& channel : allChannels()) {
        m_camera.powerCycle();
        const auto records = factorySet(channel);
        const Values values(records.begin(), records.end());
        for (const auto& record : records) {
            const KeyRow* row = findKey(record.first);
            ASSERT_NE(nullptr, row) << record.first;
            if (Route::kNothing != row->route) {
                EXPECT_EQ(IA_OK, send(channel.number, *row, record.second, values))
                    << channel.name() << ": " << row->name << " = " << record.second;
            }
        }
    }
}

TEST_F(SampleDriver, TakesEveryValueThatADocumentOffers) {
    for (const Channel& channel : allChannels()) {
        for (const Parameter& parameter : mergeFor(channel).style.parameters()) {
            const KeyRow* row = findKey(parameter.id);
            ASSERT_NE(nullptr, row) << parameter;
            if (Use::kNotice != row->use) {
                EXPECT_FALSE(valuesOf(parameter).empty()) << parameter;
            }
            for (const int value : valuesOf(parameter)) {
                m_camera.powerCycle();
                if (Route::kNothing != row->route) {
                    EXPECT_EQ(IA_OK, send(channel.number, *row, value, {}))
                        << channel.name() << ": " << parameter << " = " << value;
                }
            }
        }
    }
}

TEST_F(SampleDriver, KnowsARangeAsWideAsTheDocumentsForKeysThatGoToTheVideoModule) {
    for (const Channel& channel : allChannels()) {
        for (const Parameter& parameter : mergeFor(channel).style.parameters()) {
            const simcam::CommandRow* known = simcam::findCommand(static_cast<u32>(parameter.id));
            if (8100 > parameter.id || nullptr == known) {
                continue;
            }
            for (const int value : valuesOf(parameter)) {
                EXPECT_LE(known->min, value) << channel.name() << ": " << parameter;
                EXPECT_GE(known->max, value) << channel.name() << ": " << parameter;
            }
        }
    }
}

TEST_F(SampleDriver, HasNoLegalValueOfADynamicCommandThatADocumentLeavesOut) {
    struct Mode {
        int wideRange;
        int framesPerSecond;
        int zoom;
    };
    for (const Channel& channel : allChannels()) {
        const std::vector<Parameter> parameters = mergeFor(channel).style.parameters();
        std::set<std::vector<int>> ranges;
        for (const Mode& mode : {Mode{0, 25, 16384}, Mode{1, 25, 16384}, Mode{0, 1, 16384}, Mode{0, 60, 31424}}) {
            m_camera.powerCycle();
            for (const auto& setting :
                 {std::make_pair(2368u, mode.wideRange), std::make_pair(2464u, mode.framesPerSecond),
                  std::make_pair(1568u, mode.zoom)}) {
                int value = setting.second;
                ASSERT_EQ(IA_OK, ia_ioctrl_v2(channel.number - 1, setting.first, IA_CMD_OPT_SET, &value));
            }
            platform::Clock::advance(60'000'000);  // until the zoom motor stands
            for (const int key : dynamicKeys()) {
                ia_dynamic_params_attr_st range = {};
                ASSERT_EQ(IA_OK,
                          ia_ioctrl_v2(channel.number - 1, static_cast<u32>(key), IA_CMD_OPT_GET_PARAM_RNAGE, &range));
                ranges.emplace(range.item, range.item + range.items_cnt);
                const Parameter* parameter = findParameter(parameters, key);
                ASSERT_NE(nullptr, parameter) << channel.name() << " " << key;
                if (49 == key && 199 < parameter->value) {
                    continue;  // the style's own choices, on purpose
                }
                for (int i = 0; i < range.items_cnt; ++i) {
                    EXPECT_TRUE(parameter->offers(range.item[i]))
                        << channel.name() << ": " << *parameter << " lacks " << range.item[i];
                }
            }
        }
        EXPECT_LE(7u, ranges.size()) << "the modes do not change the ranges";
    }
}

TEST_F(SampleDriver, ListsTheDynamicCommandsThatTheDocumentsExpect) {
    for (int channel = 0; channel < 2; ++channel) {
        ia_dynamic_params_cmds_st list = {};
        ASSERT_EQ(IA_OK, ia_ioctrl_v2(channel, IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, &list));
        EXPECT_EQ(dynamicKeys(), std::vector<int>(list.cmd_list, list.cmd_list + list.cmd_cnt));
    }
}

}  // namespace
