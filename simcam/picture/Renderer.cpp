// The way of a picture, stage by stage.
#include "simcam/Picture.h"
#include "simcam/picture/Blur.h"
#include "simcam/picture/Colour.h"
#include "simcam/picture/Detail.h"
#include "simcam/picture/Exposure.h"
#include "simcam/picture/FixedPoint.h"
#include "simcam/picture/Geometry.h"
#include "simcam/picture/Haze.h"
#include "simcam/picture/Noise.h"
#include "simcam/picture/Parameters.h"
#include "simcam/picture/Street.h"
#include "simcam/picture/Thermal.h"
#include "simcam/picture/Tone.h"

#include <algorithm>

namespace simcam {

using namespace picture;

namespace {

constexpr int kMostCars = 8;

struct PixelBox {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    bool isEmpty() const { return left >= right || top >= bottom; }
};

// The places of the car of which the picture is the mean: along its way while the shutter is open, and in each of the
// pictures that noise reduction takes the mean of.
std::vector<int> carPlaces(const PictureParameters& p_st, int p_nShutterMicroseconds, int p_nFrames) {
    constexpr int kSharpMicroseconds = 4000;  // a quarter of a pixel's way at wide angle
    const int nEach = std::clamp(p_nShutterMicroseconds / kSharpMicroseconds, 1, std::max(1, kMostCars / p_nFrames));
    std::vector<int> vecPlaces;
    for (int nFrame = 0; nFrame < p_nFrames; ++nFrame) {
        for (int i = 0; i < nEach; ++i) {
            const INT64 nBefore = nFrame * kFrameMilliseconds + p_nShutterMicroseconds / 1000 * i / nEach;
            vecPlaces.push_back(carLeft(p_st.milliseconds - nBefore));
        }
    }
    return vecPlaces;
}

}  // namespace

struct PictureRenderer::State {
    State(int p_nWidth, int p_nHeight) : width(p_nWidth), height(p_nHeight) {}

    std::size_t pixels() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
    std::size_t at(int p_nX, int p_nY) const {
        return static_cast<std::size_t>(p_nY) * static_cast<std::size_t>(width) + static_cast<std::size_t>(p_nX);
    }

    Window look(const PictureParameters& p_st);
    PixelBox carBox(const Window& p_stWindow, const std::vector<int>& p_vecPlaces) const;
    template <typename Add>
    void eachCar(const Window& p_stWindow, const PixelBox& p_stBox, const std::vector<int>& p_vecPlaces, Add&& p_fnAdd);
    void drawLight(const PictureParameters& p_st, const Window& p_stWindow);
    void expose(const PictureParameters& p_st, const Window& p_stWindow, const ExposedLight& p_objLight,
                const std::array<std::uint8_t, kDistances>& p_arrRadii, const std::vector<int>& p_vecPlaces,
                int p_nPlanes);
    void blur(int p_nPlanes);
    void develop(bool p_bColour);
    void drawWarmth(const PictureParameters& p_st, const Window& p_stWindow);

    const int width;
    const int height;

