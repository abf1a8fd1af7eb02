#include "apps/camerad/host/SceneJson.h"

#include "apps/camerad/host/PlainText.h"
#include "apps/camerad/host/Refusal.h"
#include "apps/shared/NearestMatch.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace camerad {

namespace {

using Json = nlohmann::json;

[[noreturn]] void refuse(const std::string& p_strField, const std::string& p_strWhy) {
    throw Refusal(Refusal::Kind::BadValue, "bad-value", "scene field \"" + p_strField + "\" " + p_strWhy);
}

std::string numberText(double p_dNumber) {
    std::ostringstream stream;
    stream << p_dNumber;
    return stream.str();
}

double decimal(const Json& p_objValue, const std::string& p_strField, double p_dMin, double p_dMax) {
    const double dValue = p_objValue.is_number() ? p_objValue.get<double>() : std::numeric_limits<double>::quiet_NaN();
    if (!std::isfinite(dValue) || dValue < p_dMin || dValue > p_dMax) {
        refuse(p_strField, "takes a number from " + numberText(p_dMin) + " to " + numberText(p_dMax));
    }
    return dValue;
}

int whole(const Json& p_objValue, const std::string& p_strField, int p_nMin, int p_nMax) {
    // A number without a sign may be larger than any signed one.
    const bool bWhole = p_objValue.is_number_integer();
    const double dValue = bWhole ? p_objValue.get<double>() : 0;
    if (!bWhole || dValue < p_nMin || dValue > p_nMax) {
        refuse(p_strField, "takes a whole number from " + std::to_string(p_nMin) + " to " + std::to_string(p_nMax));
    }
    return p_objValue.get<int>();
}

int minuteOfDay(const Json& p_objValue, const std::string& p_strField) {
    const std::string strText = p_objValue.is_string() ? p_objValue.get<std::string>() : "";
    const auto fnDigit = [&](std::size_t p_nAt) { return strText[p_nAt] >= '0' && strText[p_nAt] <= '9'; };
    int nMinute = -1;
    if (5 == strText.size() && fnDigit(0) && fnDigit(1) && ':' == strText[2] && fnDigit(3) && fnDigit(4)) {
        const int nHour = (strText[0] - '0') * 10 + (strText[1] - '0');
        const int nRest = (strText[3] - '0') * 10 + (strText[4] - '0');
        nMinute = nHour <= 23 && nRest <= 59 ? nHour * 60 + nRest : -1;
    }
    if (-1 == nMinute) {
        refuse(p_strField, "takes a time of day from \"00:00\" to \"23:59\"");
    }
    return nMinute;
}

[[noreturn]] void refuseUnknown(const std::string& p_strField, const std::vector<std::string>& p_vecKnown) {
    refuse(plainLine(p_strField, 60), "is not known" + apps::didYouMean(apps::nearestMatch(p_strField, p_vecKnown)));
}

void patchFixedLight(simcam::SceneState& p_stScene, const Json& p_objLight) {
    for (const auto& [strField, value] : p_objLight.items()) {
        if ("lux" == strField) {
            p_stScene.lux = decimal(value, "light/lux", 0, 200000);
        } else if ("kind" != strField) {
            refuseUnknown(strField, {"kind", "lux"});
        }
    }
}

void patchDayCurve(simcam::SceneState& p_stScene, const Json& p_objLight) {
    constexpr double kBrightest = 200000;
    simcam::DayCurve& curve = p_stScene.curve;
    for (const auto& [strField, value] : p_objLight.items()) {
        const std::string strPath = "light/" + strField;
        if ("sunrise" == strField) {
            curve.sunriseMinute = minuteOfDay(value, strPath);
        } else if ("sunset" == strField) {
            curve.sunsetMinute = minuteOfDay(value, strPath);
        } else if ("twilightMinutes" == strField) {
            curve.twilightMinutes = whole(value, strPath, 1, 180);
        } else if ("dayLux" == strField) {
            curve.dayLux = decimal(value, strPath, 0, kBrightest);
        } else if ("nightLux" == strField) {
            curve.nightLux = decimal(value, strPath, 0, kBrightest);
        } else if ("kind" != strField) {
            refuseUnknown(strField, {"kind", "sunrise", "sunset", "twilightMinutes", "dayLux", "nightLux"});
        }
    }
    if (curve.sunriseMinute >= curve.sunsetMinute) {
        refuse("light/sunrise", "must be before the sunset");
    }
    if (curve.dayLux < curve.nightLux) {
        refuse("light/dayLux", "must not be below nightLux");
    }
    if (simcam::Scene probe; !probe.followDay(curve)) {
        refuse("light", "is no day that the scene can follow");
    }
}

void patchLight(simcam::SceneState& p_stScene, const Json& p_objLight) {
    if (!p_objLight.is_object()) {
        refuse("light", "takes an object with \"kind\" and what belongs to it");
    }
    if (const auto kind = p_objLight.find("kind"); p_objLight.end() != kind) {
        if ("fixed" == *kind) {
            p_stScene.light = simcam::SceneState::Light::Fixed;
        } else if ("day" == *kind) {
            p_stScene.light = simcam::SceneState::Light::DayCurve;
        } else {
            refuse("light/kind", "takes \"fixed\" or \"day\"");
        }
    }
    if (simcam::SceneState::Light::Fixed == p_stScene.light) {
        patchFixedLight(p_stScene, p_objLight);
    } else {
        patchDayCurve(p_stScene, p_objLight);
    }
}

}  // namespace

