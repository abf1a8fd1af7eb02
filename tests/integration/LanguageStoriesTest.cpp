// The story of a host that brings the user interface's languages along.
#include "sensor/LanguageDocuments.h"
#include "tests/integration/Story.h"

namespace {

class LanguageStory : public Story {
protected:
    std::string common(Channel& p_objChannel, int p_nLanguage) {
        return host("getUICommonFile " + std::to_string(p_nLanguage),
                    [&] { return p_objChannel.controller.getUICommonFile(p_nLanguage); });
    }
    std::string language(Channel& p_objChannel, int p_nLanguage) {
        return host("getUILanguageFile " + std::to_string(p_nLanguage),
                    [&] { return p_objChannel.controller.getUILanguageFile(p_nLanguage); });
    }
    void expectBoth(Channel& p_objChannel) {
        EXPECT_EQ("<common>two</common>", common(p_objChannel, 2));
        EXPECT_EQ("<language>zwei, \xC3\xA4\xC3\xB6\xC3\xBC</language>", language(p_objChannel, 2));
        EXPECT_EQ("<common>one</common>", common(p_objChannel, 1));
        EXPECT_EQ("<language>one</language>", language(p_objChannel, 77)) << "of the first language";
    }

    const std::vector<LanguageDocuments> vecBoth = {
        {1, "<language>one</language>", "<common>one</common>"},
        {2, "<language>zwei, \xC3\xA4\xC3\xB6\xC3\xBC</language>", "<common>two</common>"},
    };
};

TEST_F(LanguageStory, DocumentsOfAHostOutliveRestartAndReset) {
    ASSERT_NO_FATAL_FAILURE(layOut("infrared"));
    const auto pChannel = channel(0);
    EXPECT_TRUE(host("setLanguageDocuments, languages 1 and 2, before init",
                     [&] { return pChannel->controller.setLanguageDocuments(vecBoth); }));
    untold([&] { pChannel->init(); });
    expectBoth(*pChannel);
    untold([&] { pChannel->controller.resetParameters(); });
    world("the camera has gone back to its factory settings", [] {});
    expectBoth(*pChannel);
    uinit(*pChannel);
    untold([&] { pChannel->init(); });
    world("the controller has been released and initialised again", [] {});
    expectBoth(*pChannel);

    EXPECT_TRUE(host("setLanguageDocuments, language 3", [&] {
        return pChannel->controller.setLanguageDocuments({{3, "<language>three</language>", ""}});
    }));
    EXPECT_EQ("<language>three</language>", language(*pChannel, 2));
    EXPECT_EQ("", common(*pChannel, 3));
    EXPECT_TRUE(host("setLanguageDocuments, none", [&] { return pChannel->controller.setLanguageDocuments({}); }));
    EXPECT_EQ("", language(*pChannel, 3));
    EXPECT_EQ("", common(*pChannel, 1));
    uinit(*pChannel);
    expectTranscript("languages");
}

}  // namespace
