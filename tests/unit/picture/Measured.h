// Small pictures of the street and what can be measured in them.
#pragma once

#include "simcam/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

// Places of the street, in pixels of a picture of 640 x 360 at wide angle.
struct Place {
    int left;
    int top;
    int right;
    int bottom;
};
constexpr Place kAll = {0, 0, 640, 360};
constexpr Place kSky = {250, 12, 390, 76};
constexpr Place kStar = {206, 158, 254, 206};
constexpr Place kPatches = {376, 164, 436, 204};   // the colour chart
constexpr Place kRedPatch = {397, 185, 405, 193};  // third of the third row
constexpr Place kGreenPatch = {387, 185, 395, 193};
constexpr Place kGarage = {34, 152, 78, 200};  // dark, with bars
constexpr Place kLamp = {516, 60, 528, 69};
constexpr Place kWall = {468, 116, 498, 142};  // plain and grey
constexpr Place kFarHouses = {258, 120, 382, 146};
constexpr Place kRoad = {200, 300, 440, 332};
constexpr Place kLeaves = {392, 92, 430, 128};
constexpr Place kUpperHouses = {0, 40, 240, 140};

// A quiet street: no wind and no car, so that two pictures differ by what was changed alone.
inline simcam::PictureParameters quiet(int p_nMilliLux = 1000000) {
    simcam::PictureParameters st;
    st.milliLux = p_nMilliLux;
    st.car = 0;
    return st;
}

// Night as the day/night switch has it: the filter against infrared is away, and the dark is 0.05 lux.
inline simcam::PictureParameters night() {
    simcam::PictureParameters st = quiet(50);
    st.night = 1;
    return st;
}

// Everything that hides the noise or adds some is off.
inline simcam::PictureParameters raw(simcam::PictureParameters p_st) {
    p_st.noise2d = 0;
    p_st.noise3d = 0;
    p_st.sharpness = 0;
    return p_st;
}

class Measured {
public:
    static constexpr int kWidth = 160;
    static constexpr int kHeight = 90;

    explicit Measured(const simcam::PictureParameters& p_st, int p_nWidth = kWidth, int p_nHeight = kHeight);

    const simcam::Picture& picture() const { return m_stPicture; }

    // Means over a place, 0 to 255.
    double level(const Place& p_st = kAll) const;
    double colour(int p_nColour, const Place& p_st = kAll) const;  // 0 red, 1 green, 2 blue
    // Standard deviation of the level over a place.
    double spread(const Place& p_st = kAll) const;
    // Mean difference of neighbours, across and down.
    double detail(const Place& p_st = kAll) const;
    // Mean distance from grey: the largest colour minus the smallest.
    double colourfulness(const Place& p_st = kAll) const;
    // Share of pixels at the white end.
    double burnt(const Place& p_st = kAll) const;

    // Mean difference of the levels of two pictures of the same size.
    double differenceFrom(const Measured& p_objOther, const Place& p_st = kAll) const;
    bool operator==(const Measured& p_objOther) const { return m_stPicture.rgb == p_objOther.m_stPicture.rgb; }

    // How far the picture must be moved to lie on the other one, by the smallest difference.
    struct Move {
        int x;
        int y;
        bool operator==(const Move& p_st) const { return x == p_st.x && y == p_st.y; }
    };
    Move moveFrom(const Measured& p_objOther, int p_nReach) const;

    double levelAt(int p_nX, int p_nY) const;

private:
    struct Pixels {
        int left;
        int top;
        int right;
        int bottom;
        double count() const { return static_cast<double>(right - left) * (bottom - top); }
    };
    Pixels pixels(const Place& p_st) const;
    const unsigned char* at(int p_nX, int p_nY) const;
    template <typename Function>
    double mean(const Place& p_st, Function&& p_fn) const;

    simcam::Picture m_stPicture;
};

// The noise of a place: the deviation between two pictures of different moments, which differ by nothing else.
double noise(simcam::PictureParameters p_st, const Place& p_stPlace = kAll, INT64 p_nLater = 4000);

// FNV-1a over the bytes.
unsigned checksum(const simcam::Picture& p_st);
