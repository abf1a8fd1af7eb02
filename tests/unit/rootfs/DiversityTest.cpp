// What the merge needs from the diversity documents, and what the sample devices make of them.
#include "tests/unit/rootfs/Devices.h"
#include "tests/unit/rootfs/Documents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace {

constexpr std::size_t kFieldBuffer = 9;  // characters of a detail value that the merge can take
constexpr std::size_t kCompared = 5;     // characters that it compares

std::string pathOf(const std::string& p_strKind) {
    return "/hd1/moduleConfig/sensorConfig/styleDiversity/StyleDiversity" + p_strKind + ".xml";
}

std::vector<const TiXmlElement*> blocksOf(const StyleDocument& p_stDocument) {
    std::vector<const TiXmlElement*> blocks;
    for (auto block = p_stDocument.xml->FirstChildElement(); nullptr != block; block = block->NextSiblingElement()) {
        blocks.push_back(block);
    }
    return blocks;
}

// The values that documents and devices know of each field.
std::map<std::string, std::set<std::string>> knownValues() {
    std::map<std::string, std::set<std::string>> values;
    for (const char* kind : {"", "_dome", "_Thermal"}) {
        const StyleDocument document = loadStyle(pathOf(kind));
        for (const TiXmlElement* block : blocksOf(document)) {
            for (auto field = block->FirstAttribute(); nullptr != field; field = field->Next()) {
                for (const std::string& value : splitAt(field->Value(), ',')) {
                    values[field->Name()].insert(value);
                }
            }
        }
    }
    for (const Channel& channel : allChannels()) {
        for (auto& field : values) {
            std::string value;
            if (detailField(channel.module.getDetail(), field.first, value)) {
                field.second.insert(value);
            }
        }
    }
    return values;
}

class DiversityDocuments : public testing::TestWithParam<std::string> {
protected:
    const StyleDocument m_document = loadStyle(pathOf(GetParam()));
    const StyleDocument m_style = loadStyle("/hd1/moduleConfig/sensorConfig/style/Style" + GetParam() + ".xml");
};

TEST_P(DiversityDocuments, HoldSeveralBlocksEachWithAConditionAndAnOperation) {
    EXPECT_LE(2u, blocksOf(m_document).size());
    for (const TiXmlElement* block : blocksOf(m_document)) {
        EXPECT_NE(nullptr, block->FirstAttribute()) << block->ValueStr();
        EXPECT_NE(nullptr, block->FirstChildElement()) << block->ValueStr();
    }
}

TEST_P(DiversityDocuments, HaveOperationsThatNameATabAndCarryExactlyWhatTheyNeed) {
    std::set<std::string> tabs;
    for (const TiXmlElement* tab : m_style.tabs()) {
        tabs.insert(attributeOf(*tab, "key"));
    }
    for (const TiXmlElement* block : blocksOf(m_document)) {
        for (auto step = block->FirstChildElement(); nullptr != step; step = step->NextSiblingElement()) {
            const std::string where = block->ValueStr() + ": " + step->ValueStr() + " " + attributeOf(*step, "tab_key");
            EXPECT_EQ(1u, tabs.count(attributeOf(*step, "tab_key"))) << where;
            const TiXmlElement* tab = step->FirstChildElement();
            if ("Delete" == step->ValueStr()) {
                EXPECT_EQ(nullptr, tab) << where;
                continue;
            }
            ASSERT_TRUE("Modify" == step->ValueStr() || "AddAfter" == step->ValueStr()) << where;
            ASSERT_NE(nullptr, tab) << where;
            EXPECT_EQ(nullptr, tab->NextSiblingElement()) << where;
            EXPECT_EQ("tab", tab->ValueStr()) << where;
            if ("Modify" == step->ValueStr()) {
                EXPECT_EQ(attributeOf(*step, "tab_key"), attributeOf(*tab, "key")) << where;
            } else {
                tabs.insert(attributeOf(*tab, "key"));
            }
        }
    }
}

TEST_P(DiversityDocuments, LeaveTheScheduleAlone) {
    for (const TiXmlElement* block : blocksOf(m_document)) {
        for (auto step = block->FirstChildElement(); nullptr != step; step = step->NextSiblingElement()) {
            EXPECT_FALSE("AddAfter" != step->ValueStr() && "scheme" == attributeOf(*step, "tab_key"))
                << block->ValueStr();
        }
    }
}