    Canvas street;  // with room around the picture
    int streetZoom = -1;
    Canvas strip;  // the part of the street where the car is
    std::array<std::vector<int>, kColours> planes;
    std::vector<int> sums;
    std::vector<std::uint8_t> radii;
    Blur blurring;
    Tone tone;
    Plane light, blue, red, scratch;
    WhiteBalance lockedBalance = kDaylight;
    Picture plain;  // before it is arranged
    Picture last;
};

// The street through the lens, and the window of it that is the picture.
Window PictureRenderer::State::look(const PictureParameters& p_st) {
    const int nAround = mostOffset(width);
    if (streetZoom != p_st.zoomPosition) {
        View stView;
        stView.width = width;
        stView.height = height;
        stView.magnification = static_cast<int>(1000 * magnification(p_st.zoomPosition));
        stView.left = -nAround;
        stView.top = -nAround;
        street.resize(width + 2 * nAround, height + 2 * nAround);
        street.setView(stView);
        paintStreet(street);
        streetZoom = p_st.zoomPosition;
    }
    const Offset stOffset = offsetOf(p_st, width);
    return {&street, nAround + stOffset.x, nAround + stOffset.y, width, height};
}

// In pixels of the picture.
PixelBox PictureRenderer::State::carBox(const Window& p_stWindow, const std::vector<int>& p_vecPlaces) const {
    PixelBox stBox;
    if (p_vecPlaces.empty()) {
        return stBox;
    }
    const auto ends = std::minmax_element(p_vecPlaces.begin(), p_vecPlaces.end());
    const View& stView = p_stWindow.canvas->view();
    const auto column = [&](int p_nPlane) { return (stView.x(p_nPlane) >> 8) - p_stWindow.left; };
    const auto row = [&](int p_nPlane) { return (stView.y(p_nPlane) >> 8) - p_stWindow.top; };
    stBox.left = std::clamp(column(*ends.first), 0, width);
    stBox.right = std::clamp(column(*ends.second + kCarLength) + 1, 0, width);
    stBox.top = std::clamp(row(kCarTop), 0, height);
    stBox.bottom = std::clamp(row(kCarBottom) + 1, 0, height);
    return stBox;
}

// Paints the car at each of its places and hands every surface of the box to add(surface, x, y, number of the place).
template <typename Add>
void PictureRenderer::State::eachCar(const Window& p_stWindow, const PixelBox& p_stBox,
                                     const std::vector<int>& p_vecPlaces, Add&& p_fnAdd) {
    View stView = p_stWindow.canvas->view();
    stView.left += p_stWindow.left + p_stBox.left;
    stView.top += p_stWindow.top + p_stBox.top;
    const int nWide = p_stBox.right - p_stBox.left;
    const int nHigh = p_stBox.bottom - p_stBox.top;
    strip.resize(nWide, nHigh);
    strip.setView(stView);
    for (std::size_t i = 0; i < p_vecPlaces.size(); ++i) {
        for (int y = 0; y < nHigh; ++y) {
            std::copy_n(p_stWindow.canvas->row(p_stWindow.top + p_stBox.top + y) + p_stWindow.left + p_stBox.left,
                        nWide, strip.row(y));
        }
        paintCar(strip, p_vecPlaces[i]);
        for (int y = 0; y < nHigh; ++y) {
            for (int x = 0; x < nWide; ++x) {
                p_fnAdd(strip.row(y)[x], p_stBox.left + x, p_stBox.top + y, i);
            }
        }
    }
}

void PictureRenderer::State::expose(const PictureParameters& p_st, const Window& p_stWindow,
                                    const ExposedLight& p_objLight,
                                    const std::array<std::uint8_t, kDistances>& p_arrRadii,
                                    const std::vector<int>& p_vecPlaces, int p_nPlanes) {
    const auto fromMiddle = [this](int p_nPixel, int p_nSide) { return (p_nPixel - p_nSide / 2) * 640 / width; };
    const auto nPlanes = static_cast<std::size_t>(p_nPlanes);
    for (std::size_t i = 0; i < nPlanes; ++i) {
        planes[i].resize(pixels());
    }
    radii.resize(pixels());
    for (int y = 0; y < height; ++y) {
        const Surface* const pRow = p_stWindow.canvas->row(p_stWindow.top + y) + p_stWindow.left;
        for (int x = 0; x < width; ++x) {
            const Pixel arrPixel = p_objLight.expose(pRow[x], fromMiddle(x, width), fromMiddle(y, height));
            for (std::size_t i = 0; i < nPlanes; ++i) {
                planes[i][at(x, y)] = arrPixel[i];
            }
            radii[at(x, y)] = p_arrRadii[pRow[x].distance];
        }
    }
    const PixelBox stBox = carBox(p_stWindow, p_vecPlaces);
    if (0 == p_st.car || stBox.isEmpty()) {
        return;
    }
    const int nPlaces = static_cast<int>(p_vecPlaces.size());
    const std::uint8_t nCar = carDistance();
    eachCar(p_stWindow, stBox, p_vecPlaces, [&](const Surface& p_stSurface, int p_nX, int p_nY, std::size_t p_nPlace) {
        if (nCar == p_stSurface.distance) {  // the car or something as far away
            radii[at(p_nX, p_nY)] = p_arrRadii[nCar];
        }
        const Pixel arrPixel = p_objLight.expose(p_stSurface, fromMiddle(p_nX, width), fromMiddle(p_nY, height));
        for (std::size_t i = 0; i < nPlanes; ++i) {
            int& nPixel = planes[i][at(p_nX, p_nY)];
            nPixel = (0 == p_nPlace ? 0 : nPixel) + arrPixel[i] / nPlaces;
        }
    });
}

void PictureRenderer::State::blur(int p_nPlanes) {
    if (std::all_of(radii.begin(), radii.end(), [](std::uint8_t p_nRadius) { return 0 == p_nRadius; })) {
        return;
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(p_nPlanes); ++i) {
        blurring.apply(planes[i], radii, width, height);
    }
}

void PictureRenderer::State::develop(bool p_bColour) {
    light.resize(pixels());
    blue.assign(pixels(), 0);
    red.assign(pixels(), 0);
    for (std::size_t i = 0; i < pixels(); ++i) {
        if (!p_bColour) {
            light[i] = static_cast<std::int16_t>(tone.of(planes[0][i]));
            continue;
        }
        const Shade stShade = shadeOf(tone.of(planes[0][i]), tone.of(planes[1][i]), tone.of(planes[2][i]));
        light[i] = stShade.light;
        blue[i] = stShade.blue;
        red[i] = stShade.red;
    }
}

void PictureRenderer::State::drawLight(const PictureParameters& p_st, const Window& p_stWindow) {
    const Light stLight = lightOf(p_st);
    const Metering stMetering = meter(p_stWindow, stLight, p_st);
    const Exposure stExposure = exposureFor(stMetering, p_st);
    const int nPlanes = stLight.colour ? kColours : 1;
    const int nFrames = averagedFrames(p_st, stExposure.gain);

    expose(p_st, p_stWindow, ExposedLight(stLight, stExposure.sensitivity), radiiOf(p_st, stExposure.iris, width),
           carPlaces(p_st, stExposure.shutterMicroseconds, nFrames), nPlanes);
    blur(nPlanes);

    const Noise objNoise(p_st, stExposure.gain, nFrames);
    const Haze objHaze(p_st, stMetering, stExposure);
    lockedBalance = whiteBalanceOf(p_st, stMetering, lockedBalance);
    for (int i = 0; i < nPlanes; ++i) {
        const auto nPlane = static_cast<std::size_t>(i);
        for (int y = 0; y < height; ++y) {
            int* const pRow = &planes[nPlane][at(0, y)];
            objNoise.addTo(pRow, width, y, i);
            if (stLight.colour) {
                balance(pRow, width, lockedBalance[nPlane]);
            }
            if (!objHaze.isClear()) {
                objHaze.takeFrom(pRow, width, y, height);
            }
        }
    }
    tone.prepare(p_st);
    develop(stLight.colour);

    const int nSmoothing = smoothing(p_st, stExposure.gain);
    if (nSmoothing > 0) {
        constexpr int kMiddle = kOne / 4;
        const int nDeviation = objNoise.deviation(kMiddle) / (nFrames > 2 ? 2 : 1);
        const int nThreshold = kBright * nSmoothing / 25 + nDeviation * nSmoothing / 16;
        smooth(light, width, height, nThreshold, scratch);
        if (stLight.colour) {
            smooth(blue, width, height, 2 * nThreshold, scratch);
            smooth(red, width, height, 2 * nThreshold, scratch);
        }
    }
    sharpen(light, width, height, p_st.sharpness * 3 / 2, scratch);

    const Finish objFinish(p_st);
    for (std::size_t i = 0; i < pixels(); ++i) {
        objFinish.write(light[i], blue[i], red[i], &plain.rgb[3 * i]);
    }
}

void PictureRenderer::State::drawWarmth(const PictureParameters& p_st, const Window& p_stWindow) {
    constexpr int kCoolGain = -3 * kLogOne;  // of the noise
    constexpr int kNoGain = 0;               // for the automatic noise reduction, which therefore rests
    constexpr int kSoft = 2 * kRadiusOne;    // the lens and the sensor are coarse
    constexpr int kNoShutter = 0;
    planes[0].resize(pixels());
    radii.resize(pixels());
    std::array<std::uint8_t, kDistances> arrRadii = radiiOf(p_st, kIrisOpen, width);
    for (std::uint8_t& nRadius : arrRadii) {
        nRadius = static_cast<std::uint8_t>(std::min(255, nRadius + kSoft * width / 640));
    }
    for (int y = 0; y < height; ++y) {
        const Surface* const pRow = p_stWindow.canvas->row(p_stWindow.top + y) + p_stWindow.left;
        for (int x = 0; x < width; ++x) {
            planes[0][at(x, y)] = pRow[x].heat * kWarmthStep;
            radii[at(x, y)] = arrRadii[pRow[x].distance];
        }
    }
    const int nFrames = averagedFrames(p_st, kNoGain);
    const std::vector<int> vecPlaces = carPlaces(p_st, kNoShutter, nFrames);
    const PixelBox stBox = carBox(p_stWindow, vecPlaces);
    if (0 != p_st.car && !stBox.isEmpty()) {
        const std::uint8_t nCar = carDistance();
        const auto put = [&](const Surface& p_stSurface, int p_nX, int p_nY, std::size_t p_nPlace) {
            int& nPixel = planes[0][at(p_nX, p_nY)];
            nPixel = (0 == p_nPlace ? 0 : nPixel) + p_stSurface.heat * kWarmthStep / nFrames;
            if (nCar == p_stSurface.distance) {
                radii[at(p_nX, p_nY)] = arrRadii[nCar];
            }
        };
        eachCar(p_stWindow, stBox, vecPlaces, put);
    }
    blur(1);
    const Noise objNoise(p_st, kCoolGain, nFrames);
    const ThermalTone objTone(warmthOf(p_stWindow), p_st);
    light.resize(pixels());
    for (int y = 0; y < height; ++y) {
        objNoise.addTo(&planes[0][at(0, y)], width, y, 0);
    }
    for (std::size_t i = 0; i < pixels(); ++i) {
        light[i] = static_cast<std::int16_t>(objTone.of(planes[0][i]));
    }
    const int nSmoothing = smoothing(p_st, kNoGain);
    if (nSmoothing > 0) {
        constexpr int kMiddle = 40 * 2 * kWarmthStep;  // as warm as the air
        const int nDeviation = objTone.step(objNoise.deviation(kMiddle)) / (nFrames > 2 ? 2 : 1);
        smooth(light, width, height, kBright * nSmoothing / 25 + nDeviation * nSmoothing / 16, scratch);
    }
    sharpen(light, width, height, thermalSharpness(p_st), scratch);
    const Palette arrPalette = finished(paletteOf(p_st.palette), p_st);
    for (std::size_t i = 0; i < pixels(); ++i) {
        const int nLevel = std::clamp(light[i] / kBright, 0, 255);
        std::copy_n(arrPalette[static_cast<std::size_t>(nLevel)].begin(), 3, &plain.rgb[3 * i]);
    }
}

PictureRenderer::PictureRenderer(int p_nWidth, int p_nHeight)
    : m_pState(std::make_unique<State>(std::clamp(p_nWidth, 32, 1920), std::clamp(p_nHeight, 18, 1080))) {}

PictureRenderer::~PictureRenderer() = default;

void PictureRenderer::render(const PictureParameters& p_stParameters, Picture& p_stPicture) {
    State& st = *m_pState;
    const PictureParameters stParameters = withinRanges(p_stParameters);
    if (0 != stParameters.freeze && !st.last.rgb.empty()) {
        p_stPicture = st.last;
        return;
    }
    st.plain.width = st.width;
    st.plain.height = st.height;
    st.plain.rgb.resize(3 * st.pixels());
    const Window stWindow = st.look(stParameters);
    if (0 != stParameters.thermal) {
        st.drawWarmth(stParameters, stWindow);
    } else {
        st.drawLight(stParameters, stWindow);
    }
    arrange(st.plain, stParameters, st.last);
    if (0 != stParameters.thermal && 0 != stParameters.temperatureStrip) {
        drawStrip(finished(paletteOf(stParameters.palette), stParameters), st.width, st.height, st.last.rgb);
    }
    p_stPicture = st.last;
}

}  // namespace simcam
