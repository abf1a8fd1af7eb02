// Pictures as JPEG files.
#include "tests/unit/picture/Measured.h"

#include <turbojpeg.h>

namespace {

using simcam::encodeJpeg;
using simcam::Picture;

const Picture& drawnStreet() {
    static const Picture stPicture = Measured(quiet()).picture();
    return stPicture;
}

Picture decoded(const std::vector<unsigned char>& p_vecJpeg) {
    Picture st;
    tjhandle pDecoder = tjInitDecompress();
    int nSampling = 0;
    int nColours = 0;
    const auto nSize = static_cast<unsigned long>(p_vecJpeg.size());
    EXPECT_EQ(0, tjDecompressHeader3(pDecoder, p_vecJpeg.data(), nSize, &st.width, &st.height, &nSampling, &nColours));
    st.rgb.resize(static_cast<std::size_t>(st.width) * static_cast<std::size_t>(st.height) * 3);
    EXPECT_EQ(0, tjDecompress2(pDecoder, p_vecJpeg.data(), nSize, st.rgb.data(), st.width, 0, st.height, TJPF_RGB, 0));
    tjDestroy(pDecoder);
    return st;
}

double meanDifference(const Picture& p_stOne, const Picture& p_stOther) {
    double dSum = 0;
    for (std::size_t i = 0; i < p_stOne.rgb.size(); ++i) {
        dSum += std::abs(p_stOne.rgb[i] - p_stOther.rgb.at(i));
    }
    return dSum / static_cast<double>(p_stOne.rgb.size());
}

TEST(PictureJpeg, ADecoderFindsThePictureAgain) {
    std::vector<unsigned char> vecJpeg;
    ASSERT_TRUE(encodeJpeg(drawnStreet(), 95, vecJpeg));
    const Picture st = decoded(vecJpeg);
    ASSERT_EQ(drawnStreet().width, st.width);
    ASSERT_EQ(drawnStreet().height, st.height);
    EXPECT_LT(meanDifference(drawnStreet(), st), 6.0);
}

TEST(PictureJpeg, MoreQualityIsLargerAndTruer) {
    std::vector<unsigned char> vecRough;
    std::vector<unsigned char> vecFine;
    ASSERT_TRUE(encodeJpeg(drawnStreet(), 10, vecRough));
    ASSERT_TRUE(encodeJpeg(drawnStreet(), 90, vecFine));
    EXPECT_GT(vecFine.size(), 2 * vecRough.size());
    EXPECT_LT(meanDifference(drawnStreet(), decoded(vecFine)), 0.6 * meanDifference(drawnStreet(), decoded(vecRough)));
}

TEST(PictureJpeg, TheEndsOfTheQualityAreEncoded) {
    std::vector<unsigned char> vecJpeg;
    EXPECT_TRUE(encodeJpeg(drawnStreet(), 1, vecJpeg));
    EXPECT_TRUE(encodeJpeg(drawnStreet(), 100, vecJpeg));
    EXPECT_EQ(drawnStreet().rgb.size(), decoded(vecJpeg).rgb.size());
}

TEST(PictureJpeg, AQualityOutsideTheRangeIsRefused) {
    for (const int nQuality : {0, -1, 101, 1000000}) {
        std::vector<unsigned char> vecJpeg = {1, 2, 3};
        std::string strWhy;
        EXPECT_FALSE(encodeJpeg(drawnStreet(), nQuality, vecJpeg, &strWhy));
        EXPECT_TRUE(vecJpeg.empty());
        EXPECT_EQ("the quality is not within 1 to 100", strWhy);
    }
}

TEST(PictureJpeg, APictureThatDoesNotFitItsBytesIsRefused) {
    Picture stShort = drawnStreet();
    stShort.rgb.pop_back();
    Picture stLong = drawnStreet();
    stLong.rgb.push_back(0);
    Picture stRowShort = drawnStreet();
    stRowShort.rgb.resize(stRowShort.rgb.size() - static_cast<std::size_t>(stRowShort.width) * 3);
    Picture stNegative = drawnStreet();
    stNegative.width = -stNegative.width;
    stNegative.height = -stNegative.height;
    Picture stHuge;
    stHuge.width = 65536;
    stHuge.height = 65536;
    for (const Picture& st : {Picture(), stShort, stLong, stRowShort, stNegative, stHuge}) {
        std::vector<unsigned char> vecJpeg = {1};
        std::string strWhy;
        EXPECT_FALSE(encodeJpeg(st, 80, vecJpeg, &strWhy));
        EXPECT_TRUE(vecJpeg.empty());
        EXPECT_EQ("the size of the picture does not fit its bytes", strWhy);
        EXPECT_FALSE(encodeJpeg(st, 80, vecJpeg));
    }
}

}  // namespace
