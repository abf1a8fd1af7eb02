#include "tests/unit/picture/Measured.h"

#include <algorithm>
#include <cmath>
#include <limits>

Measured::Measured(const simcam::PictureParameters& p_st, int p_nWidth, int p_nHeight) {
    simcam::PictureRenderer objRenderer(p_nWidth, p_nHeight);
    objRenderer.render(p_st, m_stPicture);
}

Measured::Pixels Measured::pixels(const Place& p_st) const {
    const auto scaled = [this](int p_nPlace) { return p_nPlace * m_stPicture.width / 640; };
    Pixels st = {scaled(p_st.left), scaled(p_st.top), scaled(p_st.right), scaled(p_st.bottom)};
    st.right = std::min(std::max(st.right, st.left + 1), m_stPicture.width);
    st.bottom = std::min(std::max(st.bottom, st.top + 1), m_stPicture.height);
    return st;
}

const unsigned char* Measured::at(int p_nX, int p_nY) const {
    return &m_stPicture.rgb[3 * (static_cast<std::size_t>(p_nY) * static_cast<std::size_t>(m_stPicture.width) +
                                 static_cast<std::size_t>(p_nX))];
}

double Measured::levelAt(int p_nX, int p_nY) const {
    const unsigned char* const pPixel = at(p_nX, p_nY);
    return 0.299 * pPixel[0] + 0.587 * pPixel[1] + 0.114 * pPixel[2];
}

template <typename Function>
double Measured::mean(const Place& p_st, Function&& p_fn) const {
    const Pixels st = pixels(p_st);
    double dSum = 0.0;
    for (int y = st.top; y < st.bottom; ++y) {
        for (int x = st.left; x < st.right; ++x) {
            dSum += p_fn(x, y);
        }
    }
    return dSum / st.count();
}

double Measured::level(const Place& p_st) const {
    return mean(p_st, [this](int p_nX, int p_nY) { return levelAt(p_nX, p_nY); });
}

double Measured::colour(int p_nColour, const Place& p_st) const {
    return mean(p_st, [&](int p_nX, int p_nY) { return static_cast<double>(at(p_nX, p_nY)[p_nColour]); });
}

double Measured::spread(const Place& p_st) const {
    const double dMean = level(p_st);
    return std::sqrt(mean(p_st, [&](int p_nX, int p_nY) {
        const double dOff = levelAt(p_nX, p_nY) - dMean;
        return dOff * dOff;
    }));
}

double Measured::detail(const Place& p_st) const {
    return mean(p_st, [this](int p_nX, int p_nY) {
        const int nRight = std::min(p_nX + 1, m_stPicture.width - 1);
        const int nBelow = std::min(p_nY + 1, m_stPicture.height - 1);
        return std::abs(levelAt(nRight, p_nY) - levelAt(p_nX, p_nY)) +
               std::abs(levelAt(p_nX, nBelow) - levelAt(p_nX, p_nY));
    });
}

double Measured::colourfulness(const Place& p_st) const {
    return mean(p_st, [this](int p_nX, int p_nY) {
        const unsigned char* const pPixel = at(p_nX, p_nY);
        return static_cast<double>(*std::max_element(pPixel, pPixel + 3) - *std::min_element(pPixel, pPixel + 3));
    });
}

double Measured::burnt(const Place& p_st) const {
    return mean(p_st, [this](int p_nX, int p_nY) { return levelAt(p_nX, p_nY) > 252.0 ? 1.0 : 0.0; });
}

double Measured::differenceFrom(const Measured& p_objOther, const Place& p_st) const {
    return mean(p_st,
                [&](int p_nX, int p_nY) { return std::abs(levelAt(p_nX, p_nY) - p_objOther.levelAt(p_nX, p_nY)); });
}

Measured::Move Measured::moveFrom(const Measured& p_objOther, int p_nReach) const {
    Move stBest = {0, 0};
    double dBest = std::numeric_limits<double>::max();
    for (int nMoveY = -p_nReach; nMoveY <= p_nReach; ++nMoveY) {
        for (int nMoveX = -p_nReach; nMoveX <= p_nReach; ++nMoveX) {
            double dSum = 0.0;
            for (int y = p_nReach; y < m_stPicture.height - p_nReach; ++y) {
                for (int x = p_nReach; x < m_stPicture.width - p_nReach; ++x) {
                    dSum += std::abs(levelAt(x, y) - p_objOther.levelAt(x - nMoveX, y - nMoveY));
                }
            }
            if (dSum < dBest) {
                dBest = dSum;
                stBest = {nMoveX, nMoveY};
            }
        }
    }
    return stBest;
}

double noise(simcam::PictureParameters p_st, const Place& p_stPlace, INT64 p_nLater) {
    const Measured objOne(p_st);
    p_st.milliseconds += p_nLater;
    return Measured(p_st).differenceFrom(objOne, p_stPlace);
}

unsigned checksum(const simcam::Picture& p_st) {
    unsigned nSum = 2166136261U;
    for (const unsigned char nByte : p_st.rgb) {
        nSum = (nSum ^ nByte) * 16777619U;
    }
    return nSum;
}
