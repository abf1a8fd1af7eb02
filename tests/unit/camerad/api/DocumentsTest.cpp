// What a channel tells of its parameters: the style document as the library returns it, and metadata with the ranges that
// the driver has at this moment.
#include "apps/camerad/host/Machine.h"
#include "apps/camerad/host/SensorKeys.h"
#include "tests/unit/camerad/api/Stack.h"

#include <gmock/gmock.h>

#include <set>

namespace {

using nlohmann::json;

const char kWideDynamicRange[] = "/api/v1/channels/1/parameters/2368";

// A controller as a host makes it, on the device root that is there.
std::unique_ptr<ISensorController> controllerOf(simcam::Camera& p_objCamera) {
    auto pController = std::make_unique<ISensorController>();
    pController->setChannelID(1);
    pController->setVideoStreamModule(&p_objCamera.video());
    EXPECT_TRUE(pController->init(camerad::channelsOfMachine(1).front().objModule));
    return pController;
}

TEST(Documents, TheStyleIsAsTheLibraryReturnsIt) {
    std::string usual;
    std::string wide;
    {
        Stack stack;
        const auto client = stack.admin();
        usual = client->call("GET", "/api/v1/channels/1/style").body;
        client->json("PUT", kWideDynamicRange, R"({"value":1})");
        wide = client->call("GET", "/api/v1/channels/1/style").body;
    }
    Rig rig;  // the same camera anew, with a controller of the test's own
    const auto controller = controllerOf(rig.camera());
    EXPECT_EQ(usual, controller->getUIStyleFile());
    EXPECT_EQ(controller->setParameter(2368, 1, true), 0);
    EXPECT_EQ(wide, controller->getUIStyleFile());
    EXPECT_NE(usual, wide);  // the choices of the shutters are others
    controller->uinit();
}

// What the driver itself lists as having ranges that change.
std::vector<u32> dynamicCommands(int p_nChannel) {
    ia_dynamic_params_cmds_st stList{};
    EXPECT_EQ(ia_ioctrl_v2(p_nChannel - 1, IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, &stList), IA_OK);
    return {stList.cmd_list, stList.cmd_list + stList.cmd_cnt};
}

const json* parameterOf(const json& p_objMetadata, u32 p_nKey) {
    for (const json& tab : p_objMetadata.at("tabs")) {
        for (const json& group : tab.at("groups")) {
            for (const json& parameter : group.at("parameters")) {
                if (p_nKey == parameter.at("key")) {
                    return &parameter;
                }
            }
        }
    }
    return nullptr;
}

// The values that each listed key takes by the metadata, which must be the driver's.
std::map<u32, std::vector<int>> checkedChoices(StackClient& p_objClient, int p_nChannel) {
    const std::string channel = "/api/v1/channels/" + std::to_string(p_nChannel);
    const json metadata = p_objClient.json("GET", channel + "/metadata");
    std::map<u32, std::vector<int>> mapChoices;
    for (const u32 nKey : dynamicCommands(p_nChannel)) {
        SCOPED_TRACE("channel " + std::to_string(p_nChannel) + ", key " + std::to_string(nKey));
        ia_dynamic_params_attr_st stRange{};
        EXPECT_EQ(ia_ioctrl_v2(p_nChannel - 1, nKey, IA_CMD_OPT_GET_PARAM_RNAGE, &stRange), IA_OK);
        EXPECT_EQ(stRange.range_kind, 0);
        const std::vector<int> vecLegal(stRange.item, stRange.item + stRange.items_cnt);
        const json* const parameter = parameterOf(metadata, nKey);
        if (nullptr == parameter) {
            ADD_FAILURE() << "is not in the metadata";
            continue;
        }
        for (const json& choice : parameter->at("choices")) {
            mapChoices[nKey].push_back(choice.at("value").get<int>());
        }
        EXPECT_THAT(mapChoices[nKey], testing::ElementsAreArray(vecLegal));
        EXPECT_EQ(parameter->at("default"), stRange.default_val);
    }
    return mapChoices;
}

TEST(Documents, MetadataHasTheRangesOfTheDriver) {
    Stack stack("thermal");
    const auto client = stack.admin();
    const std::map<u32, std::vector<int>> before = checkedChoices(*client, 1);
    EXPECT_EQ(before.size(), 4U);
    checkedChoices(*client, 2);
    client->json("PUT", kWideDynamicRange, R"({"value":1})");
    const std::map<u32, std::vector<int>> after = checkedChoices(*client, 1);
    EXPECT_NE(before.at(camerad::kMaxShutter), after.at(camerad::kMaxShutter));
    checkedChoices(*client, 2);
}

// The host looks at these without a trace in the driver's calls, which asking for the list would leave each time.
TEST(Documents, TheHostLooksAtEveryRangeThatTheDriverLists) {
    Stack stack("thermal");
    for (const int channel : stack.rig().host().channels()) {
        std::vector<u32> vecLooked;
        for (const u32 nKey : camerad::kRangeKeys) {
            if (stack.rig().camera().driver().isSupported(channel - 1, nKey)) {
                vecLooked.push_back(nKey);
            }
        }
        EXPECT_THAT(vecLooked, testing::ElementsAreArray(dynamicCommands(channel))) << channel;
    }
}

}  // namespace
