#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/SubCommands.h"

namespace sensorctl {

namespace {

constexpr int kFastest = 1000;       // frames per second
constexpr int kLargestSide = 65535;  // pixels
constexpr int kMostPolls = 1000000;
constexpr std::size_t kMostStreams = 16;

Result state(Session& p_objSession) {
    simcam::SimVideoModule& video = p_objSession.camera().video();
    std::vector<AVStreamParam> streams;
    LimitedFramesWDRModeParam limits;
    video.getAVStreamParam(p_objSession.channel(), streams);
    video.getLimitedFramesWDRModeParam(p_objSession.channel(), limits);
    Json list = Json::array();
    for (const AVStreamParam& stream : streams) {
        list.push_back({{"id", stream.nStreamId},
                        {"fps", stream.nFrameRate},
                        {"width", stream.nVideoWidth},
                        {"height", stream.nVideoHeight},
                        {"encoder", stream.nEncoderType}});
    }
    return {true,
            "",
            {{"streams", list},
             {"limitFramesMode", limits.nLimitFramesModeId},
             {"wdrLimit", limits.nWDRLimit},
             {"startupPollsLeft", video.startupPollsLeft()}},
            {}};
}

// "25,1920x1080" or "25,1920x1080,1"
AVStreamParam parseStream(const std::string& p_strText, int p_nId) {
    const std::string shape = "a stream is FPS,WIDTHxHEIGHT[,ENCODER], not " + quoted(p_strText);
    const std::size_t comma = p_strText.find(',');
    const std::size_t cross = p_strText.find('x', std::string::npos == comma ? 0 : comma);
    if (std::string::npos == comma || std::string::npos == cross) {
        throw CommandError(shape);
    }
    const std::size_t second = p_strText.find(',', cross);
    const std::size_t end = std::min(second, p_strText.size());
    AVStreamParam stream;
    stream.nStreamId = p_nId;
    stream.nFrameRate = static_cast<int>(parseNumber(p_strText.substr(0, comma), "FPS", 0, kFastest));
    stream.nVideoWidth =
        static_cast<int>(parseNumber(p_strText.substr(comma + 1, cross - comma - 1), "WIDTH", 0, kLargestSide));
    stream.nVideoHeight =
        static_cast<int>(parseNumber(p_strText.substr(cross + 1, end - cross - 1), "HEIGHT", 0, kLargestSide));
    if (std::string::npos != second) {
        stream.nEncoderType = parseInt(p_strText.substr(second + 1), "ENCODER");
    }
    return stream;
}

Result streams(Session& p_objSession, const Words& p_vecWords) {
    std::vector<AVStreamParam> list;
    const bool none = 1 == p_vecWords.size() && "none" == lowerCase(p_vecWords[0]);
    for (std::size_t i = 0; i < p_vecWords.size() && !none; ++i) {
        list.push_back(parseStream(p_vecWords[i], static_cast<int>(i)));
    }
    p_objSession.camera().video().setStreams(p_objSession.channel(), list);
    return state(p_objSession);
}

Result fps(Session& p_objSession, const Words& p_vecWords) {
    simcam::SimVideoModule& video = p_objSession.camera().video();
    const auto rate = static_cast<int>(parseNumber(p_vecWords[0], "FPS", 0, kFastest));
    std::vector<AVStreamParam> list;
    video.getAVStreamParam(p_objSession.channel(), list);
    for (AVStreamParam& stream : list) {
        stream.nFrameRate = rate;
    }
    video.setStreams(p_objSession.channel(), list);
    return state(p_objSession);
}

Result limits(Session& p_objSession, const Words& p_vecWords) {
    LimitedFramesWDRModeParam param;
    param.nLimitFramesModeId = parseInt(p_vecWords[0], "MODE");
    param.nWDRLimit = parseSwitch(p_vecWords[1], "WDRLIMIT") ? 1 : 0;
    p_objSession.camera().video().setLimits(p_objSession.channel(), param);
    return state(p_objSession);
}

Result startup(Session& p_objSession, const Words& p_vecWords) {
    const auto polls = static_cast<int>(parseNumber(p_vecWords[0], "POLLS", 0, kMostPolls));
    const int result = p_vecWords.size() > 1 ? parseInt(p_vecWords[1], "RESULT") : 1;
    if (0 == result) {
        throw CommandError("RESULT must not be 0: 0 means that the pipeline is running");
    }
    p_objSession.camera().video().setStartupPolls(polls, result);
    return state(p_objSession);
}

Result result(Session& p_objSession, const Words& p_vecWords) {
    const auto key = static_cast<int>(parseKey(p_vecWords[0]));
    const int returned = parseInt(p_vecWords[1], "RESULT");
    p_objSession.camera().video().setResult(key, returned);
    return {true, "", {{"key", key}, {"result", returned}}, {}};
}

Result last(Session& p_objSession, const Words& p_vecWords) {
    const auto key = static_cast<int>(parseKey(p_vecWords[0]));
    int value = 0;
    if (!p_objSession.camera().video().lastValue(p_objSession.channel(), key, value)) {
        return Result::failed("the video module has not been told " + describeKey(static_cast<u32>(key)));
    }
    return {true, "", {{"key", key}, {"value", value}}, {}};
}

const std::vector<SubCommand>& videoCommands() {
    static const std::vector<SubCommand> vecTable = {
        {"streams", "none|FPS,WIDTHxHEIGHT[,ENCODER]...", 1, kMostStreams, streams},
        {"fps", "FPS", 1, 1, fps},
        {"limits", "MODE WDRLIMIT", 2, 2, limits},
        {"startup", "POLLS [RESULT]", 1, 2, startup},
        {"result", "KEY RESULT", 2, 2, result},
        {"last", "KEY", 1, 1, last},
    };
    return vecTable;
}

Result video(Session& p_objSession, const Words& p_vecWords) {
    return p_vecWords.empty() ? state(p_objSession) : runSubCommand("video", videoCommands(), p_objSession, p_vecWords);
}

}  // namespace

void addVideoCommands(CommandTable& p_objTable) {
    p_objTable.add({"video", argumentsOf(videoCommands()), "the simulated video module of the channel; alone: show it",
                    "Simulated video module", 0, kMostStreams + 1, video, Effect::looks});
}

}  // namespace sensorctl