nlohmann::json toJson(const simcam::SceneState& p_stScene, double p_dLuxNow) {
    Json light = {{"kind", "fixed"}, {"lux", p_stScene.lux}};
    if (simcam::SceneState::Light::DayCurve == p_stScene.light) {
        const simcam::DayCurve& curve = p_stScene.curve;
        light = {{"kind", "day"},
                 {"sunrise", clockText(curve.sunriseMinute)},
                 {"sunset", clockText(curve.sunsetMinute)},
                 {"twilightMinutes", curve.twilightMinutes},
                 {"dayLux", curve.dayLux},
                 {"nightLux", curve.nightLux}};
    }
    return {{"light", std::move(light)},
            {"lux", p_dLuxNow},
            {"fog", p_stScene.fogPercent},
            {"wind", p_stScene.windPercent},
            {"car", p_stScene.car},
            {"distance", p_stScene.subjectMetres},
            {"temperature", p_stScene.ambientCelsius},
            {"clockShift", p_stScene.clockShiftSeconds}};
}

simcam::SceneState patched(const simcam::SceneState& p_stScene, const nlohmann::json& p_objPatch) {
    if (!p_objPatch.is_object()) {
        throw Refusal(Refusal::Kind::BadValue, "bad-value", "a change of the scene is an object with its fields");
    }
    simcam::SceneState scene = p_stScene;
    for (const auto& [strField, value] : p_objPatch.items()) {
        if ("light" == strField) {
            patchLight(scene, value);
        } else if ("lux" == strField) {
            refuse("lux", "tells the light now and cannot be set; use \"light\"");
        } else if ("fog" == strField) {
            scene.fogPercent = whole(value, strField, 0, 100);
        } else if ("wind" == strField) {
            scene.windPercent = whole(value, strField, 0, 100);
        } else if ("car" == strField) {
            if (!value.is_boolean()) {
                refuse(strField, "takes true or false");
            }
            scene.car = value.get<bool>();
        } else if ("distance" == strField) {
            scene.subjectMetres = decimal(value, strField, 0.01, 100000);
        } else if ("temperature" == strField) {
            scene.ambientCelsius = decimal(value, strField, -60, 85);
        } else if ("clockShift" == strField) {
            scene.clockShiftSeconds = whole(value, strField, -86400, 86400);
        } else {
            refuseUnknown(strField, {"light", "fog", "wind", "car", "distance", "temperature", "clockShift"});
        }
    }
    return scene;
}

}  // namespace camerad
