#include "apps/camerad/host/Views.h"

#include "apps/camerad/host/PlainText.h"

#include <cstdio>

namespace camerad {

namespace {

nlohmann::json intervals(const std::vector<std::pair<int, int>>& p_vecMinutes) {
    nlohmann::json result = nlohmann::json::array();
    for (const auto& [nStart, nEnd] : p_vecMinutes) {
        result.push_back({{"start", clockText(nStart)}, {"end", clockText(nEnd)}});
    }
    return result;
}

}  // namespace

std::string clockOf(int p_nHour, int p_nMinute) {
    char szText[32];
    std::snprintf(szText, sizeof(szText), "%02d:%02d", p_nHour, p_nMinute);
    return szText;
}

nlohmann::json toJson(const ChannelView& p_stView) {
    nlohmann::json result = {{"channel", p_stView.nChannel},
                             {"kind", p_stView.bThermal ? "thermal" : "visible"},
                             {"ready", p_stView.bReady},
                             {"sensorType", p_stView.nSensorType},
                             {"module", p_stView.strVersion},
                             {"night", p_stView.bNight},
                             {"busyWith", nullptr}};
    if (!p_stView.strBusyWith.empty()) {
        result["busyWith"] = p_stView.strBusyWith;
    }
    return result;
}

nlohmann::json toJson(const ParameterValue& p_stValue) {
    nlohmann::json result = {{"key", p_stValue.nKey},
                             {"name", p_stValue.strName},
                             {"value", p_stValue.nValue},
                             {"unsaved", p_stValue.isUnsaved()}};
    if (p_stValue.standard) {
        result["default"] = *p_stValue.standard;
    }
    if (p_stValue.stored) {
        result["stored"] = *p_stValue.stored;
    }
    return result;
}

nlohmann::json toJson(const SchemesView& p_stView, int p_nChannel) {
    nlohmann::json schemes = nlohmann::json::array();
    for (const SchemeView& scheme : p_stView.vecSchemes) {
        const Window& window = scheme.stWindow;
        schemes.push_back({{"index", scheme.nIndex},
                           {"name", scheme.strName},
                           {"window",
                            {{"start", clockOf(window.nStartHour, window.nStartMinute)},
                             {"end", clockOf(window.nEndHour, window.nEndMinute)}}},
                           {"unsaved", scheme.vecUnsaved},
                           {"inForce", intervals(scheme.vecInForce)}});
    }
    return {{"channel", p_nChannel},        {"revision", p_stView.nRevision},
            {"current", p_stView.nCurrent}, {"automatic", p_stView.bAutomatic},
            {"follow", p_stView.strFollow}, {"gaps", p_stView.bGaps ? "day-night" : "scheme-0"},
            {"factory", p_stView.nFactory}, {"schemes", std::move(schemes)}};
}

nlohmann::json toJson(const std::vector<RangeView>& p_vecRanges) {
    nlohmann::json ranges = nlohmann::json::array();
    for (const RangeView& range : p_vecRanges) {
        ranges.push_back({{"key", range.nKey}, {"default", range.nDefault}, {"values", range.vecValues}});
    }
    return {{"ranges", std::move(ranges)}};
}

nlohmann::json toJson(const LensView& p_stView) {
    return {{"zoom", {{"position", p_stView.nZoom}, {"ratio", p_stView.nZoomRatio / 1000.0}}},
            {"focus", {{"position", p_stView.nFocus}, {"mode", p_stView.nFocusMode}}},
            {"iris", {{"position", p_stView.nIris}}},
            {"sharpness", p_stView.nSharpness},
            {"moving", p_stView.bMoving}};
}

nlohmann::json toJson(const ShutterView& p_stView) {
    nlohmann::json result = {{"place", nullptr}, {"values", p_stView.vecValues}};
    if (p_stView.place) {
        result["place"] = *p_stView.place;
    }
    return result;
}

nlohmann::json toJson(const ClockView& p_stView) {
    return {{"time", p_stView.strTime},
            {"simulated", p_stView.bSimulated},
            {"speed", p_stView.nSpeed},
            {"revision", p_stView.nRevision}};
}

nlohmann::json toJson(const LevelView& p_stView) {
    return {{"level", p_stView.nLevel}, {"revision", p_stView.nRevision}};
}

nlohmann::json toJson(const LogEntry& p_stEntry) {
    return {{"number", p_stEntry.nNumber},   {"time", p_stEntry.strTime},     {"kind", p_stEntry.strKind},
            {"channel", p_stEntry.nChannel}, {"command", p_stEntry.nCommand}, {"option", p_stEntry.strOption},
            {"result", p_stEntry.nResult},   {"text", p_stEntry.strText}};
}

}  // namespace camerad