TEST_P(DiversityDocuments, HaveConditionsThatFitTheFieldBuffer) {
    for (const TiXmlElement* block : blocksOf(m_document)) {
        for (auto field = block->FirstAttribute(); nullptr != field; field = field->Next()) {
            for (const std::string& value : splitAt(field->Value(), ',')) {
                EXPECT_NE("", value) << block->ValueStr() << " " << field->Name();
                EXPECT_LE(value.size(), kFieldBuffer) << block->ValueStr() << " " << field->Name();
                EXPECT_EQ(std::string::npos, value.find_first_of(" ()=")) << block->ValueStr() << " " << value;
            }
        }
    }
}

TEST_P(DiversityDocuments, HaveNoBlockThatNoDeviceTakes) {
    std::set<std::string> taken;
    for (const Channel& channel : allChannels()) {
        if (channel.diversityPath == pathOf(GetParam())) {
            for (const std::string& block : mergeFor(channel).blocks) {
                taken.insert(block);
            }
        }
    }
    std::set<std::string> names;
    for (const TiXmlElement* block : blocksOf(m_document)) {
        EXPECT_TRUE(names.insert(block->ValueStr()).second) << block->ValueStr() << " twice";
    }
    EXPECT_EQ(names, taken);
}

INSTANTIATE_TEST_SUITE_P(Sample, DiversityDocuments, testing::Values("", "_dome", "_Thermal"), [](const auto& row) {
    return row.param.empty() ? std::string("Camera") : row.param.substr(1);
});

TEST(DiversityConditions, KnowValuesThatDifferWithinTheCharactersThatAreCompared) {
    for (const auto& field : knownValues()) {
        std::set<std::string> starts;
        for (const std::string& value : field.second) {
            EXPECT_TRUE(starts.insert(value.substr(0, kCompared)).second) << field.first << " " << value;
        }
    }
}

TEST(DiversityConditions, UseFieldNamesThatPlainSearchCannotMistake) {
    for (const auto& field : knownValues()) {
        for (const Channel& channel : allChannels()) {
            const std::string& detail = channel.module.getDetail();
            const std::size_t group = detail.find("(" + field.first + "=");
            const std::size_t first = detail.find(field.first);
            EXPECT_EQ(std::string::npos == group ? group : group + 1, first) << field.first << " in " << detail;
        }
    }
}

TEST(DiversityConditions, ShowAListOfValuesAndAChoiceOfFields) {
    bool list = false;
    bool fields = false;
    for (const char* kind : {"", "_dome", "_Thermal"}) {
        const StyleDocument document = loadStyle(pathOf(kind));
        for (const TiXmlElement* block : blocksOf(document)) {
            const TiXmlAttribute* first = block->FirstAttribute();
            ASSERT_NE(nullptr, first);
            list = list || std::string::npos != std::string(first->Value()).find(',');
            fields = fields || nullptr != first->Next();
        }
    }
    EXPECT_TRUE(list);
    EXPECT_TRUE(fields);
}

TEST(DiversityOfDevices, FindsTheTabOfEveryOperation) {
    for (const Channel& channel : allChannels()) {
        for (const std::string& missed : mergeFor(channel).missed) {
            ADD_FAILURE() << channel.name() << ": " << missed;
        }
    }
}

TEST(DiversityOfDevices, LeavesNoLightWhereThereIsNone) {
    for (const Channel& channel : allChannels()) {
        if (std::string::npos == channel.module.getDetail().find("(isInfrared=0)")) {
            continue;
        }
        EXPECT_FALSE(mergeFor(channel).style.holds(160)) << channel.name();
    }
}

TEST(DiversityOfDevices, OffersOnPanoramasAsManySensorsAsAreStitched) {
    for (const Channel& channel : allChannels()) {
        std::string sensors;
        if (!detailField(channel.module.getDetail(), "stitch", sensors)) {
            continue;
        }
        const StyleDocument style = mergeFor(channel).style;
        for (int sensor = 1; sensor <= 4; ++sensor) {
            EXPECT_EQ(sensor <= numberIn(sensors).value_or(0), style.holds(9001 + 100 * sensor))
                << channel.name() << " sensor " << sensor;
        }
    }
}

}  // namespace
