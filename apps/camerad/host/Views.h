// The views of the host as JSON: as GET answers them and as events carry them. Functions without state.
#pragma once

#include "apps/camerad/host/CameraHost.h"
#include "apps/camerad/host/ChannelHost.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace camerad {

nlohmann::json toJson(const ChannelView& p_stView);
nlohmann::json toJson(const ParameterValue& p_stValue);
nlohmann::json toJson(const SchemesView& p_stView, int p_nChannel);
nlohmann::json toJson(const std::vector<RangeView>& p_vecRanges);  // {"ranges": [...]}
nlohmann::json toJson(const LensView& p_stView);
nlohmann::json toJson(const ShutterView& p_stView);
nlohmann::json toJson(const ClockView& p_stView);
nlohmann::json toJson(const LevelView& p_stView);
nlohmann::json toJson(const LogEntry& p_stEntry);

// "20:00"
std::string clockOf(int p_nHour, int p_nMinute);

}  // namespace camerad
